#include "core/patrol/snapshot_delta_engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "platform/foundation/text_order.h"
#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

using Change = SnapshotDelta::Change;
using Deltas = std::vector<SnapshotDelta>;
using Paths = std::vector<std::string>;

SnapshotEntry file(const char* path, Bytes size)
{
    return {path, size, std::nullopt, FileKind::other, false};
}

SnapshotEntry folder(const char* path, Bytes size)
{
    return {path, size, std::nullopt, FileKind::folder, true};
}

Deltas compare(const std::vector<SnapshotEntry>& previous,
               const std::vector<SnapshotEntry>& current,
               std::vector<ScanIssue> previousIssues = {},
               std::vector<ScanIssue> currentIssues = {})
{
    return SnapshotDeltaEngine::compare(test::snapshotOf(previous, std::move(previousIssues)),
                                        test::snapshotOf(current, std::move(currentIssues)));
}

Paths paths(const Deltas& deltas)
{
    Paths result;
    for (const SnapshotDelta& delta : deltas) {
        result.push_back(delta.relativePath);
    }
    return result;
}

ScanIssue issue(const char* path)
{
    return {path, ScanIssue::Reason::permissionDenied};
}

/// The comparison step by step over maps, each path tested against each issue.
Deltas naiveCompare(const std::vector<SnapshotEntry>& previous,
                    const std::vector<SnapshotEntry>& current, const std::vector<ScanIssue>& issues)
{
    std::map<std::string, SnapshotEntry> before;
    std::map<std::string, SnapshotEntry> now;
    std::set<std::string> all;
    for (const SnapshotEntry& entry : previous) {
        before[entry.relativePath] = entry;
        all.insert(entry.relativePath);
    }
    for (const SnapshotEntry& entry : current) {
        now[entry.relativePath] = entry;
        all.insert(entry.relativePath);
    }
    Deltas deltas;
    for (const std::string& path : all) {
        const SnapshotEntry& entry = now.contains(path) ? now.at(path) : before.at(path);
        const bool isUncertain =
            std::any_of(issues.begin(), issues.end(), [&](const ScanIssue& place) {
                const std::string& p = place.relativePath;
                return path == p || path.starts_with(p + "/")
                       || (entry.isDirectory && p.starts_with(path + "/"));
            });
        const Bytes previousBytes = before.contains(path) ? before.at(path).allocatedSize : 0;
        const Bytes currentBytes = now.contains(path) ? now.at(path).allocatedSize : 0;
        if (isUncertain || previousBytes == currentBytes) {
            continue;
        }
        const Change change = !before.contains(path)          ? Change::added
                              : !now.contains(path)           ? Change::removed
                              : previousBytes >= currentBytes ? Change::shrunk
                                                              : Change::grown;
        deltas.push_back({path, change, previousBytes, currentBytes});
    }
    std::sort(deltas.begin(), deltas.end(), [](const SnapshotDelta& a, const SnapshotDelta& b) {
        const Bytes da = a.currentBytes - a.previousBytes;
        const Bytes db = b.currentBytes - b.previousBytes;
        if ((da > 0) != (db > 0)) {
            return da > 0;
        }
        if (std::abs(da) != std::abs(db)) {
            return std::abs(da) > std::abs(db);
        }
        return localizedStandardCompare(a.relativePath, b.relativePath) < 0;
    });
    return deltas;
}

SnapshotDeltaError::Case errorOf(const ScanSnapshot& previous, const ScanSnapshot& current)
{
    try {
        static_cast<void>(SnapshotDeltaEngine::compare(previous, current));
    } catch (const SnapshotDeltaError& error) {
        return error.which();
    }
    throw std::runtime_error("no error");
}

}  // namespace

TEST(SnapshotDeltaEngine, twoEqualSnapshotsGiveAnEmptyList)
{
    EXPECT_EQ(compare({folder("a", 5), file("a/b", 5)}, {folder("a", 5), file("a/b", 5)}),
              Deltas{});
    EXPECT_EQ(compare({}, {}), Deltas{});
}

TEST(SnapshotDeltaEngine, anIncompleteSnapshotWithADifferentRootIsIncompleteFirst)
{
    const ScanSnapshot good = test::snapshotOf({});
    ScanSnapshot bad = good;
    bad.isComplete = false;
    bad.rootPath = "/elsewhere";
    EXPECT_EQ(errorOf(good, bad), SnapshotDeltaError::Case::incompleteSnapshot);
    EXPECT_EQ(errorOf(bad, good), SnapshotDeltaError::Case::incompleteSnapshot);
    bad.isComplete = true;
    EXPECT_EQ(errorOf(good, bad), SnapshotDeltaError::Case::rootMismatch);
}

TEST(SnapshotDeltaEngine, aNewFileInANewFolderGivesTwoDeltasTheFolderFirstByName)
{
    EXPECT_EQ(compare({}, {folder("a", 100), file("a/b.txt", 100)}),
              (Deltas{{"a", Change::added, 0, 100}, {"a/b.txt", Change::added, 0, 100}}));
}

