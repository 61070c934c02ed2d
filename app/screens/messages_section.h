#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/card.h"

namespace gruk {

/// What the last patrol could not see, what did not work, and what happened, in this order.
class MessagesSection : public QWidget {
    Q_OBJECT

public:
    MessagesSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();

    AppModel& model_;
    StatusBanner* coverage_;
    StatusBanner* error_;
    StatusBanner* action_;
};

}  // namespace gruk
