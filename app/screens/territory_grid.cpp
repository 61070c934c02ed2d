#include "app/screens/territory_grid.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "app/theme/accessible.h"
#include "app/theme/tab_order.h"

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
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(QStringLiteral("Your realms"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

TerritoryGrid::~TerritoryGrid()
{
    // The one that has the focus loses it when it ends, which is after this has.
    for (RealmCard* card : cards_) {
        disconnect(card, nullptr, this, nullptr);
    }
}

void TerritoryGrid::showRealms(const std::vector<RealmSummary>& realms,
                               const IdentityOf& identityOf)
{
    std::vector<RealmCard*> former = std::exchange(cards_, {});
    for (const RealmSummary& realm : realms) {
        const auto own = std::ranges::find_if(former, [&realm](const RealmCard* card) {
            return card != nullptr && card->realm().path == realm.path;
        });
        cards_.push_back(own == former.end() ? makeCard() : std::exchange(*own, nullptr));
        cards_.back()->showRealm(realm, identityOf(realm));
    }
    std::vector<QWidget*> stops = {tabStopBefore(*this)};
    std::ranges::copy(cards_, std::back_inserter(stops));
    chainTabStops(stops);
    for (RealmCard* card : former) {
        if (card != nullptr) {
            card->hide();
            card->deleteLater();
        }
    }
    placeCards();
}

RealmCard* TerritoryGrid::makeCard()
{
    auto* card = new RealmCard(theme_, this);
    card->setVisible(true);
    connect(card, &QPushButton::clicked, this, [this, card] {
        // A copy, since whoever hears of it may show other realms.
        const RealmSummary realm = card->realm();
        Q_EMIT selected(realm);
    });
    connect(card, &RealmCard::pointedAt, this,
            [this, card](bool isPointedAt) { tellPointedAt(*card, isPointedAt); });
    return card;
}

void TerritoryGrid::tellPointedAt(const RealmCard& card, bool isPointedAt)
{
    auto pointed = std::ranges::find(cards_, &card);
    if (!isPointedAt) {
        // What else is pointed at: where the pointer went on to, or the keyboard has stayed.
        pointed = std::ranges::find_if(cards_, &QWidget::underMouse);
        pointed =
            pointed == cards_.end() ? std::ranges::find_if(cards_, &QWidget::hasFocus) : pointed;
    }
    const bool isAny = pointed != cards_.end();
    Q_EMIT this->pointedAt(isAny ? static_cast<std::size_t>(pointed - cards_.begin()) : 0, isAny);
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
