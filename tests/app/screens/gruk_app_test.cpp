#include "app/screens/gruk_app.h"

#include <QApplication>
#include <QScreen>
#include <QSessionManager>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include "app/screens/main_window.h"
#include "app/screens/menu_bar_view.h"
#include "app/screens/settings_view.h"
#include "app/screens/window_memory.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;
using test::ModelHouse;

/// The program's windows over a model under the test's control, in a session without a tray.
class GrukAppTest : public testing::Test {
protected:
    void repaint()
    {
        constexpr int turns = 5;
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
        }
    }
    void settle()
    {
        house.settle();
        repaint();
    }
    [[nodiscard]] FileURL desktop() const
    {
        return FileURL::directory(house.directory.path("Desktop"));
    }
    [[nodiscard]] bool showsWindow() const
    {
        return app.mainWindow() != nullptr && app.mainWindow()->isVisible();
    }

    test::EnvironmentVariable noBus{"DBUS_SESSION_BUS_ADDRESS", std::nullopt};
    ModelHouse house;
    Theme theme;
    GrukApp app{*house.model, theme, 0ms};
};

}  // namespace

TEST_F(GrukAppTest, aStartInTheOpenShowsTheMainWindow)
{
    EXPECT_EQ(app.mainWindow(), nullptr);
    int made = 0;
    QObject::connect(&app, &GrukApp::mainWindowMade, &app, [&] { ++made; });
    app.start(GrukApp::Start::inTheOpen, {});
    repaint();
    EXPECT_TRUE(showsWindow());
    EXPECT_EQ(app.mainWindow()->windowTitle(), QStringLiteral("Gruk"));
    const QSize usual = sizeWithin(QSize(1120, 760), app.mainWindow()->screen()->availableSize());
    EXPECT_EQ(app.mainWindow()->size(), usual.expandedTo(app.mainWindow()->minimumSize()));
    EXPECT_EQ(made, 1);
}

TEST_F(GrukAppTest, aStartInTheBackgroundShowsTheWindowWhereThereIsNoTray)
{
    app.start(GrukApp::Start::inTheBackground, {});
    EXPECT_FALSE(showsWindow());
    repaint();
    EXPECT_TRUE(showsWindow());
}

TEST_F(GrukAppTest, closingTheWindowKeepsTheProgramAndOpeningItBringsTheSameOneBack)
{
    EXPECT_FALSE(QApplication::quitOnLastWindowClosed());
    app.start(GrukApp::Start::inTheOpen, {});
    repaint();
    SweepView* const window = app.mainWindow();
    QSignalSpy quit(&app, &GrukApp::quitRequested);
    window->close();
    repaint();
    EXPECT_FALSE(showsWindow());
    EXPECT_EQ(quit.count(), 0);
    app.openMainWindow();
    EXPECT_TRUE(showsWindow());
    EXPECT_EQ(app.mainWindow(), window);
}

TEST_F(GrukAppTest, onlyQuitEndsIt)
{
    QSignalSpy quit(&app, &GrukApp::quitRequested);
    for (const MenuBarItem item :
         {MenuBarItem::status, MenuBarItem::patrolAllRealms, MenuBarItem::patrolNow,
          MenuBarItem::progress, MenuBarItem::stopPatrol, MenuBarItem::tidyDesktop,
          MenuBarItem::settings, MenuBarItem::divider, MenuBarItem::openGruk}) {
        app.perform(item);
        settle();
    }
    EXPECT_EQ(quit.count(), 0);
    app.perform(MenuBarItem::quit);
    EXPECT_EQ(quit.count(), 1);
    Q_EMIT app.mainWindow()->quitRequested();
    EXPECT_EQ(quit.count(), 2);
}

TEST_F(GrukAppTest, theSettingsAreOneWindowOfTheirOwn)
{
    app.perform(MenuBarItem::settings);
    SettingsView* const settings = app.settings();
    ASSERT_NE(settings, nullptr);
    EXPECT_TRUE(settings->isWindow());
    EXPECT_TRUE(settings->isVisible());
    EXPECT_FALSE(showsWindow());
    settings->close();
    app.openMainWindow();
    Q_EMIT app.mainWindow()->settingsRequested();
    EXPECT_EQ(app.settings(), settings);
    EXPECT_TRUE(settings->isVisible());
}

TEST_F(GrukAppTest, patrolsAreStartedAndStopped)
{
    const FileURL first = house.makeRealm("Home");
    house.settle();
    house.makeRealm("Letters");
    house.settle();
    app.perform(MenuBarItem::patrolNow);
    EXPECT_TRUE(house.model->isPatrolling());
    app.perform(MenuBarItem::stopPatrol);
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(), "Patrol stopped. No partial snapshot was saved.");
    app.perform(MenuBarItem::patrolAllRealms);
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(), "Patrolled 2 realm(s).");
    EXPECT_FALSE(house.stored(first).empty());
}

TEST_F(GrukAppTest, tidyingWithoutTheDesktopOpensTheWindowAndAsksForIt)
{
    house.directory.file("Desktop/a");
    house.panel->answers.push_back(desktop());
    app.perform(MenuBarItem::tidyDesktop);
    EXPECT_TRUE(showsWindow());
    settle();
    ASSERT_EQ(house.panel->requests.size(), 1U);
    EXPECT_EQ(house.panel->requests[0].prompt, "Grant the Desktop");
    EXPECT_EQ(house.model->stashableCount(desktop()), 1U) << "nothing is tidied yet";
}

TEST_F(GrukAppTest, tidyingAGrantedDesktopAsksNothingAndShowsNoWindow)
{
    house.directory.file("Desktop/a");
    house.panel->answers.push_back(desktop());
    house.model->grantDesktop();
    house.settle();
    app.perform(MenuBarItem::tidyDesktop);
    EXPECT_EQ(house.model->stashableCount(desktop()), 0U);
    EXPECT_EQ(house.model->lastActionMessage(),
              "Done. 1 items stashed. Your Desktop is yours again.");
    EXPECT_EQ(house.panel->requests.size(), 1U);
    EXPECT_FALSE(showsWindow());
}

TEST_F(GrukAppTest, aSavedSessionBringsBackTheWindowAndNoProgramThatHadNone)
{
    auto* session = qApp->findChild<QSessionManager*>();
    ASSERT_NE(session, nullptr);
    const auto hint = [&] {
        session->setRestartHint(QSessionManager::RestartAnyway);
        Q_EMIT qApp->saveStateRequest(*session);
        return session->restartHint();
    };
    app.start(GrukApp::Start::inTheBackground, {});
    EXPECT_EQ(hint(), QSessionManager::RestartNever);
    app.openMainWindow();
    EXPECT_EQ(hint(), QSessionManager::RestartIfRunning);
    app.mainWindow()->showMinimized();
    EXPECT_EQ(hint(), QSessionManager::RestartIfRunning);
    app.mainWindow()->close();
    EXPECT_EQ(hint(), QSessionManager::RestartNever);
}

}  // namespace gruk
