#include <filesystem>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "tests/support/environment.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

using test::ModelHouse;

constexpr const char* panelMessage =
    "Choose a disk or folder for Gruk to patrol. You stay in control of every Trash action.";

}  // namespace

TEST(AppModelGrants, grantingAsksForAFolderWithThePanelsWords)
{
    ModelHouse house;
    house.model->grantRealm();
    ASSERT_EQ(house.panel->requests.size(), 1U);
    EXPECT_EQ(house.panel->requests[0],
              (OpenPanelRequest{panelMessage, "Grant Access", std::nullopt}));
}

TEST(AppModelGrants, aUserWhoThinksBetterOfItChangesNothing)
{
    ModelHouse house;
    house.model->grantRealm();
    house.settle();
    EXPECT_TRUE(house.model->grants().empty());
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_TRUE(house.logLines.empty());
}

TEST(AppModelGrants, aChosenFolderIsGrantedAndOpened)
{
    ModelHouse house;
    const FileURL realm = FileURL::directory(house.directory.folder("a"));
    house.panel->answers.push_back(realm);
    house.model->grantRealm();
    house.settle();
    ASSERT_EQ(house.model->grants().size(), 1U);
    EXPECT_EQ(house.model->grants()[0].path, realm.path());
    EXPECT_EQ(house.model->activeRootURL(), realm);
    EXPECT_TRUE(house.model->activeAccess());
    EXPECT_TRUE(house.model->territoriesAreStale());
}

TEST(AppModelGrants, aFolderThatCannotBeGrantedGoesToTheLogAndNotToTheScreen)
{
    ModelHouse house;
    const FileURL file(house.directory.file("file"));
    house.panel->answers.push_back(FileURL::directory(file.path()));
    house.model->grantRealm();
    house.settle();
    ASSERT_EQ(house.logLines.size(), 1U);
    EXPECT_TRUE(
        house.logLines[0].starts_with("Gruk: failed to grant access to " + file.path() + ": "))
        << house.logLines[0];
    EXPECT_TRUE(house.model->grants().empty());
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_FALSE(house.model->errorMessage());
}

TEST(AppModelGrants, theModelMayEndWhileThePanelIsOpen)
{
    /// A panel that is answered when the test says so.
    class OpenForever final : public OpenPanel {
    public:
        QCoro::Task<std::optional<FileURL>> chooseDirectory(OpenPanelRequest) override
        {
            std::function<FileURL()> choose = [] { return FileURL(); };
            const FileURL chosen = co_await inBackground(pool, loop, std::move(choose));
            co_return std::optional(chosen);
        }
        std::shared_ptr<test::ManualTaskPool> pool = std::make_shared<test::ManualTaskPool>();
        std::shared_ptr<test::ManualRunLoop> loop = std::make_shared<test::ManualRunLoop>();
    };
    const auto panel = std::make_shared<OpenForever>();
    test::TemporaryDirectory directory;
    AppModel::Collaborators collaborators;
    collaborators.grantStore = std::make_shared<GrantStore>(FileURL(directory.path("grants.json")));
    collaborators.openPanel = panel;
    collaborators.runLoop = panel->loop;
    collaborators.taskPool = panel->pool;
    auto model = std::make_unique<AppModel>(std::move(collaborators));
    model->grantRealm();
    ASSERT_TRUE(panel->pool->runNext());
    model.reset();
    panel->loop->run();
    EXPECT_FALSE(std::filesystem::exists(directory.path("grants.json")));
}

TEST(AppModelGrants, regrantingFindsTheRealmByItsBookmarkWithoutAPanel)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const Grant before = house.grantOf(realm);
    house.model->regrantRealm(before);
    EXPECT_TRUE(house.panel->requests.empty());
    EXPECT_EQ(house.grantOf(realm).id, before.id);
}

TEST(AppModelGrants, regrantingALostRealmAsksForItAtItsPlace)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const Grant lost = house.grantOf(realm);
    std::filesystem::remove_all(realm.path());
    EXPECT_FALSE(house.model->isConnected(lost));
    house.model->regrantRealm(lost);
    ASSERT_EQ(house.panel->requests.size(), 1U);
    EXPECT_EQ(house.panel->requests[0], (OpenPanelRequest{panelMessage, "Grant Access", realm}));
    EXPECT_EQ(house.model->grants(), std::vector<Grant>{lost});
}

TEST(AppModelGrants, regrantingReplacesTheLostGrantByTheChosenOne)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const Grant lost = house.grantOf(realm);
    std::filesystem::remove_all(realm.path());
    const FileURL found = FileURL::directory(house.directory.folder("found"));
    house.panel->answers.push_back(found);
    house.model->regrantRealm(lost);
    ASSERT_EQ(house.model->grants().size(), 1U);
    EXPECT_EQ(house.model->grants()[0].path, found.path());
    EXPECT_NE(house.model->grants()[0].id, lost.id);
}

TEST(AppModelGrants, regrantingTheSamePlaceAgainKeepsTheRealmWithABookmarkThatLeadsThere)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const Grant lost = house.grantOf(realm);
    house.directory.folder("far away");
    std::filesystem::rename(realm.path(), house.directory.path("far away/a"));
    house.directory.folder("a");
    ASSERT_FALSE(house.model->isConnected(lost));
    house.panel->answers.push_back(realm);
    house.model->regrantRealm(lost);
    ASSERT_EQ(house.model->grants().size(), 1U);
    EXPECT_EQ(house.model->grants()[0].path, realm.path());
    EXPECT_TRUE(house.model->isConnected(house.model->grants()[0]));
}

