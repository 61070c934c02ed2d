#include "app/screens/menu_bar_view.h"

#include <QAbstractButton>
#include <QLayout>
#include <QTest>
#include <gtest/gtest.h>

#include "app/theme/label.h"
#include "tests/support/screen_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::ScreenHouse;
using test::wordsIn;

class MenuBarView : public testing::Test {
protected:
    void show()
    {
        panel.showAt({}, {});
        house.repaint();
    }

    [[nodiscard]] QString statusLine() const
    {
        return panel.findChild<QLabel*>(QStringLiteral("menuBarStatus"))->text();
    }

    ScreenHouse house;
    GrukMenuBarView panel{*house.model, house.theme};
};

}  // namespace

TEST_F(MenuBarView, showsWhatThereIsWithoutARealm)
{
    show();
    QStringList words = wordsIn(panel);
    words.sort();
    EXPECT_EQ(words,
              (QStringList{QStringLiteral("Choose a realm in the app"), QStringLiteral("GRUK"),
                           QStringLiteral("Open Gruk"), QStringLiteral("Quit Gruk"),
                           QStringLiteral("Settings…"), QStringLiteral("Tidy my Desktop")}));
    EXPECT_EQ(panel.width(), 280);
    EXPECT_EQ(test::namelessControls(panel), QStringList());
}

TEST_F(MenuBarView, followsTheModel)
{
    show();
    house.makePatrolledRealm("Home");
    // The other window came to the front meanwhile.
    show();
    EXPECT_EQ(statusLine(), QStringLiteral("Baseline mapped"));
    EXPECT_NE(buttonIn(panel, QStringLiteral("Patrol now")), nullptr);
    EXPECT_EQ(buttonIn(panel, QStringLiteral("Patrol all realms")), nullptr);
    house.makePatrolledRealm("Letters");
    show();
    EXPECT_NE(buttonIn(panel, QStringLiteral("Patrol all realms")), nullptr);
    EXPECT_EQ(panel.height(), panel.layout()->totalHeightForWidth(280));
}

TEST_F(MenuBarView, whileAPatrolRunsItCanOnlyBeStopped)
{
    house.makePatrolledRealm("Letters");
    house.makePatrolledRealm("Home");
    show();
    house.model->patrolActiveRealm();
    house.repaint();
    EXPECT_FALSE(buttonIn(panel, QStringLiteral("Patrolling…"))->isEnabled());
    EXPECT_FALSE(buttonIn(panel, QStringLiteral("Patrol all realms"))->isEnabled());
    EXPECT_TRUE(wordsIn(panel).contains(QStringLiteral("0 paths checked so far")));
    EXPECT_TRUE(buttonIn(panel, QStringLiteral("Stop patrol"))->isEnabled());
    house.settle();
    EXPECT_TRUE(buttonIn(panel, QStringLiteral("Patrol now"))->isEnabled());
    EXPECT_EQ(buttonIn(panel, QStringLiteral("Stop patrol")), nullptr);
}

TEST_F(MenuBarView, eachButtonSaysWhatWasChosen)
{
    house.makePatrolledRealm("Letters");
    house.makePatrolledRealm("Home");
    show();
    std::vector<MenuBarItem> chosen;
    QObject::connect(&panel, &GrukMenuBarView::chosen, &panel,
                     [&](MenuBarItem item) { chosen.push_back(item); });
    for (const char* text : {"Patrol all realms", "Patrol now", "Tidy my Desktop", "Settings…",
                             "Open Gruk", "Quit Gruk"}) {
        buttonIn(panel, QString::fromUtf8(text))->click();
    }
    EXPECT_EQ(chosen, (std::vector{MenuBarItem::patrolAllRealms, MenuBarItem::patrolNow,
                                   MenuBarItem::tidyDesktop, MenuBarItem::settings,
                                   MenuBarItem::openGruk, MenuBarItem::quit}));
}

TEST_F(MenuBarView, noButtonHasTheFocusBeforeTheUserGoesThere)
{
    house.makePatrolledRealm("Home");
    show();
    EXPECT_EQ(panel.focusWidget(), &panel);
    QTest::keyClick(&panel, Qt::Key_Tab);
    EXPECT_EQ(panel.focusWidget(), buttonIn(panel, QStringLiteral("Patrol now")));
}

TEST_F(MenuBarView, aSecondPressOfPatrolNowTidiesNothing)
{
    house.makePatrolledRealm("Home");
    show();
    std::vector<MenuBarItem> chosen;
    QObject::connect(&panel, &GrukMenuBarView::chosen, &panel, [&](MenuBarItem item) {
        chosen.push_back(item);
        if (item == MenuBarItem::patrolNow) {
            house.model->patrolActiveRealm();
        }
    });
    QTest::keyClick(&panel, Qt::Key_Tab);
    QTest::keyClick(panel.focusWidget(), Qt::Key_Return);
    house.repaint();
    QTest::keyClick(panel.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(chosen, std::vector{MenuBarItem::patrolNow});
    house.settle();
}

TEST_F(MenuBarView, escapeClosesIt)
{
    show();
    EXPECT_TRUE(panel.isVisible());
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(MenuBarView, losingTheFocusClosesIt)
{
    show();
    ASSERT_TRUE(panel.isActiveWindow());
    house.window->activateWindow();
    house.repaint();
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(MenuBarView, standsWhereTheTrayItemIs)
{
    const QRect screen = panel.screen()->availableGeometry();
    panel.showAt(QRect(screen.right() - 30, screen.top(), 24, 24), {});
    house.repaint();
    EXPECT_EQ(panel.geometry().right(), screen.right());
    EXPECT_EQ(panel.geometry().top(), screen.top() + 24);
}

TEST(PanelPlace, hangsUnderAnItemAtTheTopAndStandsOnOneAtTheBottom)
{
    const QRect screen(0, 0, 1000, 800);
    const QSize panel(280, 300);
    EXPECT_EQ(panelPlace(QRect(500, 0, 20, 24), panel, screen), QPoint(369, 24));
    EXPECT_EQ(panelPlace(QRect(500, 776, 20, 24), panel, screen), QPoint(369, 476));
}

TEST(PanelPlace, staysOnTheScreen)
{
    const QSize panel(280, 300);
    EXPECT_EQ(panelPlace(QRect(990, 0, 10, 10), panel, QRect(0, 30, 1000, 770)), QPoint(720, 30));
    EXPECT_EQ(panelPlace(QRect(-1920, 1070, 10, 10), panel, QRect(-1920, 0, 1920, 1080)),
              QPoint(-1920, 770));
    // A screen that is smaller than the panel shows the beginning of it.
    EXPECT_EQ(panelPlace(QRect(50, 50, 10, 10), panel, QRect(0, 0, 200, 200)), QPoint(0, 0));
}

}  // namespace gruk
