#include "core/automation/debounce_scheduler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace gruk {

TEST(DebounceScheduler, shouldFireBeforeAnyEventIsFalse)
{
    const DebounceScheduler scheduler{90};
    EXPECT_EQ(scheduler.lastFireTime, std::nullopt);
    EXPECT_FALSE(scheduler.shouldFire(Date{0}));
    EXPECT_FALSE(scheduler.shouldFire(Date{1e12}));
}

TEST(DebounceScheduler, shouldFireAtExactlyTheFireTimeIsTrueAndAMomentBeforeItFalse)
{
    DebounceScheduler scheduler{90};
    const Date fire = scheduler.recordEvent(Date{1'000});
    EXPECT_EQ(fire, Date{1'090});
    EXPECT_TRUE(scheduler.shouldFire(fire));
    EXPECT_TRUE(scheduler.shouldFire(Date{2'000}));
    EXPECT_FALSE(scheduler.shouldFire(
        Date{std::nextafter(1'090.0, -std::numeric_limits<double>::infinity())}));
}

TEST(DebounceScheduler, everyEventPutsTheFireOff)
{
    DebounceScheduler scheduler{90};
    scheduler.recordEvent(Date{0});
    EXPECT_EQ(scheduler.recordEvent(Date{60}), Date{150});
    EXPECT_FALSE(scheduler.shouldFire(Date{90}));
    EXPECT_TRUE(scheduler.shouldFire(Date{150}));
}

TEST(DebounceScheduler, askingChangesNothing)
{
    DebounceScheduler scheduler{90};
    scheduler.recordEvent(Date{0});
    EXPECT_TRUE(scheduler.shouldFire(Date{90}));
    EXPECT_TRUE(scheduler.shouldFire(Date{90}));
    EXPECT_EQ(scheduler.lastFireTime, Date{90});
}

}  // namespace gruk
