#include <chrono>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_moments.h"

/// The realm goes away while it is patrolled, at one moment after the other. No snapshot tells of
/// anything but the realm as it was, and nothing is left open.

namespace gruk {

namespace {

using namespace std::chrono_literals;
using test::eachMomentOf;
using test::LostMoments;
using test::Walk;

const std::vector<Walk> bothWalks{Walk::live, Walk::byPath};

void patrolScene(LostMoments& house)
{
    house.model().patrolActiveRealm();
    house.settle();
    house.expectAtRest();
    house.expectPatrolTold("Patrol of Desktop complete. No size changes since the last map.",
                           "Gruk no longer has access to this location. Grant access again to "
                           "patrol it.");
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesDuringAPatrolIsNeverStoredAsWhatIsLeft)
{
    test::inEachWay(eachMomentOf({patrolScene}, bothWalks));
}

TEST(AppModelPatrolLostMidway, aRealmThatIsClosedDuringAPatrolIsToldOfInWordsOrByItsFolders)
{
    test::asItIsClosed(eachMomentOf({patrolScene}, bothWalks));
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutDuringAPatrolIsNeverStoredAsItsMountPoint)
{
    if (!test::asItsDiskIsPulledOut(eachMomentOf({patrolScene}, bothWalks))) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

/// Unlike a patrol that was asked for, it leaves what was told before, and says nothing without
/// access.
void expectAutomaticPatrolTold(LostMoments& house)
{
    house.expectAtRest();
    house.expectPatrolTold("Automatic patrol of Desktop finished \xE2\x80\x94 2 findings waiting.",
                           "");
    if (house.stored().size() == LostMoments::formerPatrols) {
        EXPECT_EQ(house.midway().message(), house.formerMessage());
    }
}

void automaticPatrolScene(LostMoments& house)
{
    house.model().automaticPatrol(house.model().grants().front());
    house.settle();
    expectAutomaticPatrolTold(house);
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesDuringAnAutomaticPatrolLeavesTheFailureText)
{
    test::inEachWay(eachMomentOf({automaticPatrolScene}, bothWalks));
}

TEST(AppModelPatrolLostMidway, aRealmThatIsClosedDuringAnAutomaticPatrolLeavesTheFailureText)
{
    test::asItIsClosed(eachMomentOf({automaticPatrolScene}, bothWalks));
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutDuringAnAutomaticPatrolLeavesTheFailureText)
{
    if (!test::asItsDiskIsPulledOut(eachMomentOf({automaticPatrolScene}, bothWalks))) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

void dueScene(LostMoments& house)
{
    house.model().setCadence(PatrolCadence::daily, house.model().grants().front());
    house.midway().house().loop->setNow({Date::now().secondsSince1970 + 86'401});
    house.midway().house().loop->advance(1min);
    house.settle();
    expectAutomaticPatrolTold(house);
    EXPECT_EQ(house.model().cadence(house.model().grants().front()), PatrolCadence::daily);
}

void guardScene(LostMoments& house)
{
    house.model().setCadence(PatrolCadence::standGuard, house.model().grants().front());
    house.midway().house().touch(house.midway().desktop().path());
    house.midway().house().loop->advance(90s);
    house.settle();
    expectAutomaticPatrolTold(house);
    EXPECT_EQ(house.midway().house().streams.size(), 1U) << "the guard stands until it is ended";
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesWhenItIsDueOrGuardedIsPassedOverOrTold)
{
    for (const auto& scene : {dueScene, guardScene}) {
        test::inEachWay(eachMomentOf({scene}));
        test::asItIsClosed(eachMomentOf({scene}));
    }
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutWhenItIsDueOrGuardedIsPassedOverOrTold)
{
    for (const auto& scene : {dueScene, guardScene}) {
        if (!test::asItsDiskIsPulledOut(eachMomentOf({scene}))) {
            GTEST_SKIP() << "nothing may be mounted here";
        }
    }
}

/// A second realm, which stays; the one that goes is selected.
void grantAnotherRealm(LostMoments& house)
{
    test::ModelHouse& rooms = house.midway().house();
    rooms.makePatrolledRealm("other");
    rooms.select(house.midway().desktop());
}

void patrolOfAllScene(LostMoments& house)
{
    house.model().patrolAllRealms();
    house.settle();
    house.expectAtRest();
    const bool isSkipped = house.midway().message() != "Patrolled 2 realm(s).";
    if (isSkipped) {
        EXPECT_EQ(house.midway().message(), "Patrolled 1 realm(s). 1 disconnected realm(s) skipped "
                                            "\xE2\x80\x94 regrant them from the sidebar.");
        EXPECT_EQ(house.stored().size(), LostMoments::formerPatrols);
    }
    EXPECT_EQ(house.midway().complaint(), "") << "the last patrol went well";
    EXPECT_EQ(house.midway()
                  .house()
                  .stored(FileURL::directory(house.model().grants().back().path))
                  .size(),
              2U);
    for (const ScanSnapshot& snapshot : house.stored()) {
        EXPECT_TRUE(snapshot.entries.size() + snapshot.issues.size() == LostMoments::entryCount
                    || snapshot.id == house.stored().front().id);
    }
}

TEST(AppModelPatrolLostMidway, aRealmThatGoesDuringAPatrolOfAllIsCountedAndTheOthersArePatrolled)
{
    test::inEachWay(eachMomentOf({patrolOfAllScene, grantAnotherRealm}));
    test::asItIsClosed(eachMomentOf({patrolOfAllScene, grantAnotherRealm}));
}

TEST(AppModelPatrolLostMidway, aDiskThatIsPulledOutDuringAPatrolOfAllLeavesTheOthersAlone)
{
    if (!test::asItsDiskIsPulledOut(eachMomentOf({patrolOfAllScene, grantAnotherRealm}))) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

}  // namespace

}  // namespace gruk
