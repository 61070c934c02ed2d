#include "core/automation/patrol_schedule.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

constexpr Date now{1'790'000'000};

constexpr Date secondsBeforeNow(double seconds)
{
    return {now.secondsSince1970 - seconds};
}

/// The rule of both callers.
bool hasCome(std::optional<Date> due)
{
    return due && now >= *due;
}

}  // namespace

TEST(PatrolSchedule, offWithALastPatrolLongAgoGivesNone)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::off, Date{0}, now), std::nullopt);
}

TEST(PatrolSchedule, offWithNoLastPatrolGivesNone)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::off, std::nullopt, now), std::nullopt);
}

TEST(PatrolSchedule, standGuardWithNoLastPatrolGivesNone)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::standGuard, std::nullopt, now), std::nullopt);
}

TEST(PatrolSchedule, standGuardWithALastPatrolLongAgoGivesNone)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::standGuard, Date{0}, now), std::nullopt);
}

TEST(PatrolSchedule, dailyWithNoLastPatrolGivesNowWhichHasCome)
{
    const auto due = PatrolSchedule::nextDue(PatrolCadence::daily, std::nullopt, now);
    EXPECT_EQ(due, now);
    EXPECT_TRUE(hasCome(due));
}

TEST(PatrolSchedule, weeklyWithNoLastPatrolGivesNow)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::weekly, std::nullopt, now), now);
}

TEST(PatrolSchedule, dailyWithALastPatrolExactlyADayBeforeNowGivesNowWhichHasCome)
{
    const auto due = PatrolSchedule::nextDue(PatrolCadence::daily, secondsBeforeNow(86'400), now);
    EXPECT_EQ(due, now);
    EXPECT_TRUE(hasCome(due));
}

TEST(PatrolSchedule, dailyWithALastPatrolOneSecondLaterThanThatHasNotCome)
{
    const auto due = PatrolSchedule::nextDue(PatrolCadence::daily, secondsBeforeNow(86'399), now);
    EXPECT_EQ(due, secondsBeforeNow(-1));
    EXPECT_FALSE(hasCome(due));
}

TEST(PatrolSchedule, weeklyIsDueSevenFixedDaysAfterTheLastPatrol)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::weekly, secondsBeforeNow(604'800), now), now);
    EXPECT_FALSE(
        hasCome(PatrolSchedule::nextDue(PatrolCadence::weekly, secondsBeforeNow(604'799), now)));
}

TEST(PatrolSchedule, aLastPatrolInTheFutureGivesALaterDueDateAndNothingIsCorrected)
{
    EXPECT_EQ(PatrolSchedule::nextDue(PatrolCadence::daily, secondsBeforeNow(-1000), now),
              secondsBeforeNow(-87'400));
}

}  // namespace gruk
