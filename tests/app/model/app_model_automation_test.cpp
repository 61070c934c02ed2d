#include <chrono>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "app/model/setting_keys.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using test::ModelHouse;
using testing::ElementsAre;
using testing::IsEmpty;

class AppModelAutomation : public testing::Test {
protected:
    [[nodiscard]] AppModel& model() { return *house.model; }

    /// Lets so many minutes pass, each with its tick and all that follows from it.
    void passMinutes(int minutes)
    {
        for (int i = 0; i < minutes; ++i) {
            house.loop->advance(1min);
            house.settle();
        }
    }

    [[nodiscard]] std::size_t patrolsOf(const FileURL& realm) { return house.stored(realm).size(); }

    ModelHouse house;
};

TEST_F(AppModelAutomation, aGrantWithNoCadenceIsNeverPatrolledByItself)
{
    const FileURL realm = house.makeRealm("a");
    house.settle();
    passMinutes(3);
    EXPECT_EQ(patrolsOf(realm), 0U);
    EXPECT_EQ(model().cadence(house.grantOf(realm)), PatrolCadence::off);
}

TEST_F(AppModelAutomation, aDailyRealmIsPatrolledAtTheNextTickAndThenOnceADay)
{
    const FileURL realm = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::daily, house.grantOf(realm));
    EXPECT_EQ(patrolsOf(realm), 0U);
    passMinutes(1);
    EXPECT_EQ(patrolsOf(realm), 1U);
    EXPECT_EQ(model().lastActionMessage(),
              "Automatic patrol of a finished \xE2\x80\x94 nothing needs you.");
    passMinutes(2);
    EXPECT_EQ(patrolsOf(realm), 1U);
    // Snapshots are dated by the system's clock, so that is where a day has to pass.
    house.loop->setNow({Date::now().secondsSince1970 + 86'401});
    passMinutes(1);
    EXPECT_EQ(patrolsOf(realm), 2U);
}

TEST_F(AppModelAutomation, twoRealmsDueAtOnceArePatrolledOnTwoTicksInGrantOrder)
{
    const FileURL a = house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.settle();
    model().setCadence(PatrolCadence::weekly, house.grantOf(b));
    model().setCadence(PatrolCadence::daily, house.grantOf(a));
    passMinutes(1);
    EXPECT_EQ(patrolsOf(a), 1U);
    EXPECT_EQ(patrolsOf(b), 0U);
    passMinutes(1);
    EXPECT_EQ(patrolsOf(b), 1U);
}

TEST_F(AppModelAutomation, aTickDuringAPatrolDoesNothing)
{
    const FileURL a = house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.settle();
    model().setCadence(PatrolCadence::daily, house.grantOf(a));
    model().patrolActiveRealm();
    ASSERT_TRUE(model().isPatrolling());
    house.loop->advance(1min);
    EXPECT_EQ(house.pool->count(), 1U) << "only the patrol that runs";
    house.settle();
    EXPECT_EQ(patrolsOf(a), 0U);
    EXPECT_EQ(patrolsOf(b), 1U);
}

TEST_F(AppModelAutomation, anAutomaticPatrolKeepsTheSelectionAndCountsFindings)
{
    house.directory.file("Home/Downloads/x.pdf", 20'000);
    house.directory.file("Home/Downloads/x (1).pdf", 20'000);
    const FileURL home = house.makeRealm("Home");
    const FileURL other = house.makeRealm("other");
    house.settle();
    model().automaticPatrol(house.grantOf(home));
    house.settle();
    EXPECT_EQ(model().activeRootURL(), other);
    EXPECT_EQ(model().lastActionMessage(),
              "Automatic patrol of Home finished \xE2\x80\x94 1 findings waiting.");
    EXPECT_THAT(model().findings(), IsEmpty());
}

TEST_F(AppModelAutomation, aRealmWithoutAccessIsPassedOverWithoutAWordAndHoldsUpThoseBehindIt)
{
    const FileURL a = house.makeRealm("a");
    const FileURL b = house.makeRealm("b");
    house.settle();
    model().setCadence(PatrolCadence::daily, house.grantOf(a));
    model().setCadence(PatrolCadence::daily, house.grantOf(b));
    fs::rename(house.directory.path("a"), house.directory.path("gone"));
    passMinutes(2);
    EXPECT_FALSE(model().errorMessage());
    EXPECT_FALSE(model().lastActionMessage());
    EXPECT_EQ(patrolsOf(b), 0U);
    fs::rename(house.directory.path("gone"), house.directory.path("a"));
    passMinutes(2);
    EXPECT_EQ(patrolsOf(a), 1U);
    EXPECT_EQ(patrolsOf(b), 1U);
}

TEST_F(AppModelAutomation, anAutomaticPatrolThatFailsLeavesTheFailureAndAddsNothing)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    house.directory.fileWith("app/snapshots.json", "damaged");
    model().automaticPatrol(house.grantOf(a));
    house.settle();
    EXPECT_THAT(model().errorMessage().value_or(""),
                testing::StartsWith("The patrol could not finish: "));
    EXPECT_FALSE(model().lastActionMessage());
}

TEST_F(AppModelAutomation, aStoreThatCannotBeReadMakesARealmDueAtOnce)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::weekly, house.grantOf(a));
    house.directory.fileWith("app/snapshots.json", "damaged");
    passMinutes(1);
    EXPECT_TRUE(model().errorMessage()) << "it was tried";
}