TEST(AppModelGrants, grantingTheFolderInTheSteadOfALostRealmConnectsItAgain)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    const Grant lost = house.grantOf(realm);
    house.directory.folder("far away");
    std::filesystem::rename(realm.path(), house.directory.path("far away/a"));
    house.directory.folder("a");
    house.patrol();
    EXPECT_EQ(house.model->errorMessage(),
              "Gruk no longer has access to this location. Grant access again to patrol it.");
    house.model->grantRealm(realm);
    house.patrol();
    EXPECT_FALSE(house.model->errorMessage()) << "access was granted again, as it asked";
    ASSERT_EQ(house.model->grants().size(), 1U);
    EXPECT_NE(house.model->grants()[0].id, lost.id);
    EXPECT_EQ(house.stored(realm).size(), 2U);
}

TEST(AppModelGrants, grantingARealmThatIsThereChangesNothing)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const std::vector<Grant> before = house.model->grants();
    house.model->grantRealm(realm);
    EXPECT_EQ(house.model->grants(), before);
}

TEST(AppModelGrants, aLostRealmWhoseFolderGoesWhileItIsChosenAgainStaysInTheList)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const Grant lost = house.grantOf(realm);
    std::filesystem::remove_all(realm.path());
    house.panel->answers.push_back(realm);
    house.model->regrantRealm(lost);
    EXPECT_EQ(house.model->grants(), std::vector<Grant>{lost});
    EXPECT_EQ(house.logLines.size(), 1U);
    house.restart();
    EXPECT_EQ(house.model->grants(), std::vector<Grant>{lost});
}

TEST(AppModelGrants, aRenamedRealmThatIsNotChosenKeepsWhatTheStoreHasOfIt)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    std::filesystem::rename(realm.path(), house.directory.path("renamed"));
    house.model->regrantRealm(house.grantOf(realm));
    const std::vector<Grant> shown = house.model->grants();
    house.restart();
    EXPECT_EQ(house.model->grants(), shown) << "its bookmark was renewed, and that is shown";
    std::filesystem::rename(house.directory.path("renamed"), realm.path());
    EXPECT_TRUE(house.model->isConnected(house.model->grants()[0]));
}

TEST(AppModelGrants, aGrantThatCannotBeSavedIsShownAsLongAsTheProgramKeepsIt)
{
    ModelHouse house;
    house.directory.folder("app/grants.json/in the way");
    const FileURL realm = house.makeRealm("a");
    house.settle();
    EXPECT_EQ(house.logLines.size(), 1U);
    EXPECT_EQ(house.model->grants().size(), 1U);
    EXPECT_FALSE(house.model->activeRootURL()) << "it stops there";
}

TEST(AppModelGrants, aRenamedRealmIsAskedForSinceItsBookmarkLeadsElsewhere)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    std::filesystem::rename(realm.path(), house.directory.path("renamed"));
    const FileURL renamed = FileURL::directory(house.directory.path("renamed"));
    house.panel->answers.push_back(renamed);
    house.model->regrantRealm(house.grantOf(realm));
    EXPECT_EQ(house.panel->requests.size(), 1U);
    ASSERT_EQ(house.model->grants().size(), 1U);
    EXPECT_EQ(house.model->grants()[0].path, renamed.path());
    EXPECT_TRUE(house.model->isConnected(house.model->grants()[0]));
}

TEST(AppModelGrants, aFailureToRegrantIsLoggedWithTheOldPlaceAndKeepsTheOldGrant)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    const Grant lost = house.grantOf(realm);
    std::filesystem::remove_all(realm.path());
    house.panel->answers.push_back(FileURL::directory(house.directory.path("nowhere")));
    house.model->regrantRealm(lost);
    ASSERT_EQ(house.logLines.size(), 1U);
    EXPECT_TRUE(
        house.logLines[0].starts_with("Gruk: failed to re-grant access to " + realm.path() + ": "))
        << house.logLines[0];
    EXPECT_EQ(house.model->grants(), std::vector<Grant>{lost});
}

TEST(AppModelGrants, removingTheActiveRealmClearsItsPageAndKeepsItsSnapshots)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    house.model->removeRealm(house.grantOf(realm));
    EXPECT_TRUE(house.model->grants().empty());
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_FALSE(house.model->activeAccess());
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_TRUE(house.model->findings().empty());
    EXPECT_EQ(house.stored(realm).size(), 1U);
}

TEST(AppModelGrants, removingAnotherRealmLeavesTheActiveOneOpen)
{
    ModelHouse house;
    const FileURL other = house.makeRealm("b");
    const FileURL realm = house.makePatrolledRealm("a");
    house.model->removeRealm(house.grantOf(other));
    EXPECT_EQ(house.model->activeRootURL(), realm);
    EXPECT_TRUE(house.model->latestSnapshot());
    EXPECT_EQ(house.model->grants().size(), 1U);
}

TEST(AppModelGrants, aHistoryThatLoadsForARemovedRealmIsDropped)
{
    ModelHouse house;
    const FileURL realm = house.makePatrolledRealm("a");
    house.makeRealm("b");
    house.settle();
    house.model->selectRealm(realm);
    house.model->removeRealm(house.grantOf(realm));
    house.settle();
    EXPECT_FALSE(house.model->latestSnapshot());
    EXPECT_FALSE(house.model->isLoadingRealmHistory());
}

TEST(AppModelGrants, keepsItsFilesInTheApplicationDirectory)
{
    const test::TemporaryDirectory data;
    const test::EnvironmentVariable home("XDG_DATA_HOME", data.path());
    EXPECT_EQ(applicationDirectory(), FileURL::directory(data.path("Gruk")));
    AppModel model;
    EXPECT_FALSE(std::filesystem::exists(data.path("Gruk")));
    model.grantRealm(FileURL::directory(data.folder("realm")));
    EXPECT_TRUE(std::filesystem::exists(data.path("Gruk/grants.json")));
}

}  // namespace gruk
