#include "app/screens/selection_card.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "app/theme/accessible.h"
#include "app/theme/focus_ring.h"
#include "app/theme/text.h"

namespace gruk {

SelectionCard::SelectionCard(Theme& theme, QWidget* parent)
    : Card(theme, Measure::medium, parent), count_(new Label(theme, TextStyle::bodyStrong)),
      notShown_(new Label(theme, TextStyle::detail)),
      trash_(new Button(theme, Button::Kind::destructive, {})),
      unlock_(new Button(theme, Button::Kind::secondary, QStringLiteral("Enable Trash actions…")))
{
    setAccessibleRole(*this, QAccessible::Notification);
    setProperty(liesOverPage, true);
    count_->setObjectName(QStringLiteral("selectionCount"));
    notShown_->setColour(Role::ink, Strength::quiet);
    auto* words = new QVBoxLayout;
    words->setSpacing(0);
    words->addWidget(count_);
    words->addWidget(notShown_);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Measure::small, 0, 0, 0);
    row->setSpacing(Measure::medium);
    row->addLayout(words, 1);
    row->addWidget(trash_);
    row->addWidget(unlock_);

    connect(trash_, &QPushButton::clicked, this, &SelectionCard::trashRequested);
    connect(unlock_, &QPushButton::clicked, this, &SelectionCard::unlockRequested);
    setState({});
}

void SelectionCard::setState(const SelectionState& state)
{
    const QString count = groupedNumber(static_cast<qint64>(state.selected));
    const QString selected = QStringLiteral("%1 selected · %2").arg(count, bytesText(state.bytes));
    const bool isAnother = count_->text() != selected;
    count_->setText(selected);
    setAccessibleName(selected);
    setAccessibleName(count_->text());
    notShown_->setVisible(state.notShown > 0);
    notShown_->setText(QStringLiteral("%1 not shown by this filter")
                           .arg(groupedNumber(static_cast<qint64>(state.notShown))));
    trash_->setText(QStringLiteral("Move %1 to Trash…").arg(count));
    trash_->updateGeometry();
    trash_->setVisible(!state.reviewOnly);
    unlock_->setVisible(state.reviewOnly);
    const bool wasVisible = isVisible();
    setVisible(state.selected > 0);
    if (wasVisible && isVisible() && isAnother) {
        announce(*this);
    }
}

QWidget* SelectionCard::action() const
{
    return trash_->isVisibleTo(this) ? trash_ : unlock_;
}

void SelectionCard::paintEvent(QPaintEvent* event)
{
    // A card lets through what it lies on, which here would be the rows.
    QPainter painter(this);
    painter.fillRect(rect(), theme().colour(Role::paper));
    painter.end();
    Card::paintEvent(event);
}

}  // namespace gruk
