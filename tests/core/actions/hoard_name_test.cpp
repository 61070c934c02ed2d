#include "core/actions/hoard_name.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

TEST(HoardName, joinsFolderAndDayWithAnEmDash)
{
    EXPECT_EQ(hoardName("Desktop", "15 Nov 2026"), "Desktop Hoard \xE2\x80\x94 15 Nov 2026");
}

TEST(HoardName, aFreeNameIsKeptAndATakenOneIsCountedUpFromTwo)
{
    EXPECT_EQ(uniqueName("a", {}), "a");
    EXPECT_EQ(uniqueName("a", {"b"}), "a");
    EXPECT_EQ(uniqueName("a", {"a"}), "a (2)");
    EXPECT_EQ(uniqueName("a", {"a", "a (2)", "a (3)"}), "a (4)");
    EXPECT_EQ(uniqueName("a", {"a", "a (3)"}), "a (2)");
}

TEST(HoardName, namesThatDifferInCaseAreDifferent)
{
    EXPECT_EQ(uniqueName("a", {"A"}), "a");
}

}  // namespace

}  // namespace gruk
