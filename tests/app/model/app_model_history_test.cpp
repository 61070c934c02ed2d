#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

using test::ModelHouse;

/// Counts how often a field of the model was assigned.
template <typename Signal>
std::shared_ptr<int> countOf(AppModel& model, Signal signal)
{
    auto count = std::make_shared<int>(0);
    QObject::connect(&model, signal, &model, [count] { ++*count; });
    return count;
}

/// Runs what waits in the pool from the newest to the oldest.
void runLastFirst(ModelHouse& house)
{
    while (house.pool->count() > 0) {
        house.pool->runAt(house.pool->count() - 1);
    }
}

}  // namespace

TEST(AppModelHistory, startsWithNoRealmSelectedAndNothingOfOne)
{
    ModelHouse house;
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_FALSE(house.model->isPatrolling());
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
    EXPECT_TRUE(house.model->territoriesAreStale());
    EXPECT_EQ(house.model->latestTotalBytes(), 0);
    EXPECT_EQ(house.model->historyLoadGeneration(), 0);
}

TEST(AppModelHistory, selectingARealmStandardisesItsPlace)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    house.select(FileURL(realm.path() + "/../a/."));
    EXPECT_EQ(house.model->activeRootURL(), realm);
}

TEST(AppModelHistory, selectingTheRealmThatIsAlreadyActiveChangesNothingNotEvenTheStatusLine)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    const auto message = house.model->lastActionMessage();
    const auto generation = house.model->historyLoadGeneration();
    const auto assignments = countOf(*house.model, &AppModel::activeRootURLChanged);
    ASSERT_EQ(message, "First patrol of a complete.");

    house.select(realm);

    EXPECT_EQ(house.model->lastActionMessage(), message);
    EXPECT_EQ(house.model->historyLoadGeneration(), generation);
    EXPECT_EQ(*assignments, 0);
    EXPECT_TRUE(house.model->latestSnapshot());
}

TEST(AppModelHistory, selectingBlanksTheFormerRealmAtOnceAndShowsThatItLoads)
{
    ModelHouse house;
    const FileURL first = house.makePatrolledRealm("a");
    house.makePatrolledRealm("b");
    ASSERT_TRUE(house.model->latestSnapshot());

    house.model->selectRealm(first);

    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_FALSE(house.model->previousSnapshot());
    EXPECT_TRUE(house.model->heavyItems().empty());
    EXPECT_TRUE(house.model->findings().empty());
    EXPECT_TRUE(house.model->deltas().empty());
    EXPECT_EQ(house.model->latestTotalBytes(), 0);
    EXPECT_FALSE(house.model->lastActionMessage());
    EXPECT_TRUE(house.model->isLoadingRealmHistory());
    house.settle();
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
    ASSERT_TRUE(house.model->latestSnapshot());
    EXPECT_EQ(house.model->latestSnapshot()->rootPath, first.path());
}

TEST(AppModelHistory, selectingASecondRealmDiscardsTheFirstOnesLoadAndStaysLoadingUntilTheSecond)
{
    ModelHouse house;
    const FileURL first = house.makePatrolledRealm("a");
    const FileURL second = house.makePatrolledRealm("b");
    house.makePatrolledRealm("c");

    house.model->selectRealm(first);
    const std::size_t loadsOfTheFirst = house.pool->count();
    house.model->selectRealm(second);
    for (std::size_t i = 0; i < loadsOfTheFirst; ++i) {
        house.pool->runNext();
    }
    house.loop->run();
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_TRUE(house.model->isLoadingRealmHistory());

    house.settle();
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
    ASSERT_TRUE(house.model->latestSnapshot());
    EXPECT_EQ(house.model->latestSnapshot()->rootPath, second.path());
}

TEST(AppModelHistory, loadsThatFinishInTheWrongOrderShowTheLaterOne)
{
    ModelHouse house;
    const FileURL first = house.makePatrolledRealm("a");
    const FileURL second = house.makePatrolledRealm("b");
    house.makePatrolledRealm("c");

    house.model->selectRealm(first);
    house.model->selectRealm(second);
    runLastFirst(house);
    house.settle();

    ASSERT_TRUE(house.model->latestSnapshot());
    EXPECT_EQ(house.model->latestSnapshot()->rootPath, second.path());
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
}

TEST(AppModelHistory, selectingARealmWhoseAccessCannotBeOpenedStillSelectsIt)
{
    ModelHouse house;
    const FileURL realm = FileURL::directory(house.directory.folder("never granted"));
    house.select(realm);
    EXPECT_EQ(house.model->activeRootURL(), realm);
    EXPECT_FALSE(house.model->activeAccess());
    EXPECT_FALSE(house.model->errorMessage());

    house.patrol();
    EXPECT_EQ(house.model->errorMessage(),
              "Gruk no longer has access to this location. Grant access again to patrol it.");
    EXPECT_FALSE(house.model->isPatrolling());
}

