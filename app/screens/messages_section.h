#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/status_banner.h"

namespace gruk {

/// What happened and what did not, each a banner, with the way back where there is one.
class MessagesSection : public QWidget {
    Q_OBJECT

public:
    MessagesSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();
    void showFiling();

    AppModel& model_;
    StatusBanner* coverage_;
    StatusBanner* error_;
    StatusBanner* filing_;
    StatusBanner* action_;
};

}  // namespace gruk
