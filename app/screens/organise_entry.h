#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/button.h"

namespace gruk {

/// The door to organising the realm that is open; in Review Only closed, beside the way to open it.
class OrganiseEntry : public QWidget {
    Q_OBJECT

public:
    OrganiseEntry(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();
    void open();

    AppModel& model_;
    Theme& theme_;
    Button* organise_;
    Button* unlock_;
};

}  // namespace gruk
