#pragma once

#include "app/model/app_model.h"
#include "app/theme/card.h"

namespace gruk {

/// Why a realm without a snapshot needs a first patrol.
class FirstRunPanel : public Card {
    Q_OBJECT

public:
    FirstRunPanel(AppModel& model, Theme& theme, QWidget* parent = nullptr);
};

/// What a first patrol found, shown until there is something to compare with.
class BaselineNote : public Card {
    Q_OBJECT

public:
    BaselineNote(AppModel& model, Theme& theme, QWidget* parent = nullptr);
};

}  // namespace gruk