TEST(AppModelHistory, selectingAnotherRealmReleasesTheFormerAccess)
{
    ModelHouse house;
    house.makeRealm("a");
    const std::weak_ptr<ScopedAccess> former = house.model->activeAccess();
    ASSERT_FALSE(former.expired());
    house.makeRealm("b");
    EXPECT_TRUE(former.expired());
    EXPECT_TRUE(house.model->activeAccess());
}

TEST(AppModelHistory, aModelThatEndsWhileAHistoryLoadsDropsTheResult)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.makeRealm("b");
    house.model.reset();
    house.settle();
    EXPECT_EQ(house.pool->count(), 0U);
}

TEST(AppModelHistory, whileItLoadsARealmThatWasPatrolledIsKnownForOne)
{
    ModelHouse house;
    const FileURL mapped = house.makePatrolledRealm("mapped");
    const FileURL fresh = house.makeRealm("fresh");
    house.settle();
    house.restart();
    house.model->loadTerritories();
    house.settle();
    house.model->selectRealm(mapped);
    ASSERT_TRUE(house.model->isLoadingRealmHistory());
    EXPECT_TRUE(house.model->isActiveRealmMapped());
    house.settle();
    EXPECT_TRUE(house.model->isActiveRealmMapped());
    house.model->selectRealm(fresh);
    ASSERT_TRUE(house.model->isLoadingRealmHistory());
    EXPECT_FALSE(house.model->isActiveRealmMapped());
    house.settle();
    EXPECT_FALSE(house.model->isActiveRealmMapped());
}

TEST(AppModelHistory, beforeTheStoreWasLookedAtARealmIsTakenForMappedUntilItsHistorySaysOtherwise)
{
    ModelHouse house;
    const FileURL mapped = house.makePatrolledRealm("mapped");
    const FileURL fresh = house.makeRealm("fresh");
    house.settle();
    house.restart();
    EXPECT_FALSE(house.model->isActiveRealmMapped());
    house.model->selectRealm(mapped);
    EXPECT_TRUE(house.model->isActiveRealmMapped());
    house.model->selectRealm(fresh);
    EXPECT_TRUE(house.model->isActiveRealmMapped());
    house.settle();
    EXPECT_FALSE(house.model->isActiveRealmMapped());
}

TEST(AppModelHistory, aRealmPatrolledSinceTheStoreWasLookedAtIsKnownForOne)
{
    ModelHouse house;
    house.model->loadTerritories();
    house.settle();
    const FileURL first = house.makeRealm("first");
    EXPECT_FALSE(house.model->isActiveRealmMapped());
    house.settle();
    house.patrol();
    house.makeRealm("second");
    house.settle();
    house.model->selectRealm(first);
    ASSERT_TRUE(house.model->isLoadingRealmHistory());
    EXPECT_TRUE(house.model->isActiveRealmMapped());
}

TEST(AppModelHistory, aCorruptStoreReadsAsARealmWithNoHistory)
{
    ModelHouse house;
    house.directory.fileWith("app/snapshots.json", "{\"schemaVersion\":1,");
    house.makeRealm("a");
    house.settle();
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_FALSE(house.model->errorMessage());
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
}

TEST(AppModelHistory, presentsTheFindingsSortedAndFilteredFromThePool)
{
    ModelHouse house;
    house.directory.file("a/Downloads/x.pdf", 20'000);
    house.directory.file("a/Downloads/x (1).pdf", 20'000);
    house.directory.file("a/p/node_modules/big.js", 90'000);
    house.makePatrolledRealm("a");
    ASSERT_EQ(house.model->findings().size(), 2U);

    std::vector<std::string> names;
    const auto present = [&](FindingsSort sort, std::optional<ReviewFinding::Reason> reason) {
        names.clear();
        auto task = house.model->presentFindings(sort, reason);
        EXPECT_EQ(house.pool->count(), 1U);
        house.settle();
        task.then([&](const std::shared_ptr<const std::vector<ReviewFinding>>& presented) {
            for (const ReviewFinding& finding : *presented) {
                names.emplace_back(finding.url.lastPathComponent());
            }
        });
    };
    present(FindingsSort::reason, std::nullopt);
    EXPECT_EQ(names, (std::vector<std::string>{"x (1).pdf", "node_modules"}));
    present(FindingsSort::size, std::nullopt);
    EXPECT_EQ(names, (std::vector<std::string>{"node_modules", "x (1).pdf"}));
    present(FindingsSort::size, ReviewFinding::Reason::duplicateDownload);
    EXPECT_EQ(names, (std::vector<std::string>{"x (1).pdf"}));
}

TEST(AppModelHistory, tellsWhichItemsAreGone)
{
    ModelHouse house;
    const FileURL there(house.directory.file("there"));
    const FileURL gone(house.directory.path("gone"));
    const FileURL link(house.directory.symbolicLink("link", "nowhere"));
    const FileURL below(there.path() + "/that is a file by now");
    auto task = house.model->missingItems({there, gone, link, below});
    house.settle();
    std::vector<FileURL> missing;
    task.then([&](const std::vector<FileURL>& urls) { missing = urls; });
    EXPECT_EQ(missing, (std::vector<FileURL>{gone, below}));
}

}  // namespace gruk
