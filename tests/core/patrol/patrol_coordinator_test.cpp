#include "core/patrol/patrol_coordinator.h"

#include <gtest/gtest.h>

#include <cmath>

#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Reason = ReviewFinding::Reason;

class PatrolCoordinatorTest : public testing::Test {
protected:
    PatrolResult patrol() { return patrol(tree.root()); }
    PatrolResult patrol(const FileURL& root)
    {
        return PatrolCoordinator::patrol(root, scanner, store, progress, stop.get_token());
    }

    /// The snapshots of the realm in the store.
    std::vector<ScanSnapshot> stored() { return store.snapshots(disk.path()); }

    test::TemporaryDirectory disk;
    test::TemporaryDirectory home;
    test::FakeTree tree{disk.url()};
    SnapshotScanner scanner{tree.reader()};
    SnapshotStore store{FileURL(home.path("snapshots.json"))};
    PatrolProgressFunction progress;
    std::stop_source stop;
};

/// The snapshot with its dates as the file keeps them.
ScanSnapshot inWholeSeconds(ScanSnapshot snapshot)
{
    snapshot.capturedAt.secondsSince1970 = std::floor(snapshot.capturedAt.secondsSince1970);
    return snapshot;
}

}  // namespace

TEST_F(PatrolCoordinatorTest, aFirstPatrolHasNoPriorSnapshotNoDeltasAndNoGrowthFindings)
{
    tree.file("x.dmg", 10).dateModified = Date{0};
    tree.file("y (1)", 5);
    tree.file("y", 5);
    tree.file("p/node_modules/z", 1);
    const double before = Date::now().secondsSince1970;
    const PatrolResult result = patrol();
    EXPECT_FALSE(result.priorSnapshot);
    EXPECT_TRUE(result.deltas.empty());
    std::vector<Reason> reasons;
    for (const ReviewFinding& finding : result.findings) {
        reasons.push_back(finding.reason);
    }
    EXPECT_EQ(reasons, (std::vector<Reason>{Reason::oldInstaller, Reason::duplicateDownload,
                                            Reason::regenerableCache}));
    EXPECT_EQ(result.findings.front().url, disk.url().appending("x.dmg"));
    EXPECT_EQ(result.snapshot.rootPath, disk.path());
    EXPECT_GE(result.snapshot.capturedAt.secondsSince1970, before);
    EXPECT_LE(result.snapshot.capturedAt.secondsSince1970, Date::now().secondsSince1970);
    EXPECT_EQ(stored(), std::vector<ScanSnapshot>{inWholeSeconds(result.snapshot)});
}

TEST_F(PatrolCoordinatorTest, twoPatrolsWithNothingChangedGiveNoDeltasAndAreBothStored)
{
    tree.file("a/b", 5);
    const PatrolResult first = patrol();
    const PatrolResult second = patrol();
    EXPECT_TRUE(second.deltas.empty());
    EXPECT_EQ(second.priorSnapshot, inWholeSeconds(first.snapshot));
    EXPECT_EQ(stored(), (std::vector<ScanSnapshot>{inWholeSeconds(first.snapshot),
                                                   inWholeSeconds(second.snapshot)}));
}

TEST_F(PatrolCoordinatorTest, whatChangedBetweenTwoPatrolsIsTold)
{
    tree.file("a/b", 5);
    static_cast<void>(patrol());
    tree.file("a/b", 7);
    tree.file("new", 1);
    const PatrolResult second = patrol();
    const std::vector<SnapshotDelta> expected = {{"a", SnapshotDelta::Change::grown, 5, 7},
                                                 {"a/b", SnapshotDelta::Change::grown, 5, 7},
                                                 {"new", SnapshotDelta::Change::added, 0, 1}};
    EXPECT_EQ(second.deltas, expected);
    ASSERT_EQ(second.findings.size(), 2U);
    EXPECT_EQ(second.findings.front().id, "rapidGrowth:a/b");
    EXPECT_EQ(second.findings.front().byteDelta, 2);
}

