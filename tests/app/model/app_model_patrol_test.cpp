#include <filesystem>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "core/patrol/metadata_reader.h"
#include "platform/foundation/errors.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

using test::ModelHouse;

/// A scanner that does something while it walks, before each folder is listed.
std::shared_ptr<SnapshotScanner> scannerThat(std::function<void(const FileURL&)> does)
{
    return std::make_shared<SnapshotScanner>([does = std::move(does)](const FileURL& folder) {
        does(folder);
        return MetadataReader::entries(folder);
    });
}

void expectIdle(const AppModel& model)
{
    EXPECT_FALSE(model.isPatrolling());
    EXPECT_FALSE(model.patrollingRootURL());
    EXPECT_FALSE(model.patrolAccess());
    EXPECT_FALSE(model.patrolProgress());
}

}  // namespace

TEST(AppModelPatrol, aFirstPatrolWithFindingsSaysThatItIsCompleteAndDoesNotMentionThem)
{
    ModelHouse house;
    house.directory.file("Home/Downloads/x.pdf", 20'000);
    house.directory.file("Home/Downloads/x (1).pdf", 20'000);
    house.makePatrolledRealm("Home");
    EXPECT_EQ(house.model->findings().size(), 1U);
    EXPECT_EQ(house.model->lastActionMessage(), "First patrol of Home complete.");
    EXPECT_FALSE(house.model->errorMessage());
    expectIdle(*house.model);
}

TEST(AppModelPatrol, publishesTheSnapshotItsSumsAndItsHeaviestItems)
{
    ModelHouse house;
    house.directory.file("a/folder/inner", 40'000);
    const FileURL realm = house.makePatrolledRealm("a");
    const ScanSnapshot stored = house.stored(realm).back();
    ASSERT_TRUE(house.model->latestSnapshot());
    EXPECT_EQ(house.model->latestSnapshot()->id, stored.id);
    EXPECT_FALSE(house.model->previousSnapshot());
    EXPECT_EQ(house.model->latestTotalBytes(), stored.entries.totalBytes());
    EXPECT_GT(house.model->latestTotalBytes(), 48'000);
    ASSERT_EQ(house.model->heavyItems().size(), 2U);
    EXPECT_EQ(house.model->heavyItems().front().relativePath, "folder");
}

TEST(AppModelPatrol, aPatrolWithNothingChangedSaysSo)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.patrol();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Patrol of a complete. No size changes since the last map.");
    EXPECT_TRUE(house.model->previousSnapshot());
    EXPECT_EQ(house.model->netChangeBytes(), 0);
    EXPECT_TRUE(house.model->topLevelChanges().empty());
}

TEST(AppModelPatrol, countsTheChangedItemsAndKeepsTheWordForOne)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.directory.file("a/new.bin", 8'192);
    house.patrol();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Patrol of a complete. Gruk found 1 changed items.");
    EXPECT_EQ(house.model->netChangeBytes(), 8'192);

    house.directory.file("a/deep/newer.bin", 8'192);
    house.patrol();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Patrol of a complete. Gruk found 2 changed items.");
}

TEST(AppModelPatrol, aPatrolOfOneRealmThatEndsWhileAnotherIsSelectedLeavesItsFiguresAlone)
{
    ModelHouse house;
    const FileURL other = house.makePatrolledRealm("b");
    const FileURL patrolled = house.makePatrolledRealm("a");
    house.model->patrolActiveRealm();
    house.model->selectRealm(other);
    int stale = 0;
    QObject::connect(house.model.get(), &AppModel::territoriesAreStaleChanged, house.model.get(),
                     [&] { ++stale; });
    EXPECT_EQ(house.model->patrollingRootURL(), patrolled);

    house.settle();

    ASSERT_TRUE(house.model->latestSnapshot());
    EXPECT_EQ(house.model->latestSnapshot()->rootPath, other.path());
    EXPECT_FALSE(house.model->previousSnapshot());
    EXPECT_EQ(house.model->lastActionMessage(),
              "Patrol of a complete. No size changes since the last map.");
    EXPECT_TRUE(house.model->territoriesAreStale());
    EXPECT_EQ(stale, 1);
    EXPECT_EQ(house.stored(patrolled).size(), 2U);
    expectIdle(*house.model);
}

TEST(AppModelPatrol, aSecondPatrolIsRefusedWithoutAWord)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    house.model->patrolActiveRealm();
    std::optional<std::int64_t> findings = 99;
    house.model->runPatrol(realm, nullptr).then([&](std::optional<std::int64_t> count) {
        findings = count;
    });
    EXPECT_FALSE(findings);
    EXPECT_TRUE(house.model->isPatrolling());
    EXPECT_TRUE(house.model->patrolAccess());
    EXPECT_FALSE(house.model->errorMessage());
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 2U);
}

TEST(AppModelPatrol, yieldsTheNumberOfFindings)
{
    ModelHouse house;
    house.directory.file("a/x.pdf", 20'000);
    house.directory.file("a/x (1).pdf", 20'000);
    const FileURL realm = house.makeRealm("a");
    house.settle();
    std::optional<std::int64_t> findings;
    house.model->runPatrol(realm, nullptr).then([&](std::optional<std::int64_t> count) {
        findings = count;
    });
    house.settle();
    EXPECT_EQ(findings, 1);
}

TEST(AppModelPatrol, aCancelledPatrolSaysSoAndStoresNothing)
{
    AppModel* model = nullptr;
    ModelHouse house(scannerThat([&model](const FileURL&) { model->cancelPatrol(); }));
    model = house.model.get();
    const FileURL realm = house.makePatrolledRealm("a");
    EXPECT_EQ(house.model->lastActionMessage(), "Patrol stopped. No partial snapshot was saved.");
    EXPECT_FALSE(house.model->errorMessage());
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_TRUE(house.stored(realm).empty());
    expectIdle(*house.model);
}

TEST(AppModelPatrol, aPatrolCancelledBeforeItBeganStopsToo)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    house.settle();
    house.model->patrolActiveRealm();
    house.model->cancelPatrol();
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(), "Patrol stopped. No partial snapshot was saved.");
    EXPECT_TRUE(house.stored(realm).empty());
}

TEST(AppModelPatrol, cancellingWhileNothingRunsDoesNothing)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->cancelPatrol();
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(), "First patrol of a complete.");
    house.patrol();
    EXPECT_TRUE(house.model->previousSnapshot());
}

TEST(AppModelPatrol, aPatrolThatFailsSaysWhyAndLeavesTheScreenAsItWas)
{
    bool fails = false;
    ModelHouse house(scannerThat([&fails](const FileURL& folder) {
        if (fails) {
            throw FileError(std::make_error_code(std::errc::io_error), "list", folder.path());
        }
    }));
    const FileURL realm = house.makePatrolledRealm("a");
    const AppModel::Snapshot before = house.model->latestSnapshot();
    fails = true;
    house.patrol();
    ASSERT_TRUE(house.model->errorMessage());
    EXPECT_EQ(*house.model->errorMessage(),
              "The patrol could not finish: " + realm.path() + ": Input/output error");
    EXPECT_FALSE(house.model->lastActionMessage());
    EXPECT_EQ(house.model->latestSnapshot(), before);
    EXPECT_EQ(house.stored(realm).size(), 1U);
    expectIdle(*house.model);
}

TEST(AppModelPatrol, aCorruptStoreFailsThePatrolAndStaysAsItIs)
{
    ModelHouse house;
    house.directory.fileWith("app/snapshots.json", "no store");
    house.makePatrolledRealm("a");
    ASSERT_TRUE(house.model->errorMessage());
    EXPECT_TRUE(house.model->errorMessage()->starts_with("The patrol could not finish: "));
    EXPECT_EQ(house.directory.read("app/snapshots.json"), "no store");
}

TEST(AppModelPatrol, reportsProgressOnTheMainThreadAndClearsItAtTheEnd)
{
    ModelHouse house;
    house.directory.file("a/one/file", 10);
    house.makeRealm("a");
    house.settle();
    std::vector<std::int64_t> counts;
    QObject::connect(house.model.get(), &AppModel::patrolProgressChanged, house.model.get(), [&] {
        counts.push_back(house.model->patrolProgress() ? house.model->patrolProgress()->pathsScanned
                                                       : -1);
    });
    house.model->patrolActiveRealm();
    EXPECT_EQ(counts, std::vector<std::int64_t>{-1});
    house.pool->runNext();
    EXPECT_EQ(counts.size(), 1U);
    house.settle();
    ASSERT_GE(counts.size(), 3U);
    EXPECT_EQ(counts[1], 2);
    EXPECT_EQ(counts.back(), -1);
}

TEST(AppModelPatrol, holdsAccessToTheRealmAsLongAsThePatrolRunsAndNoLonger)
{
    ModelHouse house;
    house.makeRealm("a");
    house.settle();
    house.model->patrolActiveRealm();
    const std::weak_ptr<ScopedAccess> access = house.model->patrolAccess();
    EXPECT_FALSE(access.expired());
    house.settle();
    EXPECT_TRUE(access.expired());
}

TEST(AppModelPatrol, aHistoryAskedForBeforeThePatrolEndedDoesNotReplaceItsResult)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    const FileURL other = house.makeRealm("b");
    house.settle();
    house.select(realm);
    house.model->patrolActiveRealm();
    ASSERT_EQ(house.pool->count(), 1U);
    house.model->selectRealm(other);
    house.model->selectRealm(realm);
    // The patrol ends first, the loads of the histories after it, as if they had read before it.
    house.pool->runAt(0);
    house.loop->run();
    ASSERT_TRUE(house.model->previousSnapshot());
    const AppModel::Snapshot published = house.model->latestSnapshot();
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
    house.settle();
    EXPECT_EQ(house.model->latestSnapshot(), published);
}

