#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::ModelHouse;
using testing::IsEmpty;

TEST(AppModelTerritories, showsOneSummaryAGrantInTheirOrder)
{
    ModelHouse house;
    const FileURL b = house.makePatrolledRealm("b");
    const FileURL a = house.makeRealm("a");
    house.settle();
    EXPECT_TRUE(house.model->territoriesAreStale());
    house.model->showTerritories();
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_FALSE(house.model->activeAccess());
    EXPECT_TRUE(house.model->isLoadingTerritories());
    house.settle();
    EXPECT_FALSE(house.model->isLoadingTerritories());
    EXPECT_FALSE(house.model->territoriesAreStale());
    const auto& summaries = house.model->territorySummaries();
    ASSERT_EQ(summaries.size(), 2U);
    EXPECT_EQ(summaries[0].path, b.path());
    EXPECT_EQ(summaries[0].displayName, "b");
    EXPECT_GE(summaries[0].totalBytes, 8'192);
    EXPECT_TRUE(summaries[0].lastPatrolled);
    EXPECT_EQ(summaries[1].path, a.path());
    EXPECT_EQ(summaries[1].totalBytes, 0);
    EXPECT_FALSE(summaries[1].lastPatrolled);
}

TEST(AppModelTerritories, areNotLoadedAgainWhileTheyAreFresh)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->showTerritories();
    house.settle();
    const auto generation = house.model->territoryLoadGeneration();
    house.model->showTerritories();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation);
    house.model->loadTerritories();
    EXPECT_EQ(house.model->territoryLoadGeneration(), generation + 1);
    house.settle();
}

TEST(AppModelTerritories, ofTwoLoadsTheNewerWinsAlsoWhenItEndsFirst)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->loadTerritories();
    house.makeRealm("b");
    house.model->showTerritories();
    // All that waits but the first load.
    while (house.pool->count() > 1) {
        house.pool->runAt(1);
        house.loop->run();
    }
    ASSERT_EQ(house.model->territorySummaries().size(), 2U);
    EXPECT_FALSE(house.model->isLoadingTerritories());
    house.settle();
    EXPECT_EQ(house.model->territorySummaries().size(), 2U) << "the older one is dropped";
}

TEST(AppModelTerritories, aSupersededLoadLeavesTheFlagsToTheNewerOne)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->loadTerritories();
    house.model->loadTerritories();
    house.pool->runNext();
    house.loop->run();
    EXPECT_TRUE(house.model->isLoadingTerritories());
    EXPECT_TRUE(house.model->territoriesAreStale());
    EXPECT_THAT(house.model->territorySummaries(), IsEmpty());
    house.settle();
    EXPECT_FALSE(house.model->isLoadingTerritories());
}

TEST(AppModelTerritories, ofARealmThatWasRemovedMeanwhileNothingIsPublished)
{
    ModelHouse house;
    const FileURL a = house.makePatrolledRealm("a");
    house.makePatrolledRealm("b");
    house.model->loadTerritories();
    house.model->removeRealm(house.grantOf(a));
    house.settle();
    ASSERT_EQ(house.model->territorySummaries().size(), 1U);
    EXPECT_EQ(house.model->territorySummaries()[0].displayName, "b");
    EXPECT_FALSE(house.model->isLoadingTerritories());
    EXPECT_FALSE(house.model->territoriesAreStale());
}

TEST(AppModelTerritories, aPatrolAndACadenceMakeThemStale)
{
    ModelHouse house;
    const FileURL a = house.makePatrolledRealm("a");
    house.model->loadTerritories();
    house.settle();
    ASSERT_FALSE(house.model->territoriesAreStale());
    house.patrol();
    EXPECT_TRUE(house.model->territoriesAreStale());
    house.model->loadTerritories();
    house.settle();
    house.model->setCadence(PatrolCadence::daily, house.grantOf(a));
    EXPECT_TRUE(house.model->territoriesAreStale());
}

TEST(AppModelTerritories, aMarkThatIsSetWhileALoadRunsSurvivesItsEnd)
{
    ModelHouse house;
    const FileURL a = house.makePatrolledRealm("a");
    house.model->loadTerritories();
    // Read already, and not yet shown.
    house.pool->runNext();
    house.model->setCadence(PatrolCadence::daily, house.grantOf(a));
    house.loop->run();
    EXPECT_FALSE(house.model->isLoadingTerritories());
    EXPECT_EQ(house.model->territorySummaries().size(), 1U);
    EXPECT_TRUE(house.model->territoriesAreStale());
    house.model->showTerritories();
    house.settle();
    EXPECT_FALSE(house.model->territoriesAreStale()) << "the next load has read all of it";
}