TEST(SnapshotDeltaEngine, aNewFileOfZeroBytesGivesNoDeltaNorDoesAHardLinkOfZero)
{
    EXPECT_EQ(compare({file("a", 4096)}, {file("a", 4096), file("empty", 0), file("link", 0)}),
              Deltas{});
    EXPECT_EQ(compare({file("gone", 0)}, {}), Deltas{});
}

TEST(SnapshotDeltaEngine, aFileWhoseDateAloneChangedGivesNoDelta)
{
    SnapshotEntry later = file("a", 7);
    later.modifiedAt = Date{99};
    EXPECT_EQ(compare({file("a", 7)}, {later}), Deltas{});
}

TEST(SnapshotDeltaEngine, aChangeOfOneByteCounts)
{
    EXPECT_EQ(compare({file("a", 7), file("b", 7)}, {file("a", 8), file("b", 6)}),
              (Deltas{{"a", Change::grown, 7, 8}, {"b", Change::shrunk, 7, 6}}));
}

TEST(SnapshotDeltaEngine, whatIsGoneIsRemoved)
{
    EXPECT_EQ(compare({file("a", 7)}, {}), (Deltas{{"a", Change::removed, 7, 0}}));
    EXPECT_EQ(compare({file("a", 7)}, {file("a", 0)}), (Deltas{{"a", Change::shrunk, 7, 0}}));
    EXPECT_EQ(compare({file("a", 0)}, {file("a", 7)}), (Deltas{{"a", Change::grown, 0, 7}}));
}

TEST(SnapshotDeltaEngine, nothingAtBelowOrAboveAnIssueIsReportedButItsNeighboursAre)
{
    const std::vector<SnapshotEntry> previous = {folder("a", 1), folder("a/b", 1), file("a/b/c", 1),
                                                 file("a/bc", 1), file("z", 1)};
    const std::vector<SnapshotEntry> current = {folder("a", 2), folder("a/b", 2), file("a/b/c", 2),
                                                file("a/bc", 2), file("z", 2)};
    EXPECT_EQ(paths(compare(previous, current, {issue("a/b")})), (Paths{"a/bc", "z"}));
    EXPECT_EQ(paths(compare(previous, current, {}, {issue("a/b")})), (Paths{"a/bc", "z"}));
}

TEST(SnapshotDeltaEngine, aFileIsNotMadeUncertainByAnIssueBelowIt)
{
    EXPECT_EQ(paths(compare({file("a", 1)}, {file("a", 2)}, {}, {issue("a/b")})), Paths{"a"});
    EXPECT_EQ(paths(compare({folder("a", 1)}, {folder("a", 2)}, {}, {issue("a/b")})), Paths{});
}

TEST(SnapshotDeltaEngine, whatAnItemIsNowDecidesWhetherAnIssueBelowItCounts)
{
    EXPECT_EQ(paths(compare({folder("a", 1)}, {file("a", 2)}, {issue("a/b")})), Paths{"a"});
    EXPECT_EQ(paths(compare({file("a", 1)}, {folder("a", 2)}, {issue("a/b")})), Paths{});
    EXPECT_EQ(paths(compare({folder("a", 1)}, {}, {issue("a/b")})), Paths{});
    EXPECT_EQ(paths(compare({file("a", 1)}, {}, {issue("a/b")})), Paths{"a"});
}

TEST(SnapshotDeltaEngine, aNewFileOfTenBytesSortsBeforeAShrinkOfAThousand)
{
    EXPECT_EQ(paths(compare({file("a", 1000)}, {file("z", 10)})), (Paths{"z", "a"}));
}

TEST(SnapshotDeltaEngine, equalChangesStandInTheOrderOfAFileBrowser)
{
    EXPECT_EQ(paths(compare({}, {file("file10", 1), file("file2", 1), file("B", 1), file("a", 1)})),
              (Paths{"a", "B", "file2", "file10"}));
}

TEST(SnapshotDeltaEngine, agreesWithAStepByStepComparisonOnRandomSnapshots)
{
    std::size_t compared = 0;
    for (std::uint64_t seed = 0; seed < 1'000; ++seed) {
        SeededGenerator draw(seed);
        const auto previous = test::randomEntries(draw, draw.bounded(40));
        const auto current = test::laterEntries(draw, previous);
        const auto previousIssues = test::randomIssues(draw, previous);
        const auto currentIssues = test::randomIssues(draw, current);
        std::vector<ScanIssue> issues = previousIssues;
        issues.insert(issues.end(), currentIssues.begin(), currentIssues.end());
        const Deltas expected = naiveCompare(previous, current, issues);
        ASSERT_EQ(compare(previous, current, previousIssues, currentIssues), expected)
            << "seed " << seed;
        compared += expected.size();
    }
    EXPECT_GT(compared, 3'000U);
}

}  // namespace gruk
