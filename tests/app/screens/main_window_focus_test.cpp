#include <algorithm>

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/breadcrumb_bar.h"
#include "app/screens/browse_table.h"
#include "app/screens/detail_header.h"
#include "app/screens/main_window.h"
#include "app/screens/realm_card.h"
#include "app/screens/realm_row.h"
#include "app/screens/sidebar.h"
#include "app/theme/focus_ring.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::ScreenHouse;

/// Somebody at the window who has only a keyboard.
class MainWindowFocus : public testing::Test {
protected:
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QApplication::setActiveWindow(house.window.get());
        QWidget* focus = focused();
        QTest::keyClick(focus != nullptr ? focus : house.window.get(), static_cast<Qt::Key>(key),
                        modifiers);
        house.settle();
    }
    void focusOn(QWidget* widget)
    {
        ASSERT_NE(widget, nullptr);
        widget->setFocus(Qt::TabFocusReason);
        ASSERT_EQ(focused(), widget);
    }
    [[nodiscard]] QWidget* focused() const { return house.window->focusWidget(); }
    [[nodiscard]] bool isOnThePage() const
    {
        return focused() != nullptr && house.window->page()->isAncestorOf(focused());
    }
    [[nodiscard]] QString name(const QWidget* widget) const
    {
        if (widget == nullptr) {
            return QStringLiteral("nothing");
        }
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        return QLatin1String(widget->metaObject()->className()) + QLatin1Char(' ')
               + (button != nullptr && !button->text().isEmpty() ? button->text()
                                                                 : widget->accessibleName());
    }

    /// Everything that Tab comes to, from the beginning of the window until it comes round.
    [[nodiscard]] std::vector<QWidget*> tabStops()
    {
        constexpr std::size_t plenty = 500;
        QApplication::setActiveWindow(house.window.get());
        house.window->setFocus();
        std::vector<QWidget*> stops;
        while (stops.size() < plenty) {
            QWidget* focus = focused();
            QTest::keyClick(focus, Qt::Key_Tab);
            if (!stops.empty() && focused() == stops.front()) {
                return stops;
            }
            stops.push_back(focused());
        }
        return stops;
    }

    /// Which part of the window it stands in, in the order in which they are gone through.
    [[nodiscard]] int partOf(const QWidget* widget) const
    {
        const QWidget* parts[] = {house.window->findChild<SidebarView*>(),
                                  house.window->findChild<DetailHeader*>(),
                                  house.window->findChild<QWidget*>(QStringLiteral("messageStrip")),
                                  house.window->page()};
        const auto part = std::ranges::find_if(parts, [widget](const QWidget* each) {
            return each != nullptr && each->isAncestorOf(widget);
        });
        return static_cast<int>(part - std::begin(parts));
    }

    [[nodiscard]] QRect placeOf(const QWidget* widget) const
    {
        return {widget->mapTo(house.window.get(), QPoint()), widget->size()};
    }

    /// Whether one who reads the window comes to `second` after `first`.
    [[nodiscard]] bool isReadAfter(const QWidget* first, const QWidget* second) const
    {
        if (partOf(first) != partOf(second)) {
            return partOf(first) < partOf(second);
        }
        const QRect from = placeOf(first);
        const QRect to = placeOf(second);
        // What lies within the other one is part of it.
        return from.contains(to) || to.contains(from) || to.top() > from.center().y()
               || (to.bottom() > from.center().y() && to.left() >= from.right());
    }

    void expectReadingOrder()
    {
        const std::vector<QWidget*> stops = tabStops();
        ASSERT_GT(stops.size(), 5U);
        EXPECT_EQ(partOf(stops.front()), 0) << name(stops.front()).toStdString();
        EXPECT_EQ(partOf(stops.back()), 3) << name(stops.back()).toStdString();
        for (std::size_t i = 1; i < stops.size(); ++i) {
            EXPECT_TRUE(isReadAfter(stops[i - 1], stops[i]))
                << name(stops[i - 1]).toStdString() << " -> " << name(stops[i]).toStdString();
        }
    }

    /// Two realms with places inside, the second of them open and patrolled twice.
    void makeRealms()
    {
        house.makePatrolledRealm("letters");
        house.directory.folder("home/Desktop");
        house.directory.folder("home/Downloads/deep/deeper");
        for (int i = 0; i < 7; ++i) {
            house.directory.file("home/film" + std::to_string(i) + ".mkv",
                                 static_cast<std::size_t>(40'960 * (i + 1)));
        }
        house.directory.file("home/report.pdf", 40'960);
        house.directory.file("home/report (1).pdf", 40'960);
        house.makePatrolledRealm("home");
        house.directory.file("home/more", 81'920);
        house.patrol();
        house.model->setReviewOnly(false);
        house.settle();
    }
    [[nodiscard]] QString page() const { return house.window->page()->objectName(); }

    ScreenHouse house;
};

}  // namespace

TEST_F(MainWindowFocus, tabGoesThroughTheWelcomeAsItIsRead)
{
    house.model->patrolAllRealms();
    house.settle();
    expectReadingOrder();
}

TEST_F(MainWindowFocus, tabGoesThroughTheTerritoriesAsTheyAreRead)
{
    makeRealms();
    house.model->showTerritories();
    house.settle();
    expectReadingOrder();
}

TEST_F(MainWindowFocus, tabGoesThroughTheMessagesBetweenTheHeaderAndThePage)
{
    house.directory.file("Desktop/photo.png", 10);
    house.makeRealm("Desktop");
    house.settle();
    house.model->showTerritories();
    house.settle();
    house.model->tidyDesktop();
    house.settle();
    ASSERT_NE(house.button(QStringLiteral("Put everything back")), nullptr);
    expectReadingOrder();
    const std::vector<QWidget*> stops = tabStops();
    EXPECT_EQ(std::ranges::count(stops, house.button(QStringLiteral("Put everything back"))), 1);
}

TEST_F(MainWindowFocus, tabGoesThroughThePageOfARealmAsItIsRead)
{
    makeRealms();
    ASSERT_EQ(page(), QStringLiteral("patrolPage"));
    expectReadingOrder();
}

TEST_F(MainWindowFocus, tabGoesThroughTheFoldersAsTheyAreRead)
{
    makeRealms();
    press(Qt::Key_2, Qt::ControlModifier);
    ASSERT_EQ(page(), QStringLiteral("browsePage"));
    for (const char* folder : {"home/Downloads", "home/Downloads/deep"}) {
        house.model->session().open(FileURL::directory(house.directory.path(folder)));
        house.settle();
    }
    ASSERT_EQ(house.window->findChild<BreadcrumbBar*>()->crumbs().size(), 3U);
    expectReadingOrder();
}

TEST_F(MainWindowFocus, whereverTabGoesItIsInViewWithTheRingAroundIt)
{
    makeRealms();
    house.window->resize(house.window->minimumSize());
    for (const DetailPage page : {DetailPage::browse, DetailPage::patrol}) {
        house.window->setDetailPage(page);
        house.settle();
        const FocusRing* ring = house.window->findChild<FocusRing*>();
        const std::size_t all = tabStops().size();
        // Once more, from the end of the page, which is far down.
        for (std::size_t i = 0; i < all; ++i) {
            press(Qt::Key_Tab);
            const std::string stop = name(focused()).toStdString();
            EXPECT_FALSE(focused()->visibleRegion().isEmpty()) << stop;
            if (!focused()->property(showsFocusItself).toBool()) {
                EXPECT_EQ(ring->widget(), focused()) << stop;
                ASSERT_NE(ring->frame(), nullptr) << stop;
                EXPECT_TRUE(ring->frame()->isVisible()) << stop;
            }
        }
    }
}

TEST_F(MainWindowFocus, shiftTabFromTheSidebarBringsTheEndOfThePageIntoView)
{
    makeRealms();
    house.window->resize(house.window->minimumSize());
    house.settle();
    focusOn(tabStops().front());
    auto* page = qobject_cast<QScrollArea*>(house.window->page());
    page->verticalScrollBar()->setValue(0);
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(isOnThePage());
    EXPECT_EQ(focused()->visibleRegion().boundingRect(), focused()->rect());
}

TEST_F(MainWindowFocus, realmsThatComeWhileAPageShowsStandInTheirPlaceForTab)
{
    makeRealms();
    house.makeRealm("later");
    house.settle();
    house.model->removeRealm(house.grantOf(FileURL::directory(house.directory.path("letters"))));
    house.settle();
    expectReadingOrder();
}

TEST_F(MainWindowFocus, aPageThatHadTheFocusHandsItToTheNextOne)
{
    makeRealms();
    house.model->showTerritories();
    house.settle();
    const auto cards = house.window->findChildren<RealmCard*>();
    ASSERT_FALSE(cards.isEmpty());
    focusOn(cards.front());
    press(Qt::Key_Return);
    ASSERT_EQ(page(), QStringLiteral("patrolPage"));
    EXPECT_TRUE(isOnThePage()) << name(focused()).toStdString();
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_NE(qobject_cast<BrowseTable*>(focused()), nullptr) << name(focused()).toStdString();
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_TRUE(isOnThePage()) << name(focused()).toStdString();
}

TEST_F(MainWindowFocus, theWayBackHandsTheFocusToTheTerritories)
{
    makeRealms();
    focusOn(house.button(QStringLiteral("Back to your Territories")));
    press(Qt::Key_Return);
    ASSERT_EQ(page(), QStringLiteral("territoriesPage"));
    EXPECT_EQ(focused(), house.button(QStringLiteral("Refresh")));
}

TEST_F(MainWindowFocus, aRowOfTheSidebarKeepsTheFocusWhenItsRealmOpens)
{
    makeRealms();
    RealmRow* row = nullptr;
    for (RealmRow* each : house.window->findChildren<RealmRow*>()) {
        row = each->accessibleName() == QStringLiteral("letters") ? each : row;
    }
    focusOn(row);
    press(Qt::Key_Return);
    EXPECT_EQ(house.model->activeRootURL()->lastPathComponent(), "letters");
    EXPECT_EQ(focused(), row);
}

TEST_F(MainWindowFocus, thePickerOfThePagesKeepsTheFocusWhenItChangesThePage)
{
    makeRealms();
    QAbstractButton* browse = house.button(QStringLiteral("Browse"));
    focusOn(browse);
    press(Qt::Key_Space);
    EXPECT_EQ(page(), QStringLiteral("browsePage"));
    EXPECT_EQ(partOf(focused()), 1) << name(focused()).toStdString();
}

TEST_F(MainWindowFocus, pageDownScrollsAPageThatHasJustCome)
{
    makeRealms();
    house.window->resize(820, 560);
    house.repaint();
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    const auto* patrol = qobject_cast<QScrollArea*>(house.window->page());
    ASSERT_NE(patrol, nullptr);
    EXPECT_EQ(patrol->verticalScrollBar()->value(), 0);
    press(Qt::Key_PageDown);
    EXPECT_GT(patrol->verticalScrollBar()->value(), 0) << name(focused()).toStdString();
}

TEST_F(MainWindowFocus, pageDownScrollsThePageWhileNothingHasTheFocus)
{
    makeRealms();
    house.window->resize(820, 560);
    house.repaint();
    if (focused() != nullptr) {
        focused()->clearFocus();
    }
    const auto* patrol = qobject_cast<QScrollArea*>(house.window->page());
    ASSERT_NE(patrol, nullptr);
    QTest::keyClick(house.window.get(), Qt::Key_PageDown);
    EXPECT_GT(patrol->verticalScrollBar()->value(), 0);
    QTest::keyClick(house.window.get(), Qt::Key_PageUp);
    EXPECT_EQ(patrol->verticalScrollBar()->value(), 0);
}

TEST_F(MainWindowFocus, thePageThatComesUnderAQuestionTakesNothingFromIt)
{
    makeRealms();
    house.window->showWalkthrough();
    house.settle();
    QWidget* const before = focused();
    ASSERT_EQ(partOf(before), 4);
    house.model->showTerritories();
    house.settle();
    EXPECT_EQ(focused(), before);
}

TEST_F(MainWindowFocus, homeAndEndScrollThePage)
{
    makeRealms();
    house.window->resize(820, 560);
    house.repaint();
    press(Qt::Key_2, Qt::ControlModifier);
    press(Qt::Key_1, Qt::ControlModifier);
    const QScrollBar* bar = qobject_cast<QScrollArea*>(house.window->page())->verticalScrollBar();
    ASSERT_GT(bar->maximum(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(bar->value(), bar->maximum());
    press(Qt::Key_Home);
    EXPECT_EQ(bar->value(), 0);
}

TEST_F(MainWindowFocus, theFirstGrantLeavesTheFocusOnWhatMapsTheRealm)
{
    const FileURL folder = FileURL::directory(house.directory.folder("Home"));
    house.panel->answers.push_back(folder);
    focusOn(house.button(QStringLiteral("Choose a realm to patrol")));
    press(Qt::Key_Return);
    ASSERT_EQ(page(), QStringLiteral("patrolPage"));
    EXPECT_EQ(focused(), house.button(QStringLiteral("Map this realm")))
        << name(focused()).toStdString();
}

TEST_F(MainWindowFocus, aPageThatComesBackHasTheFocusWhereItWas)
{
    makeRealms();
    QWidget* const before = house.button(QStringLiteral("Automations"));
    focusOn(before);
    press(Qt::Key_2, Qt::ControlModifier);
    ASSERT_NE(focused(), before);
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(focused(), before) << name(focused()).toStdString();
}

}  // namespace gruk
