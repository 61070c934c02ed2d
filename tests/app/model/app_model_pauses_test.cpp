#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "core/actions/grant_store.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

using namespace std::chrono_literals;
using test::ModelHouse;

/// Patrols that nobody asked for and that are stopped, or fail.
class AppModelPauses : public testing::Test {
protected:
    AppModelPauses() { house.settle(); }

    [[nodiscard]] AppModel& model() { return *house.model; }

    void setCadence(PatrolCadence cadence) { model().setCadence(cadence, house.grantOf(realm)); }

    /// Lets a minute pass; returns whether a patrol begins in it, which is left to be done.
    bool beginsOne()
    {
        house.loop->advance(1min);
        while (!model().isPatrolling() && (house.loop->run() || house.pool->runNext())) {
        }
        return model().isPatrolling();
    }

    /// Lets minutes pass until one begins; returns how many have passed.
    int minutesToTheNext(int most)
    {
        for (int minutes = 1; minutes <= most; ++minutes) {
            if (beginsOne()) {
                return minutes;
            }
        }
        return -1;
    }

    void stop()
    {
        ASSERT_TRUE(model().isPatrolling());
        model().cancelPatrol();
        house.settle();
        ASSERT_EQ(model().lastActionMessage(), ModelCopy::patrolStopped);
    }

    void damageStore() { house.directory.fileWith("app/snapshots.json", "damaged"); }

    /// Lets the one that has begun fail.
    void fail()
    {
        ASSERT_TRUE(model().isPatrolling());
        house.settle();
        ASSERT_TRUE(model().errorMessage());
    }

    void changeAndLetItGoQuiet()
    {
        house.touch(realm.path());
        house.loop->advance(90s);
        while (!model().isPatrolling() && (house.loop->run() || house.pool->runNext())) {
        }
    }

    ModelHouse house;
    FileURL realm = house.makeRealm("a");
};

TEST_F(AppModelPauses, aDailyPatrolThatIsStoppedCountsAsThatDays)
{
    setCadence(PatrolCadence::daily);
    ASSERT_TRUE(beginsOne());
    stop();
    EXPECT_EQ(minutesToTheNext(24 * 60 + 5), 24 * 60);
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 1U);
    EXPECT_FALSE(house.preferences->text(SettingKeys::patrolStopped(house.grantOf(realm))));
}

TEST_F(AppModelPauses, aStopIsRememberedOverARestart)
{
    setCadence(PatrolCadence::daily);
    ASSERT_TRUE(beginsOne());
    stop();
    EXPECT_EQ(minutesToTheNext(10 * 60), -1);
    house.restart();
    EXPECT_EQ(minutesToTheNext(24 * 60), 14 * 60);
}

TEST_F(AppModelPauses, aPatrolThatWasAskedForAndStoppedDoesNotBeginAgainByTheClock)
{
    setCadence(PatrolCadence::daily);
    model().patrolActiveRealm();
    stop();
    EXPECT_EQ(minutesToTheNext(30), -1);
}

TEST_F(AppModelPauses, aPatrolThatWasAskedForAndStoppedDoesNotPauseTheGuard)
{
    setCadence(PatrolCadence::standGuard);
    model().patrolActiveRealm();
    stop();
    changeAndLetItGoQuiet();
    EXPECT_TRUE(model().isPatrolling());
}

TEST_F(AppModelPauses, settingTheCadenceAnewEndsThePause)
{
    setCadence(PatrolCadence::daily);
    ASSERT_TRUE(beginsOne());
    stop();
    setCadence(PatrolCadence::daily);
    EXPECT_TRUE(beginsOne());
    house.settle();
    house.restart();
    EXPECT_EQ(house.stored(realm).size(), 1U);
}

TEST_F(AppModelPauses, failuresWaitFiveFifteenAndSixtyMinutesAndThenTheCadence)
{
    setCadence(PatrolCadence::daily);
    damageStore();
    ASSERT_TRUE(beginsOne());
    for (const int minutes : {5, 15, 60, 24 * 60}) {
        fail();
        EXPECT_EQ(minutesToTheNext(24 * 60 + 5), minutes);
    }
}

TEST_F(AppModelPauses, aSuccessBeginsTheCountOfFailuresAnew)
{
    setCadence(PatrolCadence::daily);
    damageStore();
    ASSERT_TRUE(beginsOne());
    fail();
    ASSERT_EQ(minutesToTheNext(20), 5);
    fail();
    std::filesystem::remove(house.directory.path("app/snapshots.json"));
    ASSERT_EQ(minutesToTheNext(20), 15);
    house.settle();
    ASSERT_EQ(house.stored(realm).size(), 1U);
    damageStore();
    ASSERT_TRUE(beginsOne()) << "it was never patrolled, as far as anybody can tell";
    fail();
    EXPECT_EQ(minutesToTheNext(20), 5);
}

