#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "app/model/setting_keys.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::ModelHouse;

/// A house whose Desktop is granted.
class AppModelTidy : public testing::Test {
protected:
    AppModelTidy()
    {
        house.directory.folder("Desktop");
        house.panel->answers.push_back(desktop());
        house.model->grantDesktop();
        house.settle();
    }

    [[nodiscard]] FileURL desktop() const
    {
        return FileURL::directory(house.directory.path("Desktop"));
    }
    [[nodiscard]] AppModel& model() { return *house.model; }
    [[nodiscard]] bool stands(const std::string& relative)
    {
        return fs::exists(house.directory.path(relative));
    }

    ModelHouse house;
};

TEST_F(AppModelTidy, grantingTheDesktopBeginsThereAndLeavesTheTerritoriesAsTheyAre)
{
    ASSERT_EQ(house.panel->requests.size(), 1U);
    EXPECT_EQ(house.panel->requests[0].prompt, "Grant the Desktop");
    EXPECT_EQ(house.panel->requests[0].startingDirectory, desktop());
    EXPECT_EQ(model().activeRootURL(), desktop());
    EXPECT_EQ(model().grantedDesktopURL(), desktop());
}

TEST_F(AppModelTidy, onlyGrantRealmMakesTheTerritoriesStale)
{
    model().showTerritories();
    house.settle();
    ASSERT_FALSE(model().territoriesAreStale());
    house.directory.folder("other");
    house.panel->answers.push_back(FileURL::directory(house.directory.path("other")));
    model().grantDesktop();
    house.settle();
    EXPECT_FALSE(model().territoriesAreStale());
    house.makeRealm("third");
    house.settle();
    EXPECT_TRUE(model().territoriesAreStale());
}

TEST_F(AppModelTidy, tidyingTellsHowManyItemsAndCanBeUndone)
{
    house.directory.file("Desktop/a");
    house.directory.file("Desktop/b");
    EXPECT_EQ(model().stashableCount(desktop()), 2U);
    const std::string hoard = model().proposedHoardName(desktop());
    model().tidyDesktop();
    EXPECT_EQ(model().lastActionMessage(), "Done. 2 items stashed. Your Desktop is yours again.");
    EXPECT_FALSE(model().errorMessage());
    ASSERT_TRUE(model().lastStashOperation());
    EXPECT_TRUE(stands("Desktop/" + hoard + "/a"));
    model().undoLastStash();
    EXPECT_EQ(model().lastActionMessage(), "Put everything back.");
    EXPECT_FALSE(model().lastStashOperation());
    EXPECT_TRUE(stands("Desktop/a"));
}

TEST_F(AppModelTidy, anEmptyDesktopReplacesAnEarlierUndoWithNone)
{
    house.directory.file("Desktop/a");
    model().tidyDesktop();
    ASSERT_TRUE(model().lastStashOperation());
    model().tidyDesktop();
    EXPECT_EQ(model().lastActionMessage(),
              "There was nothing to tidy \xE2\x80\x94 your Desktop is already clear.");
    EXPECT_FALSE(model().lastStashOperation());
}

TEST_F(AppModelTidy, tidyingRunsInReviewOnly)
{
    ASSERT_TRUE(model().reviewOnlyMode());
    house.directory.file("Desktop/a");
    model().tidyDesktop();
    EXPECT_FALSE(stands("Desktop/a"));
}

TEST_F(AppModelTidy, withoutAccessTidyingSaysSoAndUndoIsSilent)
{
    house.directory.file("Desktop/a");
    model().tidyDesktop();
    const auto told = model().lastActionMessage();
    fs::rename(house.directory.path("Desktop"), house.directory.path("elsewhere"));
    model().undoLastStash();
    EXPECT_EQ(model().lastActionMessage(), told);
    EXPECT_FALSE(model().errorMessage());
    EXPECT_TRUE(model().lastStashOperation()) << "it can be undone when the Desktop is back";
    model().tidyDesktop();
    EXPECT_EQ(model().errorMessage(),
              "Gruk no longer has access to the Desktop. Grant access again to tidy it.");
    EXPECT_EQ(model().lastActionMessage(), told);
    EXPECT_FALSE(model().grantedDesktopURL());
    EXPECT_FALSE(model().organisePlanForDesktop());
}

