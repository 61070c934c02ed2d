#include "app/model/realm_figures.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

using Change = SnapshotDelta::Change;

SnapshotDelta delta(std::string path, Bytes before, Bytes after)
{
    const Change change = before == 0      ? Change::added
                          : after == 0     ? Change::removed
                          : after > before ? Change::grown
                                           : Change::shrunk;
    return {std::move(path), change, before, after};
}

std::vector<std::string> paths(const std::vector<SnapshotDelta>& deltas)
{
    std::vector<std::string> paths;
    for (const SnapshotDelta& each : deltas) {
        paths.push_back(each.relativePath);
    }
    return paths;
}

}  // namespace

TEST(RealmFigures, sumTheTopLevelOnly)
{
    RealmHistory history;
    history.latestSnapshot = ScanSnapshot{};
    history.latestSnapshot->entries = {
        {"a", 30, std::nullopt, FileKind::folder, true},
        {"a/b", 30, std::nullopt, FileKind::other, false},
        {"c", 12, std::nullopt, FileKind::other, false},
    };
    history.deltas = {delta("a", 10, 30), delta("a/b", 10, 30), delta("c", 20, 12)};
    const RealmFigures figures(std::move(history));
    EXPECT_EQ(figures.latestTotalBytes, 42);
    EXPECT_EQ(figures.netChangeBytes, 12);
    EXPECT_EQ(paths(figures.topLevelDeltas), (std::vector<std::string>{"a", "c"}));
}

TEST(RealmFigures, withoutASnapshotTheSumsAreZeroAndTheListsEmpty)
{
    const RealmFigures figures;
    EXPECT_EQ(figures.latestTotalBytes, 0);
    EXPECT_EQ(figures.netChangeBytes, 0);
    EXPECT_TRUE(figures.deltas->empty());
    EXPECT_TRUE(figures.findings->empty());
}

TEST(RealmFigures, theHeaviestItemsOfAPatrolCompareWithTheSnapshotBefore)
{
    PatrolResult result;
    result.snapshot.entries = {{"a", 30, std::nullopt, FileKind::other, false}};
    result.priorSnapshot = ScanSnapshot{};
    result.priorSnapshot->entries = {{"a", 10, std::nullopt, FileKind::other, false}};
    const RealmFigures figures(std::move(result));
    ASSERT_EQ(figures.heavyItems.size(), 1U);
    EXPECT_EQ(figures.heavyItems[0].byteDeltaSincePrevious, 20);
}

TEST(RealmFigures, keepTheFirstEightChangesOfTheTopLevelInTheirOrder)
{
    RealmHistory history;
    for (int i = 0; i < 12; ++i) {
        history.deltas.push_back(delta("x/" + std::to_string(i), 0, 100 - i));
        history.deltas.push_back(delta("f" + std::to_string(i), 0, 100 - i));
    }
    const RealmFigures figures(std::move(history));
    EXPECT_EQ(paths(figures.topLevelDeltas),
              (std::vector<std::string>{"f0", "f1", "f2", "f3", "f4", "f5", "f6", "f7"}));
    EXPECT_EQ(figures.netChangeBytes, 12 * 100 - 66);
}

TEST(TopLevelChanges, aRemovalTakesThePlaceOfTheChangeOfItsPath)
{
    const std::vector<SnapshotDelta> changes =
        topLevelChanges({delta("a", 10, 90), delta("b", 0, 50)}, {{"a", 90}});
    ASSERT_EQ(paths(changes), (std::vector<std::string>{"b", "a"}));
    EXPECT_EQ(changes[1], delta("a", 90, 0));
}

TEST(TopLevelChanges, growthComesFirstThenTheLargerMagnitudeThenThePath)
{
    const std::vector<SnapshotDelta> changes =
        topLevelChanges({delta("small", 0, 5), delta("file10", 9, 1), delta("file2", 9, 1)},
                        {{"deep/gone", 500}, {"big", 8}});
    EXPECT_EQ(paths(changes),
              (std::vector<std::string>{"small", "deep/gone", "big", "file2", "file10"}));
}

TEST(TopLevelChanges, withoutRemovalsAreTheChangesAsTheyAre)
{
    const std::vector<SnapshotDelta> deltas = {delta("b", 0, 50), delta("a", 10, 5)};
    EXPECT_EQ(topLevelChanges(deltas, {}), deltas);
}

}  // namespace gruk