TEST_F(AppModelAutomation, aGuardedRealmIsPatrolledWhenItHasBeenQuietForAWhile)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    ASSERT_EQ(house.streams.size(), 1U);
    house.touch(a.path());
    house.loop->advance(60s);
    house.touch(a.path());
    house.loop->advance(89s);
    house.settle();
    EXPECT_EQ(patrolsOf(a), 0U);
    house.loop->advance(1s);
    house.settle();
    EXPECT_EQ(patrolsOf(a), 1U);
}

TEST_F(AppModelAutomation, settingStandGuardTwiceReplacesTheWatcher)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    EXPECT_EQ(house.streams.size(), 1U);
}

TEST_F(AppModelAutomation, settingAnotherCadenceStopsTheWatcherAtOnce)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    house.touch(a.path());
    model().setCadence(PatrolCadence::daily, house.grantOf(a));
    EXPECT_THAT(house.streams, IsEmpty());
    EXPECT_EQ(model().cadence(house.grantOf(a)), PatrolCadence::daily);
}

TEST_F(AppModelAutomation, aRemovedRealmsWatcherIsGone)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    house.touch(a.path());
    model().removeRealm(house.grantOf(a));
    EXPECT_THAT(house.streams, IsEmpty());
    house.loop->advance(100s);
    house.settle();
    EXPECT_EQ(patrolsOf(a), 0U);
}

TEST_F(AppModelAutomation, afterARestartAGuardedRealmHasNoWatcherUntilItIsSetAgain)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    house.restart();
    EXPECT_EQ(model().cadence(house.grantOf(a)), PatrolCadence::standGuard);
    EXPECT_THAT(house.streams, IsEmpty());
    passMinutes(3);
    EXPECT_EQ(patrolsOf(a), 0U);
}

TEST_F(AppModelAutomation, aWatcherThatSettlesDuringAPatrolIsDropped)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::standGuard, house.grantOf(a));
    house.touch(a.path());
    model().patrolActiveRealm();
    house.loop->advance(90s);
    house.settle();
    EXPECT_EQ(patrolsOf(a), 1U) << "the one that was asked for";
}

TEST_F(AppModelAutomation, aCadenceForAGrantThatIsGoneIsRefused)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    const Grant gone = house.grantOf(a);
    model().removeRealm(gone);
    model().loadTerritories();
    house.settle();
    model().setCadence(PatrolCadence::standGuard, gone);
    EXPECT_THAT(house.streams, IsEmpty()) << "nobody could end that guard";
    EXPECT_EQ(model().cadence(gone), PatrolCadence::off);
    EXPECT_FALSE(model().territoriesAreStale());
}