TEST_F(AppModelPauses, aPatrolThatSucceedsWhenAskedForEndsThePause)
{
    setCadence(PatrolCadence::standGuard);
    changeAndLetItGoQuiet();
    stop();
    changeAndLetItGoQuiet();
    EXPECT_FALSE(model().isPatrolling()) << "for a day";
    house.patrol();
    ASSERT_EQ(house.stored(realm).size(), 1U);
    EXPECT_EQ(minutesToTheNext(5), -1) << "what had changed was seen";
    changeAndLetItGoQuiet();
    EXPECT_TRUE(model().isPatrolling());
}

TEST_F(AppModelPauses, aGuardThatWasStoppedPatrolsADayLaterWhatHasChanged)
{
    setCadence(PatrolCadence::standGuard);
    changeAndLetItGoQuiet();
    stop();
    changeAndLetItGoQuiet();
    EXPECT_FALSE(model().isPatrolling());
    const int minutes = minutesToTheNext(24 * 60 + 5);
    EXPECT_GE(minutes, 24 * 60 - 2);
    EXPECT_LE(minutes, 24 * 60);
}

TEST_F(AppModelPauses, aGuardThatFailsWaitsTooAndTriesAgainWithoutAnotherChange)
{
    setCadence(PatrolCadence::standGuard);
    damageStore();
    changeAndLetItGoQuiet();
    fail();
    changeAndLetItGoQuiet();
    EXPECT_FALSE(model().isPatrolling()) << "a realm in use would else fail all the time";
    const int minutes = minutesToTheNext(20);
    EXPECT_GE(minutes, 3);
    EXPECT_LE(minutes, 5);
    std::filesystem::remove(house.directory.path("app/snapshots.json"));
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), 1U);
    EXPECT_EQ(minutesToTheNext(60), -1);
}

TEST_F(AppModelPauses, aRealmThatWaitsDoesNotHoldUpThoseBehindIt)
{
    const FileURL other = house.makeRealm("b");
    house.settle();
    setCadence(PatrolCadence::daily);
    model().setCadence(PatrolCadence::daily, house.grantOf(other));
    ASSERT_TRUE(beginsOne());
    ASSERT_EQ(model().patrollingRootURL(), realm);
    stop();
    ASSERT_TRUE(beginsOne());
    EXPECT_EQ(model().patrollingRootURL(), other);
}

TEST_F(AppModelPauses, aGuardThatTheSystemRefusedBeginsWithinAMinute)
{
    bool isRefused = true;
    ModelHouse refusing([&](ModelCollaborators& all) {
        all.eventStreams = [&isRefused, streams = all.eventStreams](
                               const FileURL& place,
                               std::function<void()> onEvent) -> std::unique_ptr<FileEventStream> {
            return isRefused ? nullptr : streams(place, std::move(onEvent));
        };
    });
    const FileURL place = refusing.makeRealm("a");
    refusing.settle();
    refusing.model->setCadence(PatrolCadence::standGuard, refusing.grantOf(place));
    refusing.loop->advance(1min);
    EXPECT_TRUE(refusing.streams.empty());
    isRefused = false;
    refusing.loop->advance(1min);
    EXPECT_EQ(refusing.streams.size(), 1U);
    refusing.loop->advance(1min);
    EXPECT_EQ(refusing.streams.size(), 1U);
}

TEST(AppModelGuards, aRealmThatIsCalledSomethingElseNowIsGuardedThere)
{
    std::shared_ptr<GrantStore> grants;
    ModelHouse house([&](ModelCollaborators& all) { grants = all.grantStore; });
    const Grant former = house.grantOf(house.makeRealm("a"));
    house.settle();
    house.model->setCadence(PatrolCadence::standGuard, former);
    const FileURL place = FileURL::directory(house.directory.path("b"));
    std::filesystem::rename(former.path, place.path());
    grants->moveGrant(former.id, place, grants->bookmarkAt(former, place));
    house.makeRealm("another that is granted");
    ASSERT_EQ(house.grantOf(place).id, former.id);
    EXPECT_FALSE(house.streams.contains(former.path));
    EXPECT_EQ(house.streams.count(place.path()), 1U);
    house.settle();
    house.touch(place.path());
    house.loop->advance(std::chrono::seconds(90));
    house.settle();
    EXPECT_EQ(house.stored(place).size(), 1U);
}

TEST(AppModelGuards, aGuardIsNotBegunAnewForAnotherGrant)
{
    int begun = 0;
    ModelHouse house([&](ModelCollaborators& all) {
        all.eventStreams = [&begun, streams = all.eventStreams](const FileURL& place,
                                                                std::function<void()> onEvent) {
            ++begun;
            return streams(place, std::move(onEvent));
        };
    });
    const FileURL realm = house.makeRealm("a");
    house.model->setCadence(PatrolCadence::standGuard, house.grantOf(realm));
    house.makeRealm("b");
    house.model->removeRealm(house.grantOf(FileURL::directory(house.directory.path("b"))));
    EXPECT_EQ(begun, 1) << "what had changed would be forgotten";
}

}  // namespace

}  // namespace gruk
