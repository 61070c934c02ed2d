#include "app/screens/territory_grid.h"

#include <QApplication>
#include <QEnterEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "tests/support/tab_stops.h"

namespace gruk {

namespace {

class TerritoryGridTest : public testing::Test {
protected:
    TerritoryGridTest()
    {
        auto* column = new QVBoxLayout(&window);
        before = new QPushButton(QStringLiteral("Before"));
        grid = new TerritoryGrid(theme);
        column->addWidget(before);
        column->addWidget(grid);
        column->addWidget(new QPushButton(QStringLiteral("After")));
        window.resize(900, 600);
        window.show();
        QApplication::setActiveWindow(&window);
        QApplication::processEvents();
        QObject::connect(grid, &TerritoryGrid::pointedAt, grid,
                         [this](std::size_t place, bool is) { told.emplace_back(place, is); });
    }

    void show(const std::vector<std::string>& names)
    {
        std::vector<RealmSummary> realms;
        for (const std::string& name : names) {
            RealmSummary realm;
            realm.path = "/realms/" + name;
            realm.displayName = name;
            realms.push_back(realm);
        }
        grid->showRealms(realms, [](const RealmSummary&) { return RealmIdentity(); });
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void point(std::size_t place, QEvent::Type type)
    {
        if (type == QEvent::Enter) {
            const QPointF at(5, 5);
            QEnterEvent enter(at, at, at);
            QApplication::sendEvent(grid->cards()[place], &enter);
        } else {
            QEvent leave(type);
            QApplication::sendEvent(grid->cards()[place], &leave);
        }
    }

    using Told = std::vector<std::pair<std::size_t, bool>>;

    Told told;
    Theme theme;
    QWidget window;
    QPushButton* before = nullptr;
    TerritoryGrid* grid = nullptr;
};

}  // namespace

TEST_F(TerritoryGridTest, aCardStaysThatOfItsRealm)
{
    show({"a", "b", "c"});
    RealmCard* b = grid->cards()[1];
    b->setFocus(Qt::TabFocusReason);
    show({"b", "c"});
    EXPECT_EQ(QApplication::focusWidget(), b);
    EXPECT_EQ(b->realm().path, "/realms/b");
    EXPECT_EQ(grid->cards()[0], b);
    show({"z", "c", "b"});
    EXPECT_EQ(QApplication::focusWidget(), b);
    EXPECT_EQ(grid->cards()[2], b);
    EXPECT_EQ(b->nameText(), QStringLiteral("b"));
    for (const RealmCard* card : grid->cards()) {
        EXPECT_TRUE(card->isVisible());
    }
    EXPECT_EQ(grid->findChildren<RealmCard*>().size(), 3);
}

TEST_F(TerritoryGridTest, aCardThatMovedTellsItsPresentPlace)
{
    show({"a", "b", "c"});
    show({"b", "c"});
    point(0, QEvent::Enter);
    EXPECT_EQ(told, (Told{{0, true}}));
}

TEST_F(TerritoryGridTest, tabGoesThroughTheCardsAsTheyStand)
{
    const auto stops = [this] {
        QStringList names;
        for (const QString& name : test::tabStopsIn(window)) {
            names.append(name.section(u',', 0, 0));
        }
        return names.join(u' ');
    };
    show({"a", "b"});
    EXPECT_EQ(stops(), QStringLiteral("Before a b After"));
    show({"z", "b", "m", "a"});
    EXPECT_EQ(stops(), QStringLiteral("Before z b m a After"));
    show({"m"});
    EXPECT_EQ(stops(), QStringLiteral("Before m After"));
}

TEST_F(TerritoryGridTest, whenThePointerHasPassedTheCardWithTheFocusIsPointedAtAgain)
{
    show({"a", "b"});
    grid->cards()[0]->setFocus(Qt::TabFocusReason);
    point(1, QEvent::Enter);
    EXPECT_EQ(told.back(), (Told::value_type{1, true}));
    point(1, QEvent::Leave);
    EXPECT_EQ(told.back(), (Told::value_type{0, true}));
    before->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(told.back().second);
}

TEST_F(TerritoryGridTest, endsWithoutAWordThoughACardHasTheFocus)
{
    show({"a", "b"});
    grid->cards()[1]->setFocus(Qt::TabFocusReason);
    told.clear();
    delete grid;
    EXPECT_TRUE(told.empty());
}

TEST_F(TerritoryGridTest, whenTheFocusGoesTheCardUnderThePointerIsPointedAt)
{
    show({"a", "b"});
    point(1, QEvent::Enter);
    grid->cards()[0]->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(told.back(), (Told::value_type{0, true}));
    before->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(told.back(), (Told::value_type{1, true}));
    point(1, QEvent::Leave);
    EXPECT_FALSE(told.back().second);
}

}  // namespace gruk
