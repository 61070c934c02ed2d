#include "core/patrol/realm_history.h"

#include <gtest/gtest.h>

#include "core/patrol/realm_insights.h"
#include "core/patrol/review_engine.h"
#include "core/patrol/snapshot_delta_engine.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Entries = std::vector<SnapshotEntry>;

constexpr double day = 86'400;

class RealmHistoryTest : public testing::Test {
protected:
    /// Saves a snapshot of the realm as of that day.
    ScanSnapshot save(const Entries& entries, double capturedAt)
    {
        ScanSnapshot snapshot = test::snapshotOf(entries);
        snapshot.capturedAt = Date{capturedAt};
        store.save(snapshot);
        return snapshot;
    }

    RealmHistory load() { return RealmHistoryLoader::load(root, store, now); }

    static bool isEmpty(const RealmHistory& history)
    {
        return !history.previousSnapshot && !history.latestSnapshot && history.deltas.empty()
               && history.findings.empty() && history.heavyItems.empty();
    }

    test::TemporaryDirectory disk;
    FileURL root = FileURL::directory("/realm");
    SnapshotStore store{FileURL(disk.path("snapshots.json"))};
    Date now{100 * day};
};

SnapshotEntry file(const char* path, Bytes size)
{
    return {path, size, Date{10 * day}, FileKind::other, false};
}

}  // namespace

TEST_F(RealmHistoryTest, noSnapshotsGiveTheEmptyHistory)
{
    EXPECT_TRUE(isEmpty(load()));
    ScanSnapshot other = test::snapshotOf({file("a", 1)});
    other.rootPath = "/other";
    store.save(other);
    EXPECT_TRUE(isEmpty(load()));
}

TEST_F(RealmHistoryTest, oneSnapshotHasFindingsAndHeavyItemsButNothingToCompareWith)
{
    const ScanSnapshot only = save({file("x (1)", 5), file("x", 5)}, 50 * day);
    const RealmHistory history = load();
    EXPECT_EQ(history.latestSnapshot, only);
    EXPECT_FALSE(history.previousSnapshot);
    EXPECT_TRUE(history.deltas.empty());
    ASSERT_EQ(history.findings.size(), 1U);
    EXPECT_EQ(history.findings.front().reason, ReviewFinding::Reason::duplicateDownload);
    ASSERT_EQ(history.heavyItems.size(), 2U);
    for (const HeavyItem& item : history.heavyItems) {
        EXPECT_EQ(item.byteDeltaSincePrevious, std::nullopt);
        EXPECT_EQ(item.daysUntouched, 40);
    }
}

TEST_F(RealmHistoryTest, theLastTwoSnapshotsByDateAreCompared)
{
    const ScanSnapshot latest = save({file("a", 30)}, 30 * day);
    save({file("a", 10)}, 10 * day);
    const ScanSnapshot previous = save({file("a", 20)}, 20 * day);
    const RealmHistory history = load();
    EXPECT_EQ(history.latestSnapshot, latest);
    EXPECT_EQ(history.previousSnapshot, previous);
    const SnapshotDelta expected{"a", SnapshotDelta::Change::grown, 20, 30};
    EXPECT_EQ(history.deltas, std::vector<SnapshotDelta>{expected});
    ASSERT_EQ(history.findings.size(), 1U);
    EXPECT_EQ(history.findings.front().byteDelta, 10);
    ASSERT_EQ(history.heavyItems.size(), 1U);
    EXPECT_EQ(history.heavyItems.front().byteDeltaSincePrevious, 10);
}

TEST_F(RealmHistoryTest, anInstallerThatTurned30AfterThePatrolShowsUpInALaterLoad)
{
    SnapshotEntry installer = file("x.dmg", 5);
    installer.kind = FileKind::installer;
    save({installer}, 20 * day);
    now = Date{40 * day - 1};
    EXPECT_TRUE(load().findings.empty());
    now = Date{40 * day};
    EXPECT_EQ(load().findings.size(), 1U);
    // Untouched days are counted to the patrol and do not change between loads.
    EXPECT_EQ(load().heavyItems.front().daysUntouched, 10);
}

TEST_F(RealmHistoryTest, aCorruptStoreReadsAsNoHistoryAndStaysAsItIs)
{
    save({file("a", 1)}, day);
    disk.fileWith("snapshots.json", "{");
    EXPECT_TRUE(isEmpty(load()));
    EXPECT_EQ(disk.read("snapshots.json"), "{");
}

TEST_F(RealmHistoryTest, anIncompleteStoredSnapshotReadsAsNoHistory)
{
    save({file("a", 1)}, day);
    std::string content = disk.read("snapshots.json");
    content.replace(content.find("true}"), 4, "false");
    disk.fileWith("snapshots.json", content);
    // Alone there is nothing to compare it with, so that it stands.
    EXPECT_FALSE(isEmpty(load()));
    save({file("a", 2)}, 2 * day);
    EXPECT_TRUE(isEmpty(load()));
}

TEST_F(RealmHistoryTest, atMostTwentyHeavyItemsAreLoaded)
{
    Entries entries;
    for (int i = 0; i < 30; ++i) {
        entries.push_back(file(std::to_string(i).c_str(), i));
    }
    save(entries, day);
    EXPECT_EQ(load().heavyItems.size(), 20U);
}

TEST_F(RealmHistoryTest, theFiguresAreThoseOfThePiecesItIsMadeOf)
{
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
        SeededGenerator draw(seed);
        const Entries before = test::randomEntries(draw, 60);
        const ScanSnapshot previous = save(before, day * static_cast<double>(2 * seed + 1));
        const ScanSnapshot latest =
            save(test::laterEntries(draw, before), day * static_cast<double>(2 * seed + 2));
        const RealmHistory history = load();
        EXPECT_EQ(history.previousSnapshot, previous);
        EXPECT_EQ(history.latestSnapshot, latest);
        EXPECT_EQ(history.deltas, SnapshotDeltaEngine::compare(previous, latest));
        EXPECT_EQ(history.findings,
                  ReviewEngine::evaluate(root, latest.entries, history.deltas, now));
        EXPECT_EQ(history.heavyItems, RealmInsights::heavyItems(latest, &previous, 20));
    }
}

TEST_F(RealmHistoryTest, whatAPatrolLeavesOutIsNotToldFromTheStoreEither)
{
    const auto grown = [&](Bytes size) {
        return Entries{{"data", size, Date{day}, FileKind::folder, true},
                       {"data/Gruk", size, Date{day}, FileKind::folder, true},
                       {"data/Gruk/store", size, Date{day}, FileKind::other, false},
                       file(".Trash-1000/files/x.dmg", size)};
    };
    save(grown(10), 10 * day);
    save(grown(20), 20 * day);
    const UnreviewedPlaces places{OwnFolders({FileURL::directory("/realm/data/Gruk")}), {}};
    const RealmHistory history = RealmHistoryLoader::load(root, store, now, places);
    EXPECT_TRUE(history.findings.empty());
    ASSERT_EQ(history.deltas.size(), 1U);
    EXPECT_EQ(history.deltas.front().relativePath, ".Trash-1000/files/x.dmg");
    EXPECT_EQ(load().findings.size(), 1U);
}

}  // namespace gruk
