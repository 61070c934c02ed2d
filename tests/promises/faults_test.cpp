#include <array>
#include <cerrno>
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
using test::ScenarioOutcome;

constexpr std::array errors = {ENOSPC, EDQUOT,       EIO,    EACCES, EROFS,
                               EXDEV,  ENAMETOOLONG, EMFILE, EINTR};

/// Plays the scenario with a fault; complains of everything that is not as promised. Returns
/// whether the fault was reached at all.
bool play(const MoveScenario& scenario, MoveFaults faults)
{
    const MovesHouse house;
    const auto operation = scenario.prepare(house);
    const std::multiset<std::string> before = house.census();
    const std::multiset<std::string> outside = MovesHouse::censusWithPaths(house.outside().path());
    const MoveCalls calls = faults.calls();
    const ScenarioOutcome outcome = operation(calls);
    EXPECT_EQ(house.census(), before);
    EXPECT_EQ(MovesHouse::censusWithPaths(house.outside().path()), outside);
    EXPECT_TRUE(outcome.hasWords);
    EXPECT_GT(outcome.moved + outcome.failures.size(), 0U);
    return faults.isHit();
}

/// How many calls the scenario makes when nothing fails.
std::size_t callsOf(const MoveScenario& scenario)
{
    MoveFaults faults;
    play(scenario, faults);
    return faults.names().size();
}

TEST(Promises, aFaultAtAnySystemCallLosesNothingAndIsTold)
{
    const std::size_t stride = 10 / test::unlessSanitized(10);
    std::size_t reached = 0;
    for (const MoveScenario& scenario : test::moveScenarios()) {
        const std::size_t calls = callsOf(scenario);
        ASSERT_GT(calls, 10U);
        for (const int error : errors) {
            for (const auto span : {MoveFaults::Span::once, MoveFaults::Span::fromThenOn}) {
                // Every call; under a sanitizer one in ten.
                for (std::size_t number = 0; number < calls; number += stride) {
                    MoveFaults faults;
                    faults.failAt = number;
                    faults.error = error;
                    faults.span = span;
                    faults.removingFails = error == EIO || error == EROFS;
                    reached += play(scenario, faults) ? 1 : 0;
                    if (testing::Test::HasFailure()) {
                        FAIL() << scenario.name << ", error " << error << " at call " << number
                               << " ("
                               << (number < faults.names().size() ? faults.names()[number] : "none")
                               << ")";
                    }
                }
            }
        }
    }
    EXPECT_GE(reached, test::unlessSanitized(5'000));
    test::reportPromise("faults", std::to_string(reached) + " faults at system calls of "
                                      + std::to_string(test::moveScenarios().size())
                                      + " operations; each file in one place after each, and every"
                                        " failure told in words");
}

}  // namespace

}  // namespace gruk
