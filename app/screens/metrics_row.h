#pragma once

#include <QWidget>

#include "app/model/app_model.h"
#include "app/screens/metric_card.h"

class QBoxLayout;

namespace gruk {

/// The three figures of a realm, side by side, or stacked where the page is narrow.
class MetricsRow : public QWidget {
    Q_OBJECT

public:
    MetricsRow(AppModel& model, Theme& theme, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showModel();

    AppModel& model_;
    MetricCard* mapped_;
    MetricCard* change_;
    MetricCard* review_;
    QBoxLayout* layout_;
};

}  // namespace gruk