TEST(AppModelTerritories, anOverdueRealmIsMarkedByItsCadence)
{
    ModelHouse house;
    const FileURL a = house.makePatrolledRealm("a");
    house.model->setCadence(PatrolCadence::daily, house.grantOf(a));
    house.loop->setNow({Date::now().secondsSince1970 + 86'401});
    house.model->loadTerritories();
    // The tick of the clock is not awaited: only the load runs.
    house.pool->runNext();
    house.loop->run();
    ASSERT_EQ(house.model->territorySummaries().size(), 1U);
    EXPECT_TRUE(house.model->territorySummaries()[0].isOverdue);
}

TEST(AppModelTerritories, aDamagedStoreIsARealmWithNoHistory)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.directory.fileWith("app/snapshots.json", "damaged");
    house.model->showTerritories();
    house.settle();
    ASSERT_EQ(house.model->territorySummaries().size(), 1U);
    EXPECT_EQ(house.model->territorySummaries()[0].totalBytes, 0);
    EXPECT_FALSE(house.model->errorMessage());
}

TEST(AppModelAllRealms, arePatrolledOneAfterTheOtherAndTheLastStaysSelected)
{
    ModelHouse house;
    const FileURL a = house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.settle();
    house.model->patrolAllRealms();
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(), "Patrolled 2 realm(s).");
    EXPECT_EQ(house.model->activeRootURL(), b);
    EXPECT_EQ(house.stored(a).size(), 1U);
    EXPECT_EQ(house.stored(b).size(), 1U);
}

TEST(AppModelAllRealms, tellsHowManyWereSkipped)
{
    ModelHouse house;
    house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.settle();
    fs::rename(house.directory.path("a"), house.directory.path("gone"));
    house.model->patrolAllRealms();
    house.settle();
    EXPECT_EQ(
        house.model->lastActionMessage(),
        "Patrolled 1 realm(s). 1 disconnected realm(s) skipped \xE2\x80\x94 regrant them from "
        "the sidebar.");
    EXPECT_EQ(house.model->activeRootURL(), b);
}

TEST(AppModelAllRealms, withNoGrantsReadsZero)
{
    ModelHouse house;
    house.model->patrolAllRealms();
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(), "Patrolled 0 realm(s).");
}

TEST(AppModelAllRealms, whileAPatrolRunsDoesNothingAndChangesNoMessage)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->patrolActiveRealm();
    house.model->patrolAllRealms();
    EXPECT_FALSE(house.model->lastActionMessage());
    house.settle();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Patrol of a complete. No size changes since the last map.");
}

TEST(AppModelAllRealms, stoppingEndsOnlyTheRealmThatIsPatrolledNow)
{
    ModelHouse house;
    const FileURL a = house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.settle();
    house.model->patrolAllRealms();
    ASSERT_EQ(house.model->patrollingRootURL(), a);
    house.model->cancelPatrol();
    house.settle();
    EXPECT_EQ(house.stored(a).size(), 0U);
    EXPECT_EQ(house.stored(b).size(), 1U);
    EXPECT_EQ(house.model->lastActionMessage(), "Patrolled 2 realm(s).");
}

TEST(AppModelBrowse, theSessionOpensTheRealmAndForgetsItWithIt)
{
    ModelHouse house;
    const FileURL a = house.makeRealm("a");
    house.settle();
    EXPECT_EQ(house.model->session().currentDirectory(), a);
    EXPECT_EQ(house.model->session().nodes().size(), 1U);
    house.model->showTerritories();
    EXPECT_FALSE(house.model->session().currentDirectory());
    house.settle();
}

TEST(AppModelBrowse, aRealmThatIsOpenedAgainIsMeasuredAnew)
{
    ModelHouse house;
    const FileURL a = house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.directory.file("a/sub/one", 40'960);
    const auto sizeOfSub = [&]() -> Bytes {
        for (const auto& node : house.model->session().nodes()) {
            if (node->entry().name() == "sub") {
                return node->displaySize();
            }
        }
        return -1;
    };
    house.select(a);
    ASSERT_EQ(sizeOfSub(), 40'960);
    house.directory.file("a/sub/two", 40'960);
    house.select(b);
    house.select(a);
    EXPECT_EQ(sizeOfSub(), 81'920);
}

}  // namespace

}  // namespace gruk
