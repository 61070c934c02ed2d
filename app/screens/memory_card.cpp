#include "app/screens/memory_card.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QVBoxLayout>

#include "app/screens/confirmation_dialog.h"
#include "app/screens/repaint_once.h"
#include "app/screens/section_title.h"
#include "app/theme/accessible.h"
#include "app/theme/layouts.h"
#include "app/theme/tab_order.h"
#include "app/theme/text.h"
#include "platform/foundation/file_url.h"

namespace gruk {

namespace {

QString patrolsText(std::size_t count)
{
    return count == 1 ? QStringLiteral("1 patrol")
                      : QStringLiteral("%1 patrols").arg(groupedNumber(static_cast<qint64>(count)));
}

QString placeName(const PatrolMemory::Forgettable& place)
{
    return displayName(FileURL(place.path).lastPathComponent());
}

}  // namespace

MemoryCard::MemoryCard(AppModel& model, Theme& theme, QWidget* parent)
    : Card(theme, Measure::cardPadding, parent), model_(model),
      size_(paragraph(theme, TextStyle::body)), failure_(paragraph(theme, TextStyle::body)),
      damaged_(new QWidget),
      intro_(sectionNote(theme, QStringLiteral("Of these, which are no realms of yours, there are "
                                               "past patrols too:"))),
      list_(new QWidget), rows_(columnIn(list_, 0))
{
    setAccessibleRole(*list_, QAccessible::List);
    list_->setAccessibleName(intro_->text());
    auto* show = new Button(theme, Button::Kind::secondary, QStringLiteral("Show it"));
    auto* aside =
        new Button(theme, Button::Kind::secondary, QStringLiteral("Set it aside and begin anew"));
    auto* choices = new QHBoxLayout(damaged_);
    choices->setContentsMargins(0, 0, 0, 0);
    choices->setSpacing(Measure::small);
    choices->addWidget(show);
    choices->addWidget(aside);
    choices->addStretch(1);
    auto* column = columnIn(this, Measure::small);
    column->addWidget(sectionTitle(theme, QStringLiteral("What the Gruk remembers")));
    for (QWidget* each :
         std::initializer_list<QWidget*>{size_, damaged_, intro_, list_, failure_}) {
        column->addWidget(each);
    }
    failure_->hide();

    connect(show, &QPushButton::clicked, this, [this] { model_.revealMemory(); });
    connect(aside, &QPushButton::clicked, this, [this] { model_.setMemoryAside(); });
    auto* repaint = new RepaintOnce([this] { showModel(); }, this);
    repaint->on(model_, &AppModel::memoryChanged);
    // What was a realm, and what a patrol has added.
    const auto look = [this] {
        if (isVisible() && !model_.isPatrolling()) {
            refresh();
        }
    };
    connect(&model_, &AppModel::grantsChanged, this, look);
    connect(&model_, &AppModel::isPatrollingChanged, this, look);
    showModel();
}

void MemoryCard::refresh()
{
    model_.loadMemory();
}

void MemoryCard::showModel()
{
    const std::optional<PatrolMemory>& memory = model_.memory();
    const bool isDamaged = memory && memory->isDamaged;
    size_->setText(
        !memory     ? QStringLiteral("Looking how much that is…")
        : isDamaged ? QStringLiteral("The file of past patrols is damaged. It was left as it is.")
        : memory->bytes == 0 ? QStringLiteral("Nothing yet. The first patrol begins it.")
                             : QStringLiteral("Past patrols of all realms take %1 on this disk.")
                                   .arg(bytesText(memory->bytes)));
    damaged_->setVisible(isDamaged);
    showForgettable();
}

void MemoryCard::showForgettable()
{
    const std::vector<PatrolMemory::Forgettable> places =
        model_.memory() ? model_.memory()->forgettable : std::vector<PatrolMemory::Forgettable>();
    intro_->setVisible(!places.empty());
    list_->setVisible(!places.empty());
    if (places == shown_) {
        // Only then, so that the focus stays on a row that is still right.
        return;
    }
    shown_ = places;
    removeRows(*rows_);
    std::vector<QWidget*> stops;
    for (const PatrolMemory::Forgettable& place : places) {
        QWidget* row = makeRow(place);
        rows_->addWidget(row);
        stops.push_back(row->findChild<Button*>());
    }
    chainTabStops(stops);
}

QWidget* MemoryCard::makeRow(const PatrolMemory::Forgettable& place)
{
    auto* row = new QWidget;
    setAccessibleRole(*row, QAccessible::ListItem);
    const QString path = displayName(place.path);
    row->setAccessibleName(path);
    auto* name = new ElidedLabel(theme(), TextStyle::body, Qt::ElideMiddle);
    name->setFullText(path);
    auto* share = new Label(theme(), TextStyle::detail);
    share->setText(
        QStringLiteral("%1, %2").arg(patrolsText(place.patrols), bytesText(place.bytes)));
    share->setColour(Role::ink, Strength::quiet);
    auto* forget = new Button(theme(), Button::Kind::link, QStringLiteral("Forget…"));
    forget->setObjectName(QStringLiteral("forget"));
    forget->setAccessibleDescription(QStringLiteral("%1, %2").arg(path, share->text()));
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(Measure::medium);
    line->addWidget(name, 1);
    line->addWidget(share);
    line->addWidget(forget);
    connect(forget, &QPushButton::clicked, this, [this, place] { ask(place); });
    return row;
}

void MemoryCard::ask(const PatrolMemory::Forgettable& place)
{
    auto* question = new ConfirmationDialog(
        theme(),
        {QStringLiteral("Forget %1?").arg(placeName(place)),
         QStringLiteral(
             "What the Gruk remembers of %1 goes for good: %2, %3. If it becomes a realm "
             "again, its next patrol is a first one. No file of yours is touched.")
             .arg(displayName(place.path), patrolsText(place.patrols), bytesText(place.bytes)),
         QStringLiteral("Forget"), QStringLiteral("Keep it")},
        this);
    question->setObjectName(QStringLiteral("forgetDialog"));
    connect(question, &ConfirmationDialog::accepted, this,
            [this, path = place.path] { forget(path); });
    question->open();
}

QCoro::Task<> MemoryCard::forget(std::string path)
{
    const QPointer<MemoryCard> self = this;
    const bool isForgotten = co_await model_.forgetPatrols(std::move(path));
    if (!self) {
        co_return;
    }
    // The window that tells it otherwise may be closed.
    failure_->setText(isForgotten ? QString() : displayString(model_.errorMessage().value_or("")));
    failure_->setVisible(!failure_->text().isEmpty());
}

}  // namespace gruk
