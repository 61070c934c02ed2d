#include "app/screens/heavy_section.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/screens/patrol_text.h"
#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/row.h"
#include "app/theme/text.h"
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
    auto* list = new QWidget;
    setAccessibleRole(*list, QAccessible::List);
    list->setAccessibleName(QStringLiteral("The big stuff"));
    list->setLayout(rows_);
    rows_->setContentsMargins(0, 0, 0, 0);
    rows_->setSpacing(0);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addWidget(sectionTitle(theme, QStringLiteral("The big stuff")));
    column->addWidget(introduction_);
    column->addWidget(list);
    column->addWidget(showAll_, 0, Qt::AlignLeft);

    connect(showAll_, &QPushButton::clicked, this, [this] {
        expandedHeavyItems_ = true;
        const std::size_t firstNew = reveals_.size();
        showModel();
        if (firstNew < reveals_.size()) {
            reveals_[firstNew]->setFocus(Qt::OtherFocusReason);
        }
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
    makeRows({items.begin(), items.begin() + static_cast<std::ptrdiff_t>(shown)});
    introduction_->setText(PatrolText::heavyIntroduction(
        LiveRemovals::adjustedTotal(model_.latestTotalBytes(), removals)));
    showAll_->setText(
        QStringLiteral("Show all %1").arg(groupedNumber(static_cast<qint64>(items.size()))));
    showAll_->setVisible(shown < items.size());
    setVisible(model_.latestSnapshot() != nullptr);
}

void HeavySection::makeRows(const std::vector<HeavyItem>& items)
{
    const auto focused = std::ranges::find(reveals_, window()->focusWidget());
    const auto focusedAt = static_cast<std::size_t>(focused - reveals_.begin());
    const bool hadFocus = focused != reveals_.end();
    const std::string focusedPath = hadFocus ? paths_[focusedAt] : std::string();
    removeRows(*rows_);
    reveals_.clear();
    paths_.clear();
    for (const HeavyItem& item : items) {
        rows_->addWidget(makeRow(item));
    }
    // What is made later comes last in the order of the Tab key, in the whole window.
    QWidget* before = showAll_;
    for (Button* reveal : reveals_) {
        setTabOrder(before, reveal);
        before = reveal;
    }
    setTabOrder(before, showAll_);
    if (hadFocus && !reveals_.empty()) {
        const auto same = std::ranges::find(paths_, focusedPath);
        const std::size_t next = same != paths_.end()
                                     ? static_cast<std::size_t>(same - paths_.begin())
                                     : std::min(focusedAt, reveals_.size() - 1);
        reveals_[next]->setFocus(Qt::OtherFocusReason);
    }
}

QWidget* HeavySection::makeRow(const HeavyItem& item)
{
    const QString path = displayName(item.relativePath);
    const QString size = bytesText(item.allocatedSize);
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

    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(name);
    words->addWidget(noteLabel);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, Measure::small, Measure::shadowOffset, Measure::small);
    layout->setSpacing(Measure::medium);
    layout->addWidget(symbol);
    layout->addLayout(words, 1);
    layout->addWidget(figure);
    Button* reveal = makeReveal(item);
    reveal->setAccessibleDescription(row->accessibleName());
    layout->addWidget(reveal);
    return row;
}

Button* HeavySection::makeReveal(const HeavyItem& item)
{
    auto* reveal = new Button(theme_, Button::Kind::link, QStringLiteral("Reveal"));
    connect(reveal, &QPushButton::clicked, this, [this, relativePath = item.relativePath] {
        if (const AppModel::Snapshot& latest = model_.latestSnapshot()) {
            model_.reveal({FileURL::directory(latest->rootPath).appending(relativePath)});
        }
    });
    reveals_.push_back(reveal);
    paths_.push_back(item.relativePath);
    return reveal;
}

}  // namespace gruk
