#include "app/screens/menu_bar_view.h"

#include <map>

#include <QAbstractButton>
#include <QApplication>
#include <QLayout>
#include <QTest>
#include <gtest/gtest.h>

#include "app/theme/art.h"
#include "app/theme/label.h"
#include "tests/support/screen_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::ScreenHouse;
using test::words;
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

    /// The texts that can be seen, by their places.
    [[nodiscard]] QStringList wordsFromTheTop() const
    {
        std::map<int, QString> byPlace;
        const auto add = [&](const QWidget* widget, const QString& text) {
            if (widget->isVisible()) {
                byPlace[widget->mapTo(&panel, QPoint()).y()] = text;
            }
        };
        for (const QLabel* label : panel.findChildren<QLabel*>()) {
            add(label, label->text());
        }
        for (const QAbstractButton* button : panel.findChildren<QAbstractButton*>()) {
            add(button, button->text());
        }
        QStringList texts;
        for (const auto& [place, text] : byPlace) {
            texts.append(text);
        }
        return texts;
    }

    ScreenHouse house;
    GrukMenuBarView panel{*house.model, house.theme};
};

}  // namespace

TEST_F(MenuBarView, showsWhatThereIsWithoutARealm)
{
    show();
    EXPECT_EQ(wordsFromTheTop(), words({"GRUK", "Choose a realm in the app", "Tidy my Desktop",
                                        "Settings…", "Open Gruk", "Quit Gruk"}));
    EXPECT_EQ(panel.width(), 280);
    EXPECT_EQ(test::namelessControls(panel), QStringList());
}

TEST_F(MenuBarView, whatThereIsStandsInItsOrderWhileAPatrolRuns)
{
    house.makePatrolledRealm("Letters");
    house.makePatrolledRealm("Home");
    show();
    house.model->patrolActiveRealm();
    house.repaint();
    EXPECT_EQ(wordsFromTheTop(), words({"GRUK", "Baseline mapped", "Patrol all realms",
                                        "Patrolling…", "0 paths checked so far", "Stop patrol",
                                        "Tidy my Desktop", "Settings…", "Open Gruk", "Quit Gruk"}));
    house.settle();
}

TEST_F(MenuBarView, standsInFromItsEdgeAndItsRowsApart)
{
    house.makePatrolledRealm("Home");
    show();
    EXPECT_EQ(panel.findChild<ArtView*>()->size(), QSize(52, 52));
    std::map<int, QRect> rows;
    const QLayout* column = panel.layout();
    for (int i = 0; i < column->count(); ++i) {
        const QWidget* row = column->itemAt(i)->widget();
        if (row->isVisible()) {
            rows[row->y()] = row->geometry();
        }
    }
    ASSERT_GT(rows.size(), 4U);
    EXPECT_EQ(rows.begin()->second.topLeft(), QPoint(14, 14));
    EXPECT_EQ(rows.begin()->second.right(), 279 - 14);
    EXPECT_EQ(rows.rbegin()->second.bottom(), panel.height() - 1 - 14);
    for (auto row = rows.begin(), next = std::next(row); next != rows.end(); ++row, ++next) {
        EXPECT_EQ(next->second.top() - row->second.bottom() - 1, 12);
    }
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

TEST_F(MenuBarView, staysOnTheScreenWhileItGrowsAndAtItsItemWhenItShrinks)
{
    house.makePatrolledRealm("Home");
    const QRect screen = panel.screen()->availableGeometry();
    const QRect anchor(screen.right() - 30, screen.bottom() - 23, 24, 24);
    panel.showAt(anchor, {});
    house.repaint();
    const int before = panel.height();
    EXPECT_EQ(panel.geometry().bottom() + 1, anchor.top());
    house.model->patrolActiveRealm();
    house.repaint();
    EXPECT_GT(panel.height(), before);
    EXPECT_EQ(panel.geometry().bottom() + 1, anchor.top());
    house.settle();
    EXPECT_EQ(panel.height(), before);
    EXPECT_EQ(panel.geometry().bottom() + 1, anchor.top());
}

/// What the user's double clicks take.
class DoubleClicks {
public:
    explicit DoubleClicks(int milliseconds) { QApplication::setDoubleClickInterval(milliseconds); }
    ~DoubleClicks() { QApplication::setDoubleClickInterval(before_); }
    DoubleClicks(const DoubleClicks&) = delete;
    DoubleClicks& operator=(const DoubleClicks&) = delete;

private:
    int before_ = QApplication::doubleClickInterval();
};

TEST_F(MenuBarView, aClickOnItsItemShowsItAndTheNextOneHidesIt)
{
    // However quick the test is, none of its clicks are double.
    const DoubleClicks none(0);
    panel.toggleAt({}, {});
    EXPECT_TRUE(panel.isVisible());
    panel.toggleAt({}, {});
    EXPECT_FALSE(panel.isVisible());
    panel.toggleAt({}, {});
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(MenuBarView, aDoubleClickOnItsItemIsOneClick)
{
    const DoubleClicks slow(60'000);
    panel.toggleAt({}, {});
    panel.toggleAt({}, {});
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(MenuBarView, aClickOnItsItemThatTookTheFocusFromItDoesNotShowItAgain)
{
    const DoubleClicks slow(60'000);
    show();
    ASSERT_TRUE(panel.isActiveWindow());
    house.window->activateWindow();
    house.repaint();
    ASSERT_FALSE(panel.isVisible());
    panel.toggleAt({}, {});
    EXPECT_FALSE(panel.isVisible());
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
