#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/detail_page.h"
#include "app/theme/segmented_control.h"

class QMenu;

namespace gruk {

/// What stands over every page: whose program this is, which page of a realm shows, and the
/// actions that belong to no page.
class DetailHeader : public QWidget {
    Q_OBJECT

public:
    DetailHeader(AppModel& model, Theme& theme, QWidget* parent = nullptr);

    void setPage(DetailPage page);

Q_SIGNALS:
    void pageChosen(DetailPage page);
    void walkthroughRequested();
    void tidyRequested();
    void settingsRequested();
    void quitRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QWidget* makeProductLine();
    [[nodiscard]] QWidget* makeMenuButton();

    AppModel& model_;
    Theme& theme_;
    SegmentedControl* pages_;
};

}  // namespace gruk