TEST(AppModelPatrol, aRealmRemovedDuringItsPatrolPublishesNothing)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    house.settle();
    house.model->patrolActiveRealm();
    house.model->removeRealm(house.grantOf(realm));
    house.settle();
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_TRUE(house.model->heavyItems().empty());
    EXPECT_EQ(house.stored(realm).size(), 1U);
    expectIdle(*house.model);
}

TEST(AppModelPatrol, aModelThatEndsDuringAPatrolStopsItAndNothingIsStored)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    house.settle();
    house.model->patrolActiveRealm();
    house.model.reset();
    house.settle();
    EXPECT_TRUE(house.stored(realm).empty());
}

TEST(AppModelPatrol, aModelThatEndsBetweenAPatrolAndItsResultDropsIt)
{
    ModelHouse house;
    house.makeRealm("a");
    house.settle();
    house.model->patrolActiveRealm();
    while (house.pool->runNext()) {
    }
    house.model.reset();
    EXPECT_TRUE(house.loop->run());
}

TEST(AppModelPatrol, withNoRealmSelectedNothingHappens)
{
    ModelHouse house;
    house.patrol();
    EXPECT_FALSE(house.model->errorMessage());
    EXPECT_FALSE(house.model->lastActionMessage());
}

TEST(AppModelPatrol, clearsTheLinesOfThePatrolBefore)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->patrolActiveRealm();
    EXPECT_FALSE(house.model->lastActionMessage());
    EXPECT_FALSE(house.model->errorMessage());
}