TEST_F(AppModelAutomation, anUnknownOrForeignCadenceReadsAsOff)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    house.preferences->setText(SettingKeys::cadence(house.grantOf(a)), "Daily");
    EXPECT_EQ(model().cadence(house.grantOf(a)), PatrolCadence::off);
    house.preferences->setBoolean(SettingKeys::cadence(house.grantOf(a)), true);
    EXPECT_EQ(model().cadence(house.grantOf(a)), PatrolCadence::off);
}

TEST_F(AppModelAutomation, regrantingAFolderDropsItsCadenceAndKeepsItsRules)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    model().setCadence(PatrolCadence::daily, house.grantOf(a));
    model().addRealmRule(FileKind::pdf, "P", true, a);
    model().removeRealm(house.grantOf(a));
    house.makeRealm("a");
    house.settle();
    EXPECT_EQ(model().cadence(house.grantOf(a)), PatrolCadence::off);
    EXPECT_EQ(model().realmRules(a).size(), 1U);
}

TEST_F(AppModelAutomation, theTwentyFirstRuleIsDroppedWithoutAWord)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    for (int i = 0; i < 21; ++i) {
        model().addRealmRule(FileKind::pdf, std::to_string(i), false, a);
    }
    const std::vector<RealmRule> rules = model().realmRules(a);
    ASSERT_EQ(rules.size(), 20U);
    EXPECT_EQ(rules.back().destinationFolderName, "19");
    EXPECT_FALSE(model().lastActionMessage());
    EXPECT_FALSE(model().errorMessage());
}

TEST_F(AppModelAutomation, corruptedRulesReadAsNoneAndLoseNothingUntilTheNextSave)
{
    const FileURL a = house.makeRealm("a");
    house.settle();
    house.preferences->setData(SettingKeys::realmRules(a), "[{\"id\":");
    EXPECT_THAT(model().realmRules(a), IsEmpty());
    EXPECT_EQ(house.preferences->data(SettingKeys::realmRules(a)), "[{\"id\":");
    model().addRealmRule(FileKind::pdf, "P", true, a);
    EXPECT_EQ(model().realmRules(a).size(), 1U);
}

TEST_F(AppModelAutomation, launchAtLoginIsWhatTheLoginItemSays)
{
    EXPECT_FALSE(model().launchAtLogin());
    model().setLaunchAtLogin(true);
    EXPECT_TRUE(model().launchAtLogin());
    house.restart();
    EXPECT_TRUE(model().launchAtLogin());
    house.loginItemRefusal = "no";
    model().setLaunchAtLogin(false);
    EXPECT_TRUE(model().launchAtLogin());
    EXPECT_THAT(house.logLines, ElementsAre("Gruk: failed to unregister launch-at-login: no"));
    EXPECT_FALSE(model().errorMessage());
}

TEST(AppModelAutomationAtScale, aThousandGrantsCostOneLookAtTheStoreAndNotOnTheMainThread)
{
    constexpr int count = 1'000;
    ModelHouse house([](ModelCollaborators& all) {
        BookmarkCalls calls;
        calls.make = [](const FileURL& url) { return url.path(); };
        calls.resolve = [](std::string_view bookmark) { return FileURL::directory(bookmark); };
        calls.startAccessing = [](const FileURL&) { return true; };
        calls.stopAccessing = [](const FileURL&) {};
        const FileURL file(
            all.realmIdentityStore->fileURL().deletingLastPathComponent().appending("many.json"));
        all.grantStore = std::make_shared<GrantStore>(file, calls);
        for (int i = 0; i < count; ++i) {
            all.grantStore->addGrant(FileURL::directory("/realm/" + std::to_string(i)));
        }
    });
    ASSERT_EQ(house.model->grants().size(), std::size_t{count});
    house.model->setCadence(PatrolCadence::weekly, house.model->grants().back());
    ASSERT_EQ(house.pool->count(), 0U);
    house.loop->advance(1min);
    EXPECT_EQ(house.pool->count(), 1U) << "one look for all of them";
    house.pool->runNext();
    house.loop->run();
    EXPECT_EQ(house.model->patrollingRootURL(), FileURL::directory("/realm/999"));
    house.settle();
}

}  // namespace

}  // namespace gruk
