#include "app/screens/heavy_section.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/screens/patrol_text.h"
#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/row.h"
#include "app/theme/text.h"
#include "core/patrol/byte_format.h"
#include "core/patrol/live_removals.h"

namespace gruk {

namespace {

constexpr std::size_t shownAtFirst = 5;

}  // namespace

HeavySection::HeavySection(AppModel& model, Theme& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme), introduction_(sectionNote(theme, {})),
      rows_(new QVBoxLayout), showAll_(new Button(theme, Button::Kind::link, {}))
{
    showAll_->setObjectName(QStringLiteral("showAllHeavyItems"));
    rows_->setSpacing(0);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addWidget(sectionTitle(theme, QStringLiteral("The big stuff")));
    column->addWidget(introduction_);
    column->addLayout(rows_);
    column->addWidget(showAll_, 0, Qt::AlignLeft);

    connect(showAll_, &QPushButton::clicked, this, [this] {
        expandedHeavyItems_ = true;
        showModel();
    });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::latestSnapshotChanged);
    repaint->on(model_, &AppModel::previousSnapshotChanged);
    repaint->on(model_, &AppModel::heavyItemsChanged);
    repaint->on(model_, &AppModel::liveRemovedBytesByPathChanged);
    showModel();
}

void HeavySection::showModel()
{
    const RemovedBytesByPath& removals = model_.liveRemovedBytesByPath();
    const std::vector<HeavyItem> items =
        LiveRemovals::remainingItems(model_.heavyItems(), removals);
    const std::size_t shown =
        expandedHeavyItems_ ? items.size() : std::min(items.size(), shownAtFirst);
    removeRows(*rows_);
    for (std::size_t index = 0; index < shown; ++index) {
        rows_->addWidget(makeRow(items[index]));
    }
    introduction_->setText(PatrolText::heavyIntroduction(
        LiveRemovals::adjustedTotal(model_.latestTotalBytes(), removals)));
    showAll_->setText(QStringLiteral("Show all %1").arg(items.size()));
    showAll_->setVisible(shown < items.size());
    setVisible(model_.latestSnapshot() != nullptr);
}

QWidget* HeavySection::makeRow(const HeavyItem& item) const
{
    const QString path = displayName(item.relativePath);
    const QString size = QString::fromStdString(ByteFormat::string(item.allocatedSize));
    const QString note = PatrolText::heavyNote(item, model_.previousSnapshot() != nullptr);
    auto* row = new Row(theme_);
    row->setAccessibleName(QStringLiteral("%1, %2, %3").arg(path, size, note));
    auto* symbol = new IconLabel(theme_, iconFor(item.kind), Measure::iconSize);
    symbol->setColour(Role::ink, Strength::quiet);
    auto* name = new ElidedLabel(theme_, TextStyle::bodyStrong, Qt::ElideMiddle);
    name->setFullText(path);
    auto* noteLabel = new ElidedLabel(theme_, TextStyle::small, Qt::ElideRight);
    noteLabel->setColour(Role::ink, Strength::quiet);
    noteLabel->setFullText(note);
    auto* figure = new Label(theme_, TextStyle::bodyStrong);
    figure->setText(size);
    figure->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    figure->setMinimumWidth(Measure::figureWidth);

    auto* reveal = new Button(theme_, Button::Kind::link, QStringLiteral("Reveal"));
    reveal->setAccessibleDescription(path);
    connect(reveal, &QPushButton::clicked, this, [this, relativePath = item.relativePath] {
        if (const AppModel::Snapshot& latest = model_.latestSnapshot()) {
            model_.reveal({FileURL::directory(latest->rootPath).appending(relativePath)});
        }
    });

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(name);
    words->addWidget(noteLabel);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, Measure::small, 0, Measure::small);
    layout->setSpacing(Measure::medium);
    layout->addWidget(symbol);
    layout->addLayout(words, 1);
    layout->addWidget(figure);
    layout->addWidget(reveal);
    return row;
}

}  // namespace gruk
