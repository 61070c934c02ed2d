#include "app/screens/territory_grid.h"

#include <algorithm>

namespace gruk {

namespace {

constexpr int leastColumnWidth = 230;
constexpr int spacing = 14;

}  // namespace

int adaptiveColumns(int width, int minimum, int gap)
{
    return std::max(1, (width + gap) / (minimum + gap));
}

TerritoryGrid::TerritoryGrid(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    setAccessibleName(QStringLiteral("Your realms"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void TerritoryGrid::showRealms(const std::vector<RealmSummary>& realms,
                               const IdentityOf& identityOf)
{
    while (cards_.size() > realms.size()) {
        cards_.back()->hide();
        cards_.back()->deleteLater();
        cards_.pop_back();
    }
    while (cards_.size() < realms.size()) {
        addCard();
    }
    for (std::size_t place = 0; place < realms.size(); ++place) {
        cards_[place]->showRealm(realms[place], identityOf(realms[place]));
    }
    placeCards();
}

void TerritoryGrid::addCard()
{
    auto* card = new RealmCard(theme_, this);
    const std::size_t place = cards_.size();
    cards_.push_back(card);
    card->setVisible(true);
    connect(card, &QPushButton::clicked, this, [this, card] {
        // A copy, since whoever hears of it may show other realms.
        const RealmSummary realm = card->realm();
        Q_EMIT selected(realm);
    });
    connect(card, &RealmCard::pointedAt, this,
            [this, place](bool isPointedAt) { Q_EMIT pointedAt(place, isPointedAt); });
}

void TerritoryGrid::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeCards();
}

void TerritoryGrid::placeCards()
{
    const int columns = adaptiveColumns(width(), leastColumnWidth, spacing);
    const int card = (width() - (columns - 1) * spacing) / columns;
    const int row = RealmCard::cardHeight() + spacing;
    for (int place = 0; place < static_cast<int>(cards_.size()); ++place) {
        cards_[static_cast<std::size_t>(place)]->setGeometry((place % columns) * (card + spacing),
                                                             (place / columns) * row, card,
                                                             RealmCard::cardHeight());
    }
    const int rows = (static_cast<int>(cards_.size()) + columns - 1) / columns;
    setFixedHeight(std::max(0, rows * row - spacing));
}

}  // namespace gruk
