#include "core/patrol/patrol_copy.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

ReviewFinding finding(Bytes size)
{
    ReviewFinding result;
    result.allocatedSize = size;
    return result;
}

constexpr const char* nothingFound = "The Gruk didn't find anything to reclaim today. You don't "
                                     "need to organise anything.";
constexpr const char* notEnough =
    "The Gruk mapped what it was allowed to see — not enough to judge yet.";

}  // namespace

TEST(PatrolCopy, theSummaryNamesTheBytesOfAllFindings)
{
    EXPECT_EQ(PatrolCopy::summary({finding(1'000'000'000), finding(500'000'000)}, 0, true),
              "The Gruk found 1.5 GB you can take back today. You don't need to organise "
              "anything.");
}

TEST(PatrolCopy, threeFindingsOfZeroBytesReadAsIfThereWereNone)
{
    const std::vector<ReviewFinding> empty(3, finding(0));
    EXPECT_EQ(PatrolCopy::summary(empty, 0, true), nothingFound);
    EXPECT_EQ(PatrolCopy::summary({}, 0, true), nothingFound);
    EXPECT_EQ(PatrolCopy::summary(empty, 1, true), notEnough);
}

TEST(PatrolCopy, issuesWithFindingsAboveZeroBytesStillReadTheGrukFound)
{
    const char* const found =
        "The Gruk found 0 KB you can take back today. You don't need to organise anything.";
    EXPECT_EQ(PatrolCopy::summary({finding(1)}, 5, true), found);
    EXPECT_EQ(PatrolCopy::summary({finding(1)}, 0, false), found);
}

TEST(PatrolCopy, withoutFindingsAnUncleanPatrolIsNotEnoughToJudge)
{
    EXPECT_EQ(PatrolCopy::summary({}, 1, true), notEnough);
    EXPECT_EQ(PatrolCopy::summary({}, 0, false), notEnough);
}

TEST(PatrolCopy, aCleanPatrolHasNoCoverageNote)
{
    EXPECT_EQ(PatrolCopy::coverageNote(0, true), std::nullopt);
}

TEST(PatrolCopy, theCoverageNoteCountsTheAreas)
{
    EXPECT_EQ(PatrolCopy::coverageNote(1, true),
              "The Gruk couldn't see everything: 1 area was off-limits. What's shown covers only "
              "the parts it could reach.");
    EXPECT_EQ(PatrolCopy::coverageNote(12, false),
              "The Gruk couldn't see everything: 12 areas were off-limits. What's shown covers "
              "only the parts it could reach.");
}

TEST(PatrolCopy, anUnfinishedPatrolWithoutIssuesHasANoteOfItsOwn)
{
    EXPECT_EQ(PatrolCopy::coverageNote(0, false),
              "The Gruk couldn't see everything this time. What's shown covers only the parts it "
              "could reach.");
}

}  // namespace gruk
