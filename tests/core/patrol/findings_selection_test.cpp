#include "core/patrol/findings_selection.h"

#include <gtest/gtest.h>

#include <limits>

namespace gruk {

namespace {

using Reason = ReviewFinding::Reason;

ReviewFinding finding(const char* id, Reason reason, Bytes size)
{
    ReviewFinding result;
    result.id = id;
    result.reason = reason;
    result.allocatedSize = size;
    return result;
}

const std::vector<ReviewFinding> findings = {
    finding("a", Reason::rapidGrowth, 10),
    finding("b", Reason::oldInstaller, 20),
    finding("c", Reason::oldInstaller, 30),
};

}  // namespace

TEST(FindingsSelection, togglingTwiceLeavesTheSetAsItWas)
{
    FindingsSelection selection;
    selection.toggle("b");
    const FindingsSelection before = selection;
    selection.toggle("a");
    EXPECT_NE(selection, before);
    selection.toggle("a");
    EXPECT_EQ(selection, before);
}

TEST(FindingsSelection, selectAllWithAReasonKeepsEarlierTicksOfOtherReasons)
{
    FindingsSelection selection;
    selection.toggle("a");
    selection.selectAll(findings, Reason::oldInstaller);
    EXPECT_EQ(selection.ids, (std::unordered_set<std::string>{"a", "b", "c"}));
}

TEST(FindingsSelection, selectAllWithAReasonTicksNoOther)
{
    FindingsSelection selection;
    selection.selectAll(findings, Reason::rapidGrowth);
    EXPECT_EQ(selection.ids, (std::unordered_set<std::string>{"a"}));
}

TEST(FindingsSelection, selectAllKeepsIdsThatAreThere)
{
    FindingsSelection selection;
    selection.toggle("old");
    selection.toggle("a");
    selection.selectAll(findings);
    EXPECT_EQ(selection.ids, (std::unordered_set<std::string>{"old", "a", "b", "c"}));
    selection.clear();
    EXPECT_TRUE(selection.ids.empty());
}

TEST(FindingsSelection, selectedIgnoresIdsThatMatchNoneOfTheFindings)
{
    FindingsSelection selection;
    selection.toggle("gone");
    selection.toggle("c");
    selection.toggle("a");
    const std::vector<ReviewFinding> expected = {findings[0], findings[2]};
    EXPECT_EQ(selection.selected(findings), expected);
    EXPECT_EQ(selection.selectedBytes(findings), 40);
}

TEST(FindingsSelection, selectedBytesOfAnEmptySelectionIsZero)
{
    EXPECT_EQ(FindingsSelection().selectedBytes(findings), 0);
    EXPECT_TRUE(FindingsSelection().selected(findings).empty());
}

TEST(FindingsSelectionDeathTest, aSumBeyondTheRangeStopsTheProgram)
{
    constexpr Bytes most = std::numeric_limits<Bytes>::max();
    const std::vector<ReviewFinding> huge = {finding("a", Reason::rapidGrowth, most),
                                             finding("b", Reason::rapidGrowth, 1)};
    FindingsSelection selection;
    selection.selectAll(huge);
    EXPECT_DEATH(static_cast<void>(selection.selectedBytes(huge)), "Gruk: stopped");
}

}  // namespace gruk
