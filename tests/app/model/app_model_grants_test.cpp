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

TEST(AppModelGrants, aFolderThatCannotBeGrantedGoesToTheLogAndToTheScreen)
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
    EXPECT_EQ(house.model->errorMessage(), "Gruk could not make a realm of that: " + file.path()
                                               + ": Not a directory. Nothing was changed.");
}

TEST(AppModelGrants, aFolderChosenThroughALinkIsGrantedWhereItLeads)
{
    const auto chosen = [](ModelHouse& house, const FileURL& link) {
        house.panel->answers.push_back(link);
        house.model->grantRealm();
    };
    const auto dropped = [](ModelHouse& house, const FileURL& link) {
        house.model->grantRealm(link);
    };
    const auto asDesktop = [](ModelHouse& house, const FileURL& link) {
        house.panel->answers.push_back(link);
        house.model->grantDesktop();
    };
    const auto again = [](ModelHouse& house, const FileURL& link) {
        const FileURL lost = house.makeRealm("lost");
        std::filesystem::remove_all(lost.path());
        house.panel->answers.push_back(link);
        house.model->regrantRealm(house.grantOf(lost));
        house.settle();
        house.model->selectRealm(FileURL::directory(house.model->grants().at(0).path));
    };
    using Granting = std::function<void(ModelHouse&, const FileURL&)>;
    for (const Granting& grant :
         {Granting(chosen), Granting(dropped), Granting(asDesktop), Granting(again)}) {
        ModelHouse house;
        house.directory.file("disk/Videos/film.mkv", 8'192);
        house.directory.symbolicLink("home/Videos", house.directory.path("disk/Videos"));
        grant(house, FileURL::directory(house.directory.path("home/Videos")));
        house.settle();
        const FileURL place = FileURL::directory(house.directory.path("disk/Videos"));
        ASSERT_EQ(house.model->grants().size(), 1U);
        EXPECT_EQ(house.model->grants()[0].path, place.path());
        EXPECT_EQ(house.model->activeRootURL(), place);
        house.patrol();
        ASSERT_TRUE(house.model->latestSnapshot());
        EXPECT_TRUE(house.model->latestSnapshot()->issues.empty());
        EXPECT_EQ(house.model->latestTotalBytes(), 8'192);
        // By the link once more it is the same realm.
        house.model->grantRealm(FileURL::directory(house.directory.path("home/Videos")));
        EXPECT_EQ(house.model->grants().size(), 1U);
    }
}

TEST(AppModelGrants, aDesktopThatIsALinkIsTidiedWhereItLeads)
{
    ModelHouse house;
    house.directory.file("disk/loose.txt", 8'192);
    house.directory.symbolicLink("Desktop", house.directory.path("disk"));
    house.panel->answers.push_back(FileURL::directory(house.directory.path("Desktop")));
    house.model->grantDesktop();
    house.settle();
    EXPECT_EQ(house.model->grantedDesktopURL(), FileURL::directory(house.directory.path("disk")));
    house.model->tidyDesktop();
    EXPECT_EQ(house.model->lastActionMessage(),
              "Done. 1 items stashed. Your Desktop is yours again.");
}

TEST(AppModelGrants, aLinkThatLeadsNowhereIsNoRealm)
{
    ModelHouse house;
    house.directory.symbolicLink("link", "nowhere");
    house.model->grantRealm(FileURL::directory(house.directory.path("link")));
    house.settle();
    EXPECT_TRUE(house.model->grants().empty());
    EXPECT_TRUE(house.model->errorMessage());
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
    ASSERT_TRUE(house.model->errorMessage());
    EXPECT_TRUE(house.model->errorMessage()->starts_with(
        "a is a realm only until Gruk ends, since the list of realms could not be saved: "))
        << *house.model->errorMessage();
}

TEST(AppModelGrants, aRenamedRealmIsAskedForSinceItsBookmarkLeadsElsewhere)
{
    ModelHouse house;
    const FileURL realm = house.makeRealm("a");
    std::filesystem::rename(realm.path(), house.directory.path("renamed"));
    const FileURL renamed = FileURL::directory(house.directory.path("renamed"));
    house.panel->answers.push_back(renamed);
    house.model->regrantRealm(house.grantOf(realm));
    house.settle();
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
    ASSERT_TRUE(house.model->errorMessage());
    EXPECT_TRUE(house.model->errorMessage()->ends_with(": No such file or directory. Nothing was "
                                                       "changed."))
        << *house.model->errorMessage();
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
