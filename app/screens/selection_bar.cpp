#include "app/screens/selection_bar.h"

#include <QHBoxLayout>

namespace gruk {

SelectionBar::SelectionBar(Theme& theme, QWidget* parent)
    : QWidget(parent), all_(new Button(theme, Button::Kind::link, QStringLiteral("Select all"))),
      allOfKind_(new Button(theme, Button::Kind::link, QStringLiteral("Select all of this kind"))),
      clear_(new Button(theme, Button::Kind::link, QStringLiteral("Clear selection")))
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Measure::large);
    row->addWidget(all_);
    row->addWidget(allOfKind_);
    row->addWidget(clear_);
    row->addStretch();

    connect(all_, &QPushButton::clicked, this, &SelectionBar::selectAllRequested);
    connect(allOfKind_, &QPushButton::clicked, this, &SelectionBar::selectAllOfKindRequested);
    connect(clear_, &QPushButton::clicked, this, &SelectionBar::clearRequested);
    setState({});
}

void SelectionBar::setState(const SelectionState& state)
{
    const bool canSelect = !state.reviewOnly && state.hasRows;
    const bool canClear = !state.reviewOnly && state.selected > 0;
    all_->setVisible(canSelect);
    allOfKind_->setVisible(canSelect && state.hasFilter);
    clear_->setVisible(canClear);
    setVisible(canSelect || canClear);
}

}  // namespace gruk
