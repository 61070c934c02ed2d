#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

using test::ModelHouse;

void loadMemory(ModelHouse& house)
{
    house.model->loadMemory();
    house.settle();
}

void forget(ModelHouse& house, const FileURL& url)
{
    house.model->forgetPatrols(url.path());
    house.settle();
}

void damage(ModelHouse& house)
{
    std::ofstream(house.directory.path("app/snapshots.json")) << "no store";
}

}  // namespace

TEST(AppModelMemory, tellsWhatTheStoreTakesAndWhatOfItIsOfNoRealm)
{
    ModelHouse house;
    EXPECT_FALSE(house.model->memory());
    loadMemory(house);
    EXPECT_EQ(house.model->memory(), PatrolMemory());
    house.makePatrolledRealm("kept");
    const FileURL gone = house.makePatrolledRealm("gone");
    house.patrol();
    loadMemory(house);
    EXPECT_TRUE(house.model->memory()->forgettable.empty());
    house.model->removeRealm(house.grantOf(gone));
    loadMemory(house);
    const PatrolMemory memory = house.model->memory().value();
    EXPECT_EQ(static_cast<std::uintmax_t>(memory.bytes),
              std::filesystem::file_size(house.directory.path("app/snapshots.json")));
    ASSERT_EQ(memory.forgettable.size(), 1U);
    EXPECT_EQ(memory.forgettable[0].path, gone.path());
    EXPECT_EQ(memory.forgettable[0].patrols, 2U);
    EXPECT_GT(memory.forgettable[0].bytes, 0);
    EXPECT_LT(memory.forgettable[0].bytes, memory.bytes);
}

TEST(AppModelMemory, isAskedForOnThePool)
{
    ModelHouse house;
    house.makePatrolledRealm("a");
    house.model->loadMemory();
    house.loop->run();
    EXPECT_FALSE(house.model->memory());
    EXPECT_EQ(house.pool->count(), 1U);
    house.model.reset();
    house.settle();
}

TEST(AppModelMemory, aRemovedRealmIsForgottenAndTheOthersAreNot)
{
    ModelHouse house;
    const FileURL kept = house.makePatrolledRealm("kept");
    const FileURL gone = house.makePatrolledRealm("gone");
    house.model->removeRealm(house.grantOf(gone));
    forget(house, gone);
    EXPECT_TRUE(house.stored(gone).empty());
    EXPECT_EQ(house.stored(kept).size(), 1U);
    EXPECT_EQ(house.model->lastActionMessage(), "Gruk forgot the patrols of gone.");
    ASSERT_TRUE(house.model->memory());
    EXPECT_TRUE(house.model->memory()->forgettable.empty());
}

TEST(AppModelMemory, aRealmThatIsGrantedIsNeverForgotten)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    forget(house, realm);
    EXPECT_EQ(house.stored(realm).size(), 1U);
    EXPECT_EQ(house.model->errorMessage(),
              "That place is one of your realms. Nothing was forgotten.");
}

TEST(AppModelMemory, aRealmThatIsGrantedAgainMeanwhileIsNotForgotten)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    house.model->removeRealm(house.grantOf(realm));
    house.model->forgetPatrols(realm.path());
    house.model->grantRealm(realm);
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 1U);
    EXPECT_TRUE(house.model->latestSnapshot());
}

TEST(AppModelMemory, aPatrolOverADamagedStoreNamesItsFolderAndTheWayOut)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    damage(house);
    house.patrol();
    EXPECT_EQ(house.model->errorMessage(),
              "The patrol could not finish: The file of past patrols, snapshots.json in "
                  + house.directory.path("app")
                  + ", is damaged. It was left as it is; set it aside, and the next patrol begins "
                    "a new one.");
    EXPECT_EQ(house.model->errorRemedy(), ErrorRemedy::damagedMemory);
    house.model->revealMemory();
    EXPECT_EQ(house.revealed.back(),
              std::vector<FileURL>{FileURL(house.directory.path("app/snapshots.json"))});

    house.model->setMemoryAside();
    house.settle();
    EXPECT_FALSE(house.model->errorMessage());
    EXPECT_EQ(house.model->errorRemedy(), ErrorRemedy::none);
    EXPECT_EQ(house.model->lastActionMessage(),
              "The damaged file is called snapshots.json.damaged now. The next patrol begins a new "
              "one.");
    EXPECT_EQ(house.directory.read("app/snapshots.json.damaged"), "no store");
    house.patrol();
    EXPECT_FALSE(house.model->errorMessage());
    EXPECT_EQ(house.stored(realm).size(), 1U);
}

TEST(AppModelMemory, anyOtherErrorHasNoSuchWayOut)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    damage(house);
    house.patrol();
    std::filesystem::remove_all(realm.path());
    house.patrol();
    EXPECT_TRUE(house.model->errorMessage());
    EXPECT_EQ(house.model->errorRemedy(), ErrorRemedy::none);
}

TEST(AppModelMemory, aStoreThatIsSoundAgainIsNotSetAside)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    house.model->setMemoryAside();
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 1U);
    EXPECT_EQ(house.model->lastActionMessage(),
              "The file of past patrols can be read again. Nothing was changed.");
}

TEST(AppModelMemory, aRevealThatNothingCanShowSaysWhereTheItemLies)
{
    ModelHouse house;
    house.model->reveal({FileURL("/a/b c")});
    EXPECT_FALSE(house.model->errorMessage());
    house.hasFileManager = false;
    house.model->reveal({FileURL("/a/b c")});
    EXPECT_EQ(house.model->errorMessage(),
              "There is no file manager that could show it. It lies in /a.");
}

}  // namespace gruk
