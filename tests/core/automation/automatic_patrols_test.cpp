#include "core/automation/automatic_patrols.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

constexpr double minute = 60;
constexpr double day = 86'400;
constexpr Date start{1'000'000};

Date after(double seconds)
{
    return {start.secondsSince1970 + seconds};
}

}  // namespace

TEST(AutomaticPatrols, aDailyOrWeeklyPatrolIsDueByItsCadence)
{
    const AutomaticPatrols patrols;
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, start));
    EXPECT_FALSE(patrols.isDue(PatrolCadence::daily, start, after(day - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, start, after(day)));
    EXPECT_FALSE(patrols.isDue(PatrolCadence::weekly, start, after(7 * day - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::weekly, start, after(7 * day)));
    EXPECT_FALSE(patrols.isDue(PatrolCadence::off, std::nullopt, start));
}

TEST(AutomaticPatrols, failuresWaitFiveFifteenAndSixtyMinutesAndThenTheCadence)
{
    AutomaticPatrols patrols;
    double now = 0;
    for (const double delay : {5 * minute, 15 * minute, 60 * minute, day, day}) {
        patrols.failed(PatrolCadence::daily, after(now));
        EXPECT_FALSE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(now))) << delay;
        EXPECT_FALSE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(now + delay - 1)))
            << delay;
        now += delay;
        EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(now))) << delay;
    }
}

TEST(AutomaticPatrols, aWeeklyRealmThatFailsFourTimesWaitsForAWeek)
{
    AutomaticPatrols patrols;
    for (int i = 0; i < 4; ++i) {
        patrols.failed(PatrolCadence::weekly, start);
    }
    EXPECT_FALSE(patrols.isDue(PatrolCadence::weekly, std::nullopt, after(7 * day - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::weekly, std::nullopt, after(7 * day)));
}

TEST(AutomaticPatrols, aPatrolThatIsStoppedCountsAsMade)
{
    AutomaticPatrols patrols;
    patrols.failed(PatrolCadence::daily, start);
    patrols.stopped(start);
    EXPECT_EQ(patrols.stoppedAt(), start);
    EXPECT_FALSE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(day - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(day)));
    EXPECT_FALSE(patrols.isDue(PatrolCadence::weekly, std::nullopt, after(7 * day - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::weekly, std::nullopt, after(7 * day)));
}

TEST(AutomaticPatrols, aSuccessForgetsFailuresAndStops)
{
    AutomaticPatrols patrols;
    for (int i = 0; i < 3; ++i) {
        patrols.failed(PatrolCadence::daily, start);
    }
    patrols.succeeded();
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, start));
    patrols.failed(PatrolCadence::daily, start);
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(5 * minute)));
    patrols.stopped(start);
    patrols.succeeded();
    EXPECT_FALSE(patrols.stoppedAt());
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, start));
}

TEST(AutomaticPatrols, aStopThatWasKeptHolds)
{
    const AutomaticPatrols patrols(start);
    EXPECT_FALSE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(minute)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::daily, std::nullopt, after(day)));
}

TEST(AutomaticPatrols, aClockThatIsSetBackEndsAllWaiting)
{
    AutomaticPatrols stopped;
    stopped.stopped(after(3'650 * day));
    EXPECT_TRUE(stopped.isDue(PatrolCadence::daily, std::nullopt, start));
    AutomaticPatrols failed;
    failed.failed(PatrolCadence::daily, after(3'650 * day));
    EXPECT_TRUE(failed.isDue(PatrolCadence::daily, std::nullopt, start));
}

TEST(AutomaticPatrols, aGuardedRealmIsDueOnceItHasSettled)
{
    AutomaticPatrols patrols;
    EXPECT_FALSE(patrols.mayComeDue(PatrolCadence::standGuard));
    EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, std::nullopt, start));
    patrols.settled();
    EXPECT_TRUE(patrols.mayComeDue(PatrolCadence::standGuard));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::standGuard, std::nullopt, start));
    patrols.begun();
    EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, std::nullopt, start));
    EXPECT_TRUE(patrols.mayComeDue(PatrolCadence::daily));
    EXPECT_FALSE(patrols.mayComeDue(PatrolCadence::off));
}

TEST(AutomaticPatrols, aGuardedRealmThatFailsIsTriedThreeTimesMoreAndThenAtItsNextChange)
{
    AutomaticPatrols patrols;
    double now = 0;
    for (const double delay : {5 * minute, 15 * minute, 60 * minute}) {
        patrols.failed(PatrolCadence::standGuard, after(now));
        patrols.settled();
        EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, start, after(now + delay - 1)));
        now += delay;
        EXPECT_TRUE(patrols.isDue(PatrolCadence::standGuard, start, after(now)));
        patrols.begun();
    }
    patrols.failed(PatrolCadence::standGuard, after(now));
    EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, start, after(now + 30 * day)));
    patrols.settled();
    EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, start, after(now + 60 * minute - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::standGuard, start, after(now + 60 * minute)));
}

TEST(AutomaticPatrols, aGuardThatIsStoppedRestsForADayAndThenSeesWhatChangedMeanwhile)
{
    AutomaticPatrols patrols;
    patrols.settled();
    patrols.stopped(start);
    EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, start, after(2 * day)))
        << "what had changed until then counts as seen";
    patrols.settled();
    EXPECT_FALSE(patrols.isDue(PatrolCadence::standGuard, start, after(day - 1)));
    EXPECT_TRUE(patrols.isDue(PatrolCadence::standGuard, start, after(day)));
}

}  // namespace gruk
