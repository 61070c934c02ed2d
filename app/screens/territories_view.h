#pragma once

#include <QScrollArea>

#include "app/model/app_model.h"
#include "app/screens/metric_card.h"
#include "app/theme/theme.h"

class QBoxLayout;

namespace gruk {

class TerritoryGrid;
class TerritoryMapView;

/// The page of all realms: their totals, the map on which each holds land by its size, and a card
/// for each. Shown while no realm is open.
///
/// Asks the model for new summaries when it appears and they are stale or there are none, and when
/// they go stale while it is seen; until they come, the former ones stay.
class TerritoriesView : public QScrollArea {
    Q_OBJECT

public:
    TerritoriesView(AppModel& model, Theme& theme, QWidget* parent = nullptr);
    ~TerritoriesView() override;

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QWidget* makeHeading();
    [[nodiscard]] QWidget* makeTotals();
    [[nodiscard]] QWidget* makePlaceholder();
    void layOut();
    void connectModel();
    void showTotals();
    void showRealms();
    void showCards();
    void loadIfWanted();
    void open(const RealmSummary& realm);

    AppModel& model_;
    Theme& theme_;
    MetricCard* mapped_;
    MetricCard* review_;
    MetricCard* status_;
    QBoxLayout* totals_ = nullptr;
    TerritoryMapView* map_;
    TerritoryGrid* grid_;
    /// What stands on the sea while there is no land.
    WorkMark* mark_ = nullptr;
    Label* words_ = nullptr;
};

}  // namespace gruk
