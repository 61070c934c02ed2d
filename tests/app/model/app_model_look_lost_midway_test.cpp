#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_moments.h"

/// The realm goes away while it is looked at: browsed, selected, shown on the map, asked after.
/// What is shown was so once, nothing is said, and nothing is left open.

namespace gruk {

namespace {

using test::LostMoments;
using test::LostScene;

/// Plays it in every way that a realm can go here; false where nothing may be mounted.
[[nodiscard]] bool playAllWays(const LostScene& scene)
{
    const auto play = test::eachMomentOf(scene);
    test::inEachWay(play);
    test::asItIsClosed(play);
    return test::asItsDiskIsPulledOut(play);
}

void expectNothingSaid(LostMoments& house)
{
    EXPECT_EQ(house.midway().message(), house.formerMessage());
    EXPECT_EQ(house.midway().complaint(), "");
    house.expectAtRest();
}

void expectOldSnapshots(LostMoments& house)
{
    EXPECT_EQ(house.stored().size(), LostMoments::formerPatrols);
}

void browseScene(LostMoments& house)
{
    ScanSession& session = house.model().session();
    session.open(house.midway().desktop().appending("one", FileURL::Names::directory));
    house.settle();
    session.goBack();
    house.settle();
    for (const auto& node : session.displayedNodes()) {
        EXPECT_FALSE(node->isComputing()) << node->entry().name();
        if (node->entry().isDirectory && node->aggregate()) {
            EXPECT_TRUE(node->aggregate()->allocated == 4'096
                        || node->aggregate()->restrictedCount == 1)
                << "a size is the folder's, or none, or said not to be all";
        }
    }
    expectNothingSaid(house);
}

TEST(AppModelLookLostMidway, aRealmThatGoesWhileItIsBrowsedShowsNoWrongSize)
{
    if (!playAllWays({browseScene})) {
        GTEST_SKIP() << "nothing may be mounted here: without the disk that is pulled out";
    }
}

void selectScene(LostMoments& house)
{
    house.model().selectRealm(house.midway().desktop());
    house.settle();
    AppModel& model = house.model();
    EXPECT_EQ(model.activeRootURL(), house.midway().desktop()) << "also without access";
    EXPECT_FALSE(model.isLoadingRealmHistory());
    ASSERT_TRUE(model.latestSnapshot());
    EXPECT_EQ(model.latestSnapshot()->entries.size(), LostMoments::entryCount);
    EXPECT_EQ(model.findings().size(), 2U);
    EXPECT_EQ(house.midway().message(), "");
    EXPECT_EQ(house.midway().complaint(), "");
    house.expectAtRest();
    expectOldSnapshots(house);
}

void leave(LostMoments& house)
{
    house.model().showTerritories();
    house.midway().house().settle();
}

TEST(AppModelLookLostMidway, aRealmThatGoesWhileItIsSelectedShowsItsHistory)
{
    if (!playAllWays({selectScene, leave})) {
        GTEST_SKIP() << "nothing may be mounted here: without the disk that is pulled out";
    }
}

void mapScene(LostMoments& house)
{
    house.model().showTerritories();
    house.settle();
    const AppModel& model = house.model();
    EXPECT_FALSE(model.isLoadingTerritories());
    EXPECT_FALSE(model.territoriesAreStale());
    ASSERT_EQ(model.territorySummaries().size(), 1U);
    EXPECT_EQ(model.territorySummaries().front().path, house.midway().desktop().path());
    EXPECT_EQ(model.territorySummaries().front().findingsCount, 2U);
    EXPECT_GT(model.territorySummaries().front().totalBytes, 0);
    expectNothingSaid(house);
}

TEST(AppModelLookLostMidway, aRealmThatGoesWhileTheMapIsLoadedStaysOnIt)
{
    if (!playAllWays({mapScene})) {
        GTEST_SKIP() << "nothing may be mounted here: without the disk that is pulled out";
    }
}

QCoro::Task<> ask(AppModel& model, FileURL folder, std::vector<FileURL> items,
                  std::vector<FileURL>& missing, bool& isDone)
{
    const EmptyReason reason = co_await model.whyEmpty(std::move(folder));
    EXPECT_NE(reason, EmptyReason::isUnreadable) << "gone, refused, or listed after all";
    missing = co_await model.missingItems(std::move(items));
    isDone = true;
}

void askScene(LostMoments& house)
{
    std::vector<FileURL> items;
    for (const ReviewFinding& finding : house.model().findings()) {
        items.push_back(finding.url);
    }
    std::vector<FileURL> missing;
    bool isDone = false;
    ask(house.model(), house.midway().desktop(), items, missing, isDone);
    house.settle();
    EXPECT_TRUE(isDone);
    for (const FileURL& url : missing) {
        EXPECT_FALSE(std::filesystem::exists(url.path())) << url.path();
    }
    house.model().reveal(items);
    ASSERT_EQ(house.midway().house().revealed.size(), 1U);
    EXPECT_EQ(house.midway().house().revealed.front(), items) << "the file manager sees for itself";
    expectNothingSaid(house);
}

TEST(AppModelLookLostMidway, aRealmThatGoesWhileItIsAskedAfterMissesOnlyWhatIsGone)
{
    if (!playAllWays({askScene})) {
        GTEST_SKIP() << "nothing may be mounted here: without the disk that is pulled out";
    }
}

void settingsScene(LostMoments& house)
{
    AppModel& model = house.model();
    const FileURL realm = house.midway().desktop();
    house.settle();
    model.addRealmRule(FileKind::pdf, "Papers", true, realm);
    model.saveOrganiseOverride("Films", FileKind::video, realm);
    model.setCadence(PatrolCadence::weekly, model.grants().front());
    model.saveShield(model.activeRealmIdentity(), realm.path());
    EXPECT_EQ(house.midway().complaint(), "");
    model.resetShield(realm.path());
    EXPECT_EQ(model.realmRules(realm).size(), 2U);
    EXPECT_EQ(model.cadence(model.grants().front()), PatrolCadence::weekly);
    EXPECT_TRUE(house.midway().house().logLines.empty());
    expectNothingSaid(house);

    model.removeRealm(model.grants().front());
    house.settle();
    EXPECT_TRUE(model.grants().empty());
    EXPECT_FALSE(model.activeRootURL());
    house.expectAtRest();
    expectOldSnapshots(house);
    EXPECT_EQ(model.realmRules(realm).size(), 2U);
}

TEST(AppModelLookLostMidway, theSettingsOfARealmThatHasGoneAreKeptAndItCanBeRemoved)
{
    if (!playAllWays({settingsScene})) {
        GTEST_SKIP() << "nothing may be mounted here: without the disk that is pulled out";
    }
}

}  // namespace

}  // namespace gruk
