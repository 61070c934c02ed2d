#pragma once

#include "app/model/app_model.h"
#include "app/theme/paper_backdrop.h"

namespace gruk {

/// What a first start shows: what Gruk does, what it promises, and the one thing to do.
class GrukWelcomeView : public PaperBackdrop {
    Q_OBJECT

public:
    GrukWelcomeView(AppModel& model, Theme& theme, QWidget* parent = nullptr);
};

/// What shows while there are realms and none is open.
class NoRealmPage : public PaperBackdrop {
    Q_OBJECT

public:
    explicit NoRealmPage(Theme& theme, QWidget* parent = nullptr);
};

}  // namespace gruk
