#include "app/screens/changes_section.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/row.h"
#include "app/theme/text.h"
#include "core/patrol/byte_format.h"
#include "core/realm/region_herald.h"

namespace gruk {

namespace {

/// The change as a word, for whoever does not see its symbol.
QString changeWord(SnapshotDelta::Change change)
{
    return QString::fromUtf8(rawString(change).data(),
                             static_cast<qsizetype>(rawString(change).size()));
}

}  // namespace

ChangesSection::ChangesSection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme), none_(new Label(theme, TextStyle::body)),
      discoveries_(new QVBoxLayout), rows_(new QVBoxLayout)
{
    none_->setText(QStringLiteral("No allocated-size changes since the previous patrol."));
    none_->setColour(Role::ink, Strength::quiet);
    none_->setWordWrap(true);
    auto* list = new QWidget;
    setAccessibleRole(*list, QAccessible::List);
    list->setAccessibleName(QStringLiteral("What changed at the top level"));
    list->setLayout(rows_);
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    discoveries_->setSpacing(Measure::hair);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addWidget(sectionTitle(theme, QStringLiteral("What changed at the top level")));
    column->addLayout(discoveries_);
    column->addWidget(none_);
    column->addWidget(list);

    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::previousSnapshotChanged);
    repaint->on(model_, &AppModel::deltasChanged);
    repaint->on(model_, &AppModel::liveRemovedBytesByPathChanged);
    showModel();
}

void ChangesSection::showModel()
{
    removeRows(*rows_);
    const std::vector<SnapshotDelta> changes = model_.topLevelChanges();
    for (const SnapshotDelta& delta : changes) {
        rows_->addWidget(makeRow(delta));
    }
    none_->setVisible(changes.empty());
    showDiscoveries();
    setVisible(model_.previousSnapshot() != nullptr);
}

void ChangesSection::showDiscoveries()
{
    removeRows(*discoveries_);
    if (!model_.latestSnapshot() || !model_.previousSnapshot()) {
        return;
    }
    for (const DiscoveredRegion& region :
         RegionHerald::discoveries(model_.deltas(), *model_.latestSnapshot())) {
        auto* line = new QWidget;
        auto* words = new Label(theme_, TextStyle::body);
        words->setText(displayName(
            RegionHerald::announcement(region, ByteFormat::string(region.allocatedSize))));
        words->setWordWrap(true);
        auto* row = new QHBoxLayout(line);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(Measure::medium);
        row->addWidget(new IconLabel(theme_, Icon::flag, Measure::iconSize), 0, Qt::AlignTop);
        row->addWidget(words, 1);
        discoveries_->addWidget(line);
    }
}

QWidget* ChangesSection::makeRow(const SnapshotDelta& delta) const
{
    const QString path = displayName(delta.relativePath);
    const QString change = QString::fromStdString(ByteFormat::signedString(delta.netBytes()));
    auto* row = new Row(theme_);
    row->setAccessibleName(
        QStringLiteral("%1, %2, %3").arg(path, changeWord(delta.change), change));
    auto* symbol = new IconLabel(theme_, iconFor(delta.change), Measure::iconSize);
    symbol->setColour(Role::ink, Strength::quiet);
    auto* name = new ElidedLabel(theme_, TextStyle::bodyStrong, Qt::ElideMiddle);
    name->setFullText(path);
    auto* figure = new Label(theme_, TextStyle::bodyStrong);
    figure->setText(change);
    figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    figure->setMinimumWidth(Measure::figureWidth);

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, Measure::small, Measure::shadowOffset, Measure::small);
    layout->setSpacing(Measure::medium);
    layout->addWidget(symbol);
    layout->addWidget(name, 1);
    layout->addWidget(figure);
    return row;
}

}  // namespace gruk
