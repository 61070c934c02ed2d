#pragma once

#include <functional>
#include <vector>

#include <QWidget>

#include "app/screens/realm_card.h"

namespace gruk {

/// How many columns of at least `minimum` fit side by side with `spacing` between them; 1 at least.
[[nodiscard]] int adaptiveColumns(int width, int minimum, int spacing);

/// A card for each realm, in as many columns as there is room for, all of one width.
class TerritoryGrid : public QWidget {
    Q_OBJECT

public:
    explicit TerritoryGrid(Theme& theme, QWidget* parent = nullptr);
    ~TerritoryGrid() override;

    using IdentityOf = std::function<RealmIdentity(const RealmSummary&)>;
    /// Shows these. A card stays that of its realm, and keeps the focus, wherever it moves to. Tab
    /// goes through them as they stand.
    void showRealms(const std::vector<RealmSummary>& realms, const IdentityOf& identityOf);

    [[nodiscard]] const std::vector<RealmCard*>& cards() const { return cards_; }

Q_SIGNALS:
    void selected(const gruk::RealmSummary& realm);
    /// The card at that place is pointed at, by the pointer or the keyboard; or none is any more.
    void pointedAt(std::size_t place, bool isPointedAt);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] RealmCard* makeCard();
    void tellPointedAt(const RealmCard& card, bool isPointedAt);
    void placeCards();

    Theme& theme_;
    std::vector<RealmCard*> cards_;
};

}  // namespace gruk
