#include "core/automation/patrol_cadence.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace gruk {

TEST(PatrolCadence, theCadencesStandInTheirOrderWithTheirTexts)
{
    std::vector<std::string_view> texts;
    for (const PatrolCadence cadence : allPatrolCadences) {
        texts.push_back(rawString(cadence));
    }
    EXPECT_EQ(texts, (std::vector<std::string_view>{"off", "daily", "weekly", "standGuard"}));
}

TEST(PatrolCadence, everyTextReadsBackToItsCadence)
{
    for (const PatrolCadence cadence : allPatrolCadences) {
        EXPECT_EQ(patrolCadence(rawString(cadence)), cadence);
    }
}

TEST(PatrolCadence, theRawTextDailyWithACapitalIsNotACadence)
{
    EXPECT_EQ(patrolCadence("Daily"), std::nullopt);
}

TEST(PatrolCadence, noOtherTextIsACadence)
{
    for (const std::string_view text :
         {"", "Off", "dail", "daily ", " weekly", "standguard", "hourly", "0"}) {
        EXPECT_EQ(patrolCadence(text), std::nullopt) << '"' << text << '"';
    }
    EXPECT_EQ(patrolCadence(std::string_view("off\0", 4)), std::nullopt);
}

TEST(PatrolCadence, onlyDailyAndWeeklyHaveAnInterval)
{
    EXPECT_EQ(interval(PatrolCadence::off), std::nullopt);
    EXPECT_EQ(interval(PatrolCadence::daily), 86'400);
    EXPECT_EQ(interval(PatrolCadence::weekly), 604'800);
    EXPECT_EQ(interval(PatrolCadence::standGuard), std::nullopt);
}

}  // namespace gruk