TEST_F(PatrolCoordinatorTest, aFailureToCompareLeavesTheStoreWithoutTheNewSnapshot)
{
    tree.file("a", 1);
    static_cast<void>(patrol());
    std::string content = home.read("snapshots.json");
    content.replace(content.find("true}"), 4, "false");
    home.fileWith("snapshots.json", content);
    try {
        static_cast<void>(patrol());
        FAIL() << "no error";
    } catch (const SnapshotDeltaError& error) {
        EXPECT_EQ(error.which(), SnapshotDeltaError::Case::incompleteSnapshot);
    }
    EXPECT_EQ(home.read("snapshots.json"), content);
}

TEST_F(PatrolCoordinatorTest, aCorruptStoreEndsThePatrolBeforeAnyWalking)
{
    home.fileWith("snapshots.json", "rubbish");
    EXPECT_THROW(static_cast<void>(patrol()), SnapshotStoreError);
    EXPECT_TRUE(tree.listed().empty());
    EXPECT_EQ(home.read("snapshots.json"), "rubbish");
}

TEST_F(PatrolCoordinatorTest, aRootThatIsGoneOrUnreadableLeavesTheStoreAsItWas)
{
    tree.file("a", 1);
    static_cast<void>(patrol());
    const std::string before = home.read("snapshots.json");
    tree.onListing("", [] { throw std::runtime_error("unreadable"); });
    EXPECT_THROW(static_cast<void>(patrol()), std::runtime_error);
    EXPECT_THROW(static_cast<void>(patrol(FileURL(disk.path("gone")))), FileError);
    EXPECT_EQ(home.read("snapshots.json"), before);
}

TEST_F(PatrolCoordinatorTest, cancellationDuringTheWalkLeavesTheStoreAsItWas)
{
    tree.directory("a");
    static_cast<void>(patrol());
    const std::string before = home.read("snapshots.json");
    tree.onListing("", [this] { stop.request_stop(); });
    EXPECT_THROW(static_cast<void>(patrol()), CancelledError);
    EXPECT_EQ(home.read("snapshots.json"), before);
}

TEST_F(PatrolCoordinatorTest, aStopAfterTheWalkDoesNotKeepTheSnapshotFromBeingSaved)
{
    // The progress at the end of the last directory comes after the last check of the walk.
    progress = [this](std::int64_t, std::string_view) { stop.request_stop(); };
    EXPECT_TRUE(patrol().snapshot.isComplete);
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(PatrolCoordinatorTest, whatTheConfirmationThrowsAfterTheWalkEndsThePatrolAndStoresNothing)
{
    tree.file("a", 5);
    bool isWalked = false;
    tree.onListing("", [&] { isWalked = true; });
    const auto confirm = [&] {
        EXPECT_TRUE(isWalked);
        throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), "patrol", "");
    };
    EXPECT_THROW(static_cast<void>(PatrolCoordinator::patrol(tree.root(), scanner, store, progress,
                                                             stop.get_token(), confirm)),
                 FileError);
    EXPECT_TRUE(stored().empty());
}

TEST_F(PatrolCoordinatorTest, aFailureToSaveReturnsNoResult)
{
    home.file("not a folder");
    SnapshotStore nowhere(FileURL(home.path("not a folder/snapshots.json")));
    EXPECT_ANY_THROW(static_cast<void>(PatrolCoordinator::patrol(tree.root(), scanner, nowhere)));
}

TEST_F(PatrolCoordinatorTest, progressIsPassedThroughUnchanged)
{
    tree.file("a");
    std::vector<PatrolProgress> reports;
    progress = [&](std::int64_t count, std::string_view path) {
        reports.push_back({count, std::string(path)});
    };
    static_cast<void>(patrol());
    EXPECT_EQ(reports, (std::vector<PatrolProgress>{{1, ""}}));
}

