#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QTimer>
#include <gtest/gtest.h>

#include "app/desktop/termination_signals.h"
#include "tests/support/screen_house.h"

// The desktop's session ends. When it has asked everybody, the toolkit's part that talks to the
// session manager sends the application the event with which it is to quit; a desktop without such
// a manager sends SIGTERM. Either way the program ends as by its own Quit.

namespace gruk {

namespace {

/// What the session manager's last word becomes.
void endSession()
{
    QEvent quit(QEvent::Quit);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
}

/// Runs the application's loop until `end` ends it; its exit code, or -1 when it had to be ended by
/// force.
int runUntil(const std::function<void()>& end)
{
    constexpr int patience = 20'000;
    const bool former = QApplication::quitOnLastWindowClosed();
    // As the program has it: windows come and go.
    QApplication::setQuitOnLastWindowClosed(false);
    QTimer::singleShot(0, qApp, end);
    QTimer force;
    QObject::connect(&force, &QTimer::timeout, &force, [] { QCoreApplication::exit(-1); });
    force.start(patience);
    const int code = QApplication::exec();
    QApplication::setQuitOnLastWindowClosed(former);
    return code;
}

bool hasTemporaryFile(const std::string& folder)
{
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
        if (file.path().string().ends_with(".gruk-new")) {
            return true;
        }
    }
    return false;
}

TEST(SessionEnd, endsTheLoopAlthoughClosingWindowsDoesNot)
{
    const test::ScreenHouse house;
    EXPECT_EQ(runUntil(endSession), 0);
}

TEST(SessionEnd, endsTheLoopWithAQuestionOpen)
{
    const test::ScreenHouse house;
    QDialog question(house.window.get());
    question.setModal(true);
    question.open();
    EXPECT_EQ(runUntil(endSession), 0);
}

TEST(SessionEnd, endsTheLoopWhenNoWindowWasEverShown)
{
    EXPECT_EQ(runUntil(endSession), 0);
}

TEST(SessionEnd, leavesNoSnapshotOfAPatrolUnderWay)
{
    for (const bool isSignal : {false, true}) {
        test::ScreenHouse house;
        const FileURL realm = house.makePatrolledRealm("realm");
        house.model->patrolActiveRealm();
        ASSERT_TRUE(house.model->isPatrolling());
        const TerminationSignals signals([] { QApplication::quit(); });
        EXPECT_EQ(runUntil([&] {
                      if (isSignal) {
                          std::raise(SIGTERM);
                      } else {
                          endSession();
                      }
                  }),
                  0);
        // As at the end of the program: first the window, then the model, then the pool.
        house.window.reset();
        house.model.reset();
        while (house.pool->runNext() || house.loop->run()) {
        }
        EXPECT_EQ(house.stored(realm).size(), 1U);
        EXPECT_FALSE(hasTemporaryFile(house.directory.path()));
    }
}

}  // namespace

}  // namespace gruk