TEST_F(AppModelTidy, anUndoWithAnOccupiedPlaceTellsWhatCameBack)
{
    house.directory.file("Desktop/a");
    house.directory.file("Desktop/b");
    model().tidyDesktop();
    house.directory.file("Desktop/a");
    model().undoLastStash();
    EXPECT_EQ(model().lastActionMessage(), "Put 1 items back.");
    EXPECT_EQ(model().errorMessage(),
              "Some items could not be put back because their original path is occupied again.");
    ASSERT_TRUE(model().lastStashOperation());
    EXPECT_EQ(model().lastStashOperation()->moved.size(), 1U);
    EXPECT_TRUE(model().lastStashOperation()->hoardFolder);
    model().undoLastStash();
    EXPECT_FALSE(model().lastActionMessage());
    fs::remove(house.directory.path("Desktop/a"));
    model().undoLastStash();
    EXPECT_EQ(model().lastActionMessage(), "Put everything back.");
    EXPECT_FALSE(model().errorMessage());
}

TEST_F(AppModelTidy, organisingTellsFilesAndFoldersAndCanBeUndone)
{
    house.directory.file("Desktop/a.png");
    house.directory.file("Desktop/b.png");
    house.directory.file("Desktop/c.txt");
    const auto plan = model().organisePlanForActiveRealm();
    ASSERT_TRUE(plan);
    EXPECT_EQ(plan, model().organisePlanForDesktop());
    model().organise(*plan);
    EXPECT_EQ(
        model().lastActionMessage(),
        "Done. 3 files filed into 2 folders. Your realm, tidied \xE2\x80\x94 you did nothing, "
        "which was the plan.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_TRUE(stands("Desktop/Images/a.png"));
    model().undoLastOrganise();
    EXPECT_EQ(model().lastActionMessage(), "Put everything back.");
    EXPECT_TRUE(stands("Desktop/a.png"));
    EXPECT_FALSE(model().lastOrganiseOperation());
}

TEST_F(AppModelTidy, anEmptyPlanReadsAsDoneToo)
{
    model().organise({desktop(), {}});
    EXPECT_EQ(
        model().lastActionMessage(),
        "Done. 0 files filed into 0 folders. Your realm, tidied \xE2\x80\x94 you did nothing, "
        "which was the plan.");
    EXPECT_FALSE(model().lastOrganiseOperation());
}

TEST_F(AppModelTidy, anOrganiseThatMovesAPartOrNothingSaysSo)
{
    house.directory.file("Desktop/a.png");
    house.directory.file("Desktop/b.png");
    const OrganisePlan plan = *model().organisePlanForActiveRealm();
    fs::remove(house.directory.path("Desktop/a.png"));
    model().organise(plan);
    EXPECT_EQ(model().lastActionMessage(), "Filed 1 files into 1 folders.");
    EXPECT_EQ(model().errorMessage(), "1 item(s) could not be moved. Nothing else was changed.");
    model().organise(plan);
    EXPECT_EQ(model().lastActionMessage(), "Filed 1 files into 1 folders.") << "unchanged";
    EXPECT_EQ(model().errorMessage(), "Gruk could not organise this realm. Nothing was changed.");
    EXPECT_FALSE(model().lastOrganiseOperation());
}

TEST_F(AppModelTidy, undoOfAnOrganiseWithNoRealmOpenDoesNothingAndSaysNothing)
{
    house.directory.file("Desktop/a.png");
    model().organise(*model().organisePlanForActiveRealm());
    const auto told = model().lastActionMessage();
    model().showTerritories();
    house.settle();
    model().undoLastOrganise();
    EXPECT_EQ(model().lastActionMessage(), told);
    EXPECT_TRUE(model().lastOrganiseOperation());
    EXPECT_TRUE(stands("Desktop/Images/a.png"));
}

TEST_F(AppModelTidy, anOrganiseIsUndoneWhileAnotherRealmIsOpen)
{
    house.directory.file("Desktop/a.png");
    model().organise(*model().organisePlanForActiveRealm());
    house.makeRealm("other");
    house.settle();
    model().undoLastOrganise();
    EXPECT_TRUE(stands("Desktop/a.png"));
    EXPECT_EQ(model().lastActionMessage(), "Put everything back.");
}

TEST_F(AppModelTidy, anUndoWhileAnotherRealmIsOpenFollowsNoLinkOutOfItsOwn)
{
    house.directory.file("Desktop/a.png");
    model().organise(*model().organisePlanForActiveRealm());
    house.makeRealm("other");
    house.settle();
    house.directory.file("outside/a.png", 77);
    fs::rename(house.directory.path("Desktop/Images"), house.directory.path("Desktop/kept"));
    house.directory.symbolicLink("Desktop/Images", house.directory.path("outside"));
    model().undoLastOrganise();
    EXPECT_TRUE(stands("outside/a.png"));
    EXPECT_FALSE(stands("Desktop/a.png"));
    EXPECT_TRUE(model().lastOrganiseOperation()) << "it can be tried again";
}

TEST_F(AppModelTidy, organisingARealmWithoutAccessSaysSo)
{
    model().organise({FileURL::directory(house.directory.path("nowhere")), {}});
    EXPECT_EQ(model().errorMessage(),
              "Gruk no longer has access to this realm. Grant access again to organise it.");
}

TEST_F(AppModelTidy, aFolderNameFromTheSheetIsKeptAndARuleWinsOverIt)
{
    house.directory.file("Desktop/a.png");
    model().saveOrganiseOverride("Pictures", FileKind::image, desktop());
    EXPECT_EQ(model().organisePlanForActiveRealm()->moves[0].destinationFolderName, "Pictures");
    house.restart();
    model().selectRealm(desktop());
    house.settle();
    EXPECT_EQ(model().organisePlanForActiveRealm()->moves[0].destinationFolderName, "Pictures");
    model().addRealmRule(FileKind::image, "By rule", false, desktop());
    EXPECT_EQ(model().organisePlanForActiveRealm()->moves[0].destinationFolderName, "By rule");
}

TEST_F(AppModelTidy, aStoredDictionaryWithANumberIsIgnoredWholeAndAnUnknownKindLosesJustItself)
{
    house.directory.file("Desktop/a.png");
    const std::string key = SettingKeys::organiseOverrides(desktop());
    house.preferences->setTextDictionary(key, {{"image", "Pictures"}, {"nokind", "x"}});
    EXPECT_EQ(model().organisePlanForActiveRealm()->moves[0].destinationFolderName, "Pictures");
    std::ofstream(house.directory.path("app/settings.json"))
        << "{\"" + key + "\":{\"image\":\"Pictures\",\"video\":1}}";
    house.restart();
    model().selectRealm(desktop());
    house.settle();
    EXPECT_EQ(model().organisePlanForActiveRealm()->moves[0].destinationFolderName, "Images");
}

TEST_F(AppModelTidy, aPatrolOffersWhatTheRulesSpeakOfAndFilingIt)
{
    house.directory.file("Desktop/a.png");
    house.directory.file("Desktop/c.txt");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    model().addRealmRule(FileKind::document, "Papers", false, desktop());
    model().saveOrganiseOverride("Elsewhere", FileKind::image, desktop());
    house.patrol();
    ASSERT_TRUE(model().pendingRuleFilingPlan());
    ASSERT_EQ(model().pendingRuleFilingPlan()->moves.size(), 1U);
    EXPECT_EQ(model().pendingRuleFilingPlan()->moves[0].destinationFolderName, "Pictures");
    model().filePendingRuleMatches();
    EXPECT_FALSE(model().pendingRuleFilingPlan());
    EXPECT_TRUE(stands("Desktop/Pictures/a.png"));
    EXPECT_TRUE(stands("Desktop/c.txt"));
    EXPECT_EQ(
        model().lastActionMessage(),
        "Done. 1 files filed into 1 folders. Your realm, tidied \xE2\x80\x94 you did nothing, "
        "which was the plan.");
    house.patrol();
    EXPECT_FALSE(model().pendingRuleFilingPlan()) << "nothing is loose any more";
}

TEST_F(AppModelTidy, aRuleThatWasRemovedIsNotCarriedOutByAnOfferThatStillStands)
{
    house.directory.file("Desktop/a.png");
    house.directory.file("Desktop/c.txt");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    model().addRealmRule(FileKind::document, "Papers", true, desktop());
    house.patrol();
    ASSERT_EQ(model().pendingRuleFilingPlan()->moves.size(), 2U);
    std::vector<RealmRule> rules = model().realmRules(desktop());
    rules.erase(rules.begin());
    model().saveRealmRules(rules, desktop());
    ASSERT_TRUE(model().pendingRuleFilingPlan());
    ASSERT_EQ(model().pendingRuleFilingPlan()->moves.size(), 1U);
    model().filePendingRuleMatches();
    EXPECT_TRUE(stands("Desktop/a.png"));
    EXPECT_TRUE(stands("Desktop/Papers/c.txt"));
}

TEST_F(AppModelTidy, theLastRuleTakesTheOfferWithIt)
{
    house.directory.file("Desktop/a.png");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    house.patrol();
    ASSERT_TRUE(model().pendingRuleFilingPlan());
    const auto message = model().lastActionMessage();
    model().saveRealmRules({}, desktop());
    EXPECT_FALSE(model().pendingRuleFilingPlan());
    model().filePendingRuleMatches();
    EXPECT_TRUE(stands("Desktop/a.png"));
    EXPECT_EQ(model().lastActionMessage(), message);
}

TEST_F(AppModelTidy, aRuleThatNamesAnotherFolderTakesTheOfferOfTheFormerOne)
{
    house.directory.file("Desktop/a.png");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    house.patrol();
    model().saveRealmRules({{UUID::random(), FileKind::image, "Photos", true}}, desktop());
    EXPECT_FALSE(model().pendingRuleFilingPlan());
    EXPECT_FALSE(stands("Desktop/Pictures"));
}

TEST_F(AppModelTidy, aRuleThatIsRemovedWhileAPatrolPlansIsNotOffered)
{
    house.directory.file("Desktop/a.png");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    model().patrolActiveRealm();
    // The walk; the plan is what waits in the pool then.
    ASSERT_TRUE(house.pool->runNext());
    while (house.loop->run()) {
    }
    ASSERT_TRUE(model().isPatrolling());
    ASSERT_EQ(house.pool->count(), 1U);
    model().saveRealmRules({}, desktop());
    house.settle();
    EXPECT_FALSE(model().isPatrolling());
    EXPECT_FALSE(model().pendingRuleFilingPlan());
}

TEST_F(AppModelTidy, selectingAnotherRealmWithdrawsTheOffer)
{
    house.directory.file("Desktop/a.png");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    house.patrol();
    ASSERT_TRUE(model().pendingRuleFilingPlan());
    house.makeRealm("other");
    house.settle();
    EXPECT_FALSE(model().pendingRuleFilingPlan());
}

TEST_F(AppModelTidy, filingWithAccessLostClearsTheOfferAndSaysSo)
{
    house.directory.file("Desktop/a.png");
    model().addRealmRule(FileKind::image, "Pictures", true, desktop());
    house.patrol();
    fs::rename(house.directory.path("Desktop"), house.directory.path("elsewhere"));
    model().filePendingRuleMatches();
    EXPECT_FALSE(model().pendingRuleFilingPlan());
    EXPECT_EQ(model().errorMessage(),
              "Gruk no longer has access to this realm. Grant access again to organise it.");
    EXPECT_TRUE(stands("elsewhere/a.png"));
}

TEST_F(AppModelTidy, savingAShieldClearsAnErrorOfAnotherAction)
{
    model().organise({FileURL::directory(house.directory.path("nowhere")), {}});
    ASSERT_TRUE(model().errorMessage());
    RealmIdentity shield = model().activeRealmIdentity();
    shield.charge = shield.charge == Charge::disk ? Charge::key : Charge::disk;
    int told = 0;
    QObject::connect(&model(), &AppModel::realmIdentityStoreChanged, &model(), [&] { ++told; });
    model().saveShield(shield, desktop().path());
    EXPECT_FALSE(model().errorMessage());
    EXPECT_EQ(model().activeRealmIdentity(), shield);
    model().resetShield(desktop().path());
    EXPECT_EQ(model().activeRealmIdentity(), RealmIdentity::derive(desktop().path()));
    EXPECT_EQ(told, 2);
}

TEST_F(AppModelTidy, aShieldThatCannotBeSavedSaysSo)
{
    // A folder stands where the file belongs.
    house.directory.file("app/identities.json/in the way");
    model().saveShield(RealmIdentity(), desktop().path());
    EXPECT_EQ(model().errorMessage(), "Gruk could not save that shield. Nothing was changed.");
    model().resetShield(desktop().path());
    EXPECT_EQ(model().errorMessage(), "Gruk could not reset that shield. Nothing was changed.");
}

}  // namespace

}  // namespace gruk
