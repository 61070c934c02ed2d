#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/theme/button.h"
#include "app/theme/label.h"

namespace gruk {

/// The page's one action, and in its place what runs: this realm's patrol, or another's.
class PatrolBar : public QWidget {
    Q_OBJECT

public:
    PatrolBar(AppModel& model, Theme& theme, QWidget* parent = nullptr);

private:
    void buildRunning(Theme& theme);
    void showModel();
    void handFocusOver();
    void showProgress();
    [[nodiscard]] bool isPatrollingHere() const;

    AppModel& model_;
    Button* start_;
    QWidget* running_;
    Button* stop_ = nullptr;
    ElidedLabel* progress_ = nullptr;
    QWidget* elsewhere_;
    Label* elsewhereLine_;
    Label* elsewhereNote_;
    Button* stopElsewhere_ = nullptr;
};

}  // namespace gruk
