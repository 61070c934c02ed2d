#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/theme.h"

namespace gruk {

/// "Automations" of the realm that is open, behind a disclosure; nothing for a folder that is no
/// realm of its own.
class AutomationsSection : public QWidget {
    Q_OBJECT

public:
    AutomationsSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);
};

}  // namespace gruk
