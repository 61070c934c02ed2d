#include "app/screens/metrics_row.h"

#include <QBoxLayout>
#include <QResizeEvent>

#include "app/screens/repaint_once.h"
#include "app/theme/text.h"
#include "core/patrol/byte_format.h"
#include "core/patrol/live_removals.h"

namespace gruk {

MetricsRow::MetricsRow(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model),
      mapped_(new MetricCard(theme, QStringLiteral("MAPPED"), Role::fern)),
      change_(new MetricCard(theme, QStringLiteral("SINCE LAST PATROL"), Role::blue)),
      review_(new MetricCard(theme, QStringLiteral("TO REVIEW"), Role::yellow)),
      layout_(new QBoxLayout(QBoxLayout::LeftToRight, this))
{
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(Measure::medium);
    for (MetricCard* card : {mapped_, change_, review_}) {
        layout_->addWidget(card);
    }

    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    repaint->on(model_, &AppModel::previousSnapshotChanged);
    repaint->on(model_, &AppModel::deltasChanged);
    repaint->on(model_, &AppModel::findingsChanged);
    repaint->on(model_, &AppModel::liveRemovedBytesByPathChanged);
    repaint->on(model_, &AppModel::isLoadingRealmHistoryChanged);
    repaint->on(model_, &AppModel::territorySummariesChanged);
    showModel();
}

void MetricsRow::resizeEvent(QResizeEvent* event)
{
    layout_->setDirection(event->size().width() < Measure::stackingWidth ? QBoxLayout::TopToBottom
                                                                         : QBoxLayout::LeftToRight);
    QWidget::resizeEvent(event);
}

void MetricsRow::showModel()
{
    const Bytes total =
        LiveRemovals::adjustedTotal(model_.latestTotalBytes(), model_.liveRemovedBytesByPath());
    mapped_->setFigure(bytesText(total), QStringLiteral("allocated in this realm"));
    if (model_.previousSnapshot()) {
        change_->setFigure(
            QString::fromStdString(ByteFormat::signedString(model_.netChangeBytes())),
            QStringLiteral("net allocated change"));
    } else {
        // Whether there is something to compare is not known before the history is.
        const bool isToCome = !model_.latestSnapshot() && model_.isActiveRealmMapped();
        change_->setFigure(QStringLiteral("Baseline"),
                           isToCome ? QStringLiteral("net allocated change")
                                    : QStringLiteral("comparison starts next time"));
    }
    review_->setFigure(groupedNumber(static_cast<qint64>(model_.findings().size())),
                       QStringLiteral("evidence-backed findings"));
    for (MetricCard* card : {mapped_, change_, review_}) {
        card->setLoading(model_.isLoadingRealmHistory());
    }
}

}  // namespace gruk