TEST_F(PatrolCoordinatorTest, aRootThatIsNotInStandardFormIsPatrolledAsForTheFirstTime)
{
    tree.file("a", 1);
    static_cast<void>(patrol());
    const FileURL crooked(disk.path() + "/.");
    ASSERT_NE(crooked.path(), disk.path());
    const PatrolResult second = patrol(crooked);
    EXPECT_FALSE(second.priorSnapshot);
    EXPECT_TRUE(second.deltas.empty());
    EXPECT_EQ(second.snapshot.rootPath, disk.path());
    EXPECT_EQ(stored().size(), 2U);
}

TEST_F(PatrolCoordinatorTest, theLatestOfManySnapshotsIsThePriorOne)
{
    tree.file("a", 1);
    for (int i = 0; i < 3; ++i) {
        static_cast<void>(patrol());
    }
    ScanSnapshot ahead = test::snapshotOf({});
    ahead.rootPath = disk.path();
    ahead.capturedAt = Date{Date::now().secondsSince1970 + 1'000'000};
    ahead = inWholeSeconds(ahead);
    store.save(ahead);
    EXPECT_EQ(patrol().priorSnapshot, ahead);
}

TEST(PatrolCoordinatorSteps, aSnapshotOfAWalkThatDidNotFinishNeverReachesTheStore)
{
    PatrolSteps steps;
    bool isSaved = false;
    steps.latest = [] { return std::nullopt; };
    steps.walk = [](Date) {
        ScanSnapshot snapshot = test::snapshotOf({});
        snapshot.isComplete = false;
        return snapshot;
    };
    steps.save = [&](const ScanSnapshot&) { isSaved = true; };
    try {
        static_cast<void>(PatrolCoordinator::patrol(FileURL::directory("/realm"), steps));
        FAIL() << "no error";
    } catch (const SnapshotStoreError& error) {
        EXPECT_EQ(error.which(), SnapshotStoreError::Case::incompleteSnapshot);
    }
    EXPECT_FALSE(isSaved);
}

TEST(PatrolCoordinatorSteps, findingsAreJudgedAsOfTheEndOfTheWalkAndTheSnapshotIsOfItsBeginning)
{
    constexpr double thirtyDays = 2'592'000;
    PatrolSteps steps;
    Date clock{1'760'000'000};
    steps.now = [&] { return clock; };
    steps.latest = [] { return std::nullopt; };
    steps.walk = [&](Date capturedAt) {
        ScanSnapshot snapshot =
            test::snapshotOf({{"x.dmg", 1, Date{clock.secondsSince1970 + 60 - thirtyDays},
                               FileKind::installer, false}});
        snapshot.capturedAt = capturedAt;
        clock.secondsSince1970 += 60;
        return snapshot;
    };
    std::optional<Date> saved;
    steps.save = [&](const ScanSnapshot& snapshot) { saved = snapshot.capturedAt; };
    const PatrolResult result = PatrolCoordinator::patrol(FileURL::directory("/realm"), steps);
    EXPECT_EQ(saved, Date{1'760'000'000});
    ASSERT_EQ(result.findings.size(), 1U);
    EXPECT_EQ(result.findings.front().reason, Reason::oldInstaller);
}

TEST_F(PatrolCoordinatorTest, gruksOwnFilesAreNoFindingsAndNoChanges)
{
    const UnreviewedPlaces places{OwnFolders({FileURL::directory(disk.path("data/Gruk"))}), {}};
    const auto patrolAround = [&] {
        return PatrolCoordinator::patrol(tree.root(), scanner, store, {}, {}, {}, places);
    };
    tree.file("data/Gruk/snapshots.json", 5);
    tree.file("mine", 5);
    static_cast<void>(patrolAround());
    tree.file("data/Gruk/snapshots.json", 5'000);
    const PatrolResult second = patrolAround();
    EXPECT_TRUE(second.deltas.empty());
    EXPECT_TRUE(second.findings.empty());
    EXPECT_EQ(second.snapshot.entries.totalBytes(), 5'005);
}

}  // namespace gruk
