#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/label.h"

class QVBoxLayout;

namespace gruk {

/// What changed at the top level since the patrol before.
class ChangesSection : public QWidget {
    Q_OBJECT

public:
    ChangesSection(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void showModel();
    void showDiscoveries();
    [[nodiscard]] QWidget* makeRow(const SnapshotDelta& delta) const;

    AppModel& model_;
    Theme& theme_;
    Label* none_;
    QVBoxLayout* discoveries_;
    QVBoxLayout* rows_;
};

}  // namespace gruk
