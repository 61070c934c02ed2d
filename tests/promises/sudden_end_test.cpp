#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "tests/promises/move_scenarios.h"
#include "tests/support/move_faults.h"
#include "tests/support/moves_house.h"

namespace gruk {

namespace {

using test::MoveFaults;
using test::MoveScenario;
using test::MovesHouse;

/// Runs the operation in a process that is killed before its call `number`; returns whether it
/// lived to make that call.
bool dieAt(std::size_t number,
           const std::function<test::ScenarioOutcome(const MoveCalls&)>& operation)
{
    const pid_t child = ::fork();
    if (child == 0) {
        MoveFaults faults;
        faults.before = [number](std::size_t call, std::string_view) {
            if (call == number) {
                ::kill(::getpid(), SIGKILL);
            }
        };
        (void)operation(faults.calls(test::withoutWaiting()));
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

TEST(Promises, aKillAtAnyStepLeavesEachItemInExactlyOnePlace)
{
    std::size_t kills = 0;
    for (const MoveScenario& scenario : test::moveScenarios()) {
        bool isAlive = true;
        for (std::size_t number = 0; isAlive; ++number) {
            const MovesHouse house;
            const auto operation = scenario.prepare(house);
            house.ageFolders();
            const std::multiset<std::string> before = house.census();
            isAlive = dieAt(number, operation);
            kills += isAlive ? 1 : 0;
            ASSERT_EQ(house.census(), before) << scenario.name << ", call " << number;
            // The next start takes up where things stand.
            const test::ScenarioOutcome again = operation(test::withoutWaiting());
            ASSERT_TRUE(again.hasWords);
            ASSERT_EQ(house.census(), before) << scenario.name << " again, call " << number;
        }
    }
    EXPECT_GT(kills, 200U);
    test::reportPromise("sudden ends", std::to_string(kills)
                                           + " kills, one before each system call of each"
                                             " operation; each item in exactly one place");
}

}  // namespace

}  // namespace gruk
