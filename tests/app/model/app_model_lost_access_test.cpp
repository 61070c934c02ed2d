#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_midway.h"
#include "tests/support/lost_operations.h"
#include "tests/support/lost_ways.h"

/// The realm has gone away: removed, renamed, its disk unmounted, closed. Whatever the user does
/// then is answered by the sentence for it, and no file is lost.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::LostMidway;
using test::LostOperation;
using test::LostWay;

constexpr const char* noAccessToPatrol =
    "Gruk no longer has access to this location. Grant access again to patrol it.";
constexpr const char* changedSinceReview =
    "Gruk stopped because that item changed after you reviewed it. Patrol again before deciding. "
    "Nothing was changed.";

/// Those that change files or look at them, and those that only look, at more.
std::vector<LostOperation> allOperations()
{
    std::vector<LostOperation> all = test::lostOperations();
    const auto nothing = [](LostMidway&) {};
    const auto checkAtRest = [](LostMidway& midway) {
        EXPECT_FALSE(midway.model().isPatrolling());
        EXPECT_EQ(midway.house().stored(midway.desktop()).size(), 1U);
    };
    all.push_back({"patrol", nothing, [](LostMidway& midway) { midway.house().patrol(); },
                   checkAtRest, noAccessToPatrol});
    all.push_back({"automatic patrol", nothing,
                   [](LostMidway& midway) {
                       midway.model().automaticPatrol(midway.model().grants().front());
                       midway.house().settle();
                   },
                   checkAtRest});
    all.push_back({"another start", nothing,
                   [](LostMidway& midway) {
                       midway.house().restart();
                       ASSERT_EQ(midway.model().grants().size(), 1U);
                       EXPECT_FALSE(midway.model().isConnected(midway.model().grants().front()));
                       midway.house().select(midway.desktop());
                       EXPECT_EQ(midway.complaint(), "");
                       EXPECT_EQ(midway.model().findings().size(), 2U) << "its history is shown";
                       midway.house().patrol();
                   },
                   checkAtRest, noAccessToPatrol});
    return all;
}

/// Plays each operation on a house of its own with the realm taken away before it.
void playAll(const test::MakeGoing& makeGoing)
{
    for (const LostOperation& operation : allOperations()) {
        const test::Going going = makeGoing();
        if (going.way.showsAnother && operation.goesByPathFor > 0) {
            continue;
        }
        SCOPED_TRACE(operation.name + ", " + going.way.name);
        LostMidway midway(going.place);
        operation.before(midway);
        midway.model().saveShield(midway.model().activeRealmIdentity(), midway.desktop().path());
        ASSERT_EQ(midway.complaint(), "");
        going.way.goes(midway.desktop().path());
        midway.run(std::numeric_limits<std::size_t>::max(), operation.run, [] {});
        EXPECT_EQ(midway.complaint(), operation.withoutAccess);
        operation.check(midway);
        EXPECT_EQ(midway.files(), midway.filesBefore());
    }
}

TEST(AppModelLostAccess, aRealmThatWasRenamedRemovedOrReplacedIsToldByEachOperation)
{
    test::inEachWay(playAll);
}

TEST(AppModelLostAccess, aDiskThatWasPulledOutIsToldByEachOperation)
{
    if (!test::asItsDiskIsPulledOut(playAll)) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

TEST(AppModelLostAccess, aFileOfAnotherFolderInTheRealmsPlaceNeverGoesToTheTrash)
{
    LostMidway midway;
    const ReviewFinding finding = midway.model().findings().front();
    test::replaced().goes(midway.desktop().path());
    const std::multiset<std::string> files = midway.files();
    const auto itself = TrashService::currentIdentity(finding.url);
    ASSERT_TRUE(itself) << "the other folder has a file of that name";

    midway.model().moveFindingToTrash(finding, *itself);
    EXPECT_EQ(midway.complaint(), changedSinceReview);
    midway.model().moveFindingsToTrash({finding});
    EXPECT_EQ(midway.message(), "Moved 0 of 1 to the Trash \xE2\x80\x94 0 KB taken back. 1 "
                                "couldn't move; nothing was forced.");
    EXPECT_EQ(midway.files(), files);
    EXPECT_TRUE(fs::exists(finding.url.path()));
}

/// The folder is there and is the granted one, so each operation begins, and tells what it met.
bool tellsOfPermissions(const test::TemporaryDirectory&)
{
    LostMidway midway;
    const std::multiset<std::string> files = midway.files();
    const OrganisePlan plan = midway.model().organisePlanForActiveRealm().value();
    const ReviewFinding finding = midway.model().findings().front();
    const FileIdentity identity = TrashService::currentIdentity(finding.url).value();
    const LostWay way = test::closed();
    way.goes(midway.desktop().path());

    midway.house().patrol();
    EXPECT_EQ(midway.complaint(),
              "The patrol could not finish: " + midway.desktop().path() + ": Permission denied");
    midway.model().moveFindingToTrash(finding, identity);
    EXPECT_EQ(midway.complaint(), changedSinceReview);
    midway.model().tidyDesktop();
    EXPECT_EQ(midway.complaint(), "Gruk could not tidy the Desktop. Nothing was changed.");
    midway.model().organise(plan);
    EXPECT_EQ(midway.complaint(), "Gruk could not organise this realm. Nothing was changed.");
    EXPECT_TRUE(midway.model().organisePlanForActiveRealm()->moves.empty());

    way.comesBack(midway.desktop().path());
    EXPECT_EQ(midway.files(), files);
    return !testing::Test::HasFailure();
}

TEST(AppModelLostAccess, aRealmWhosePermissionWasTakenAwayIsToldByEachOperation)
{
    const test::TemporaryDirectory directory;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(tellsOfPermissions, directory));
}

}  // namespace

}  // namespace gruk