TEST(AppModelPatrol, aRealmRenamedBesideItsOldPlaceIsNotPatrolledInItsPlace)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("disk");
    std::filesystem::rename(realm.path(), house.directory.path("disk elsewhere"));
    house.directory.folder("disk");  // A bare mount point.
    house.patrol();
    EXPECT_EQ(house.model->errorMessage(),
              "Gruk no longer has access to this location. Grant access again to patrol it.");
    EXPECT_EQ(house.stored(realm).size(), 1U);
    EXPECT_FALSE(house.model->isConnected(house.grantOf(realm)));
    expectIdle(*house.model);
}

TEST(AppModelPatrol, aFolderInsideAGrantedOneCanBePatrolled)
{
    ModelHouse house;
    house.directory.file("home/Music/song.mp3", 100);
    house.makeRealm("home");
    const FileURL inside = FileURL::directory(house.directory.path("home/Music"));
    house.select(inside);
    house.patrol();
    EXPECT_EQ(house.model->lastActionMessage(), "First patrol of Music complete.");
    EXPECT_EQ(house.stored(inside).size(), 1U);
}

TEST(AppModelPatrol, aNameThatIsNotTextIsWrittenForTheEye)
{
    ModelHouse house;
    house.makePatrolledRealm("b\xff"
                             "d");
    EXPECT_EQ(house.model->lastActionMessage(), "First patrol of b\xEF\xBF\xBD"
                                                "d complete.");
}

TEST(AppModelPatrol, gruksOwnMemoryInARealmIsNoFindingAndNoChangeNorIsItToReview)
{
    ModelHouse house;
    house.directory.file("mine.txt", 8'192);
    const FileURL realm = house.directory.url();
    house.model->grantRealm(realm);
    house.settle();
    const auto expectNothing = [&] {
        EXPECT_TRUE(house.model->findings().empty());
        EXPECT_TRUE(house.model->topLevelChanges().empty());
        EXPECT_EQ(house.model->netChangeBytes(), 0);
    };
    house.patrol();
    for (int patrol = 0; patrol < 3; ++patrol) {
        // Its folder grows by more than the store alone would.
        house.directory.file("app/node_modules/" + std::to_string(patrol), 40'960);
        house.patrol();
        EXPECT_TRUE(
            house.model->lastActionMessage()->ends_with("No size changes since the last map."))
            << *house.model->lastActionMessage();
        expectNothing();
    }
    house.restart();
    house.select(realm);
    ASSERT_TRUE(house.model->previousSnapshot());
    expectNothing();
    house.model->showTerritories();
    house.settle();
    ASSERT_EQ(house.model->territorySummaries().size(), 1U);
    EXPECT_EQ(house.model->territorySummaries().front().findingsCount, 0U);
}

TEST(AppModelPatrol, whatWasTrashedDoesNotComeBackAsAFinding)
{
    ModelHouse house;
    house.directory.file("x.pdf", 20'480);
    house.directory.file("x (1).pdf", 20'480);
    house.model->grantRealm(house.directory.url());
    house.settle();
    house.patrol();
    ASSERT_EQ(house.model->findings().size(), 1U);
    const Bytes before = house.model->latestTotalBytes();
    house.allowTrash();
    house.model->moveFindingsToTrash(house.model->findings());
    ASSERT_TRUE(std::filesystem::exists(house.directory.path("data/Trash/files/x (1).pdf")));
    house.patrol();
    EXPECT_TRUE(house.model->findings().empty());
    EXPECT_GE(house.model->latestTotalBytes(), before);
}

}  // namespace gruk
