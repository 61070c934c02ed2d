#include "app/screens/selection_bar.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "app/theme/card.h"
#include "app/theme/text.h"
#include "core/patrol/byte_format.h"

namespace gruk {

SelectionBar::SelectionBar(Theme& theme, QWidget* parent)
    : QWidget(parent), all_(new Button(theme, Button::Kind::link, QStringLiteral("Select all"))),
      allOfKind_(new Button(theme, Button::Kind::link, QStringLiteral("Select all of this kind"))),
      clear_(new Button(theme, Button::Kind::link, QStringLiteral("Clear selection"))),
      chosen_(new Card(theme, Measure::medium)), count_(new Label(theme, TextStyle::bodyStrong)),
      notShown_(new Label(theme, TextStyle::detail)),
      trash_(new Button(theme, Button::Kind::destructive, {})),
      unlock_(new Button(theme, Button::Kind::secondary, QStringLiteral("Enable Trash actions…")))
{
    notShown_->setColour(Role::ink, Strength::quiet);
    count_->setObjectName(QStringLiteral("selectionCount"));
    auto* picks = new QHBoxLayout;
    picks->setSpacing(Measure::large);
    picks->addWidget(all_);
    picks->addWidget(allOfKind_);
    picks->addWidget(clear_);
    picks->addStretch();

    auto* chosen = new QHBoxLayout(chosen_);
    chosen->setContentsMargins(0, 0, 0, 0);
    chosen->setSpacing(Measure::medium);
    chosen->addWidget(count_);
    chosen->addWidget(notShown_);
    chosen->addStretch();
    chosen->addWidget(trash_);
    chosen->addWidget(unlock_);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Measure::small);
    column->addLayout(picks);
    column->addWidget(chosen_);

    connect(all_, &QPushButton::clicked, this, &SelectionBar::selectAllRequested);
    connect(allOfKind_, &QPushButton::clicked, this, &SelectionBar::selectAllOfKindRequested);
    connect(clear_, &QPushButton::clicked, this, &SelectionBar::clearRequested);
    connect(trash_, &QPushButton::clicked, this, &SelectionBar::trashRequested);
    connect(unlock_, &QPushButton::clicked, this, &SelectionBar::unlockRequested);
    setState({});
}

void SelectionBar::setState(const State& state)
{
    const QString count = groupedNumber(static_cast<qint64>(state.selected));
    const bool hasSelection = state.selected > 0;
    all_->setVisible(!state.reviewOnly && state.hasRows);
    allOfKind_->setVisible(!state.reviewOnly && state.hasRows && state.hasFilter);
    clear_->setVisible(!state.reviewOnly && hasSelection);
    chosen_->setVisible(hasSelection);
    count_->setText(QStringLiteral("%1 selected · %2")
                        .arg(count, QString::fromStdString(ByteFormat::string(state.bytes))));
    notShown_->setVisible(state.notShown > 0);
    notShown_->setText(QStringLiteral("%1 not shown by this filter")
                           .arg(groupedNumber(static_cast<qint64>(state.notShown))));
    trash_->setText(QStringLiteral("Move %1 to Trash…").arg(count));
    trash_->updateGeometry();
    trash_->setVisible(!state.reviewOnly);
    unlock_->setVisible(state.reviewOnly);
    setVisible(hasSelection || (!state.reviewOnly && state.hasRows));
}

}  // namespace gruk
