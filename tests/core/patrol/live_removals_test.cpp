#include "core/patrol/live_removals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace gruk {

namespace {

HeavyItem item(const char* path)
{
    HeavyItem result;
    result.id = path;
    result.relativePath = path;
    return result;
}

}  // namespace

TEST(LiveRemovals, anEmptyRemovalsDictionaryLeavesEverythingAsItIs)
{
    const std::vector<HeavyItem> items = {item("a"), item("b/c")};
    EXPECT_TRUE(LiveRemovals::removedDeltas({}).empty());
    EXPECT_EQ(LiveRemovals::adjustedTotal(100, {}), 100);
    EXPECT_EQ(LiveRemovals::remainingItems(items, {}), items);
}

TEST(LiveRemovals, theAdjustedTotalNeverFallsBelowZero)
{
    EXPECT_EQ(LiveRemovals::adjustedTotal(100, {{"a", 150}}), 0);
    EXPECT_EQ(LiveRemovals::adjustedTotal(100, {{"a", 100}}), 0);
    EXPECT_EQ(LiveRemovals::adjustedTotal(100, {{"a", 60}, {"b", 30}}), 10);
}

TEST(LiveRemovals, eachRemovalIsOneDelta)
{
    auto deltas = LiveRemovals::removedDeltas({{"a", 5}, {"b/c", 7}});
    std::sort(deltas.begin(), deltas.end(), standsBefore);
    const std::vector<SnapshotDelta> expected = {{"b/c", SnapshotDelta::Change::removed, 7, 0},
                                                 {"a", SnapshotDelta::Change::removed, 5, 0}};
    EXPECT_EQ(deltas, expected);
}

TEST(LiveRemovals, itemsAreMatchedByTheirExactPathAndKeepTheirOrder)
{
    const std::vector<HeavyItem> items = {item("z"), item("a"), item("a/b"), item("A"), item("b")};
    const std::vector<HeavyItem> expected = {item("z"), item("a/b"), item("A"), item("b")};
    EXPECT_EQ(LiveRemovals::remainingItems(items, {{"a", 1}, {"gone", 2}}), expected);
}

TEST(LiveRemovals, aFolderTakenAwayAfterAnItemOfItLeavesNothingHoweverLargeTheyWere)
{
    constexpr Bytes most = std::numeric_limits<Bytes>::max();
    EXPECT_EQ(LiveRemovals::adjustedTotal(most, {{"a", most}, {"a/b", most}}), 0);
}

}  // namespace gruk
