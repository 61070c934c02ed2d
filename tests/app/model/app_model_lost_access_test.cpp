#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "core/patrol/metadata_reader.h"
#include "tests/support/lost_access.h"
#include "tests/support/model_house.h"
#include "tests/support/private_mounts.h"

/// The realm goes away in the middle: removed, renamed, its disk unmounted. Whatever the user was
/// about to do is answered by the sentence for it, and no file is lost.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::LostAccess;
using test::ModelHouse;

constexpr const char* noAccessToPatrol =
    "Gruk no longer has access to this location. Grant access again to patrol it.";
constexpr const char* noAccessToDesktop =
    "Gruk no longer has access to the Desktop. Grant access again to tidy it.";
constexpr const char* noAccessToOrganise =
    "Gruk no longer has access to this realm. Grant access again to organise it.";
constexpr const char* changedSinceReview =
    "Gruk stopped because that item changed after you reviewed it. Patrol again before deciding. "
    "Nothing was changed.";
constexpr const char* notRestored =
    "Some items could not be restored because their original path is occupied or the Trash item is "
    "gone.";

struct Operation {
    std::string name;
    /// Done while all is well.
    std::function<void(LostAccess&)> before;
    /// Done when the realm has gone.
    std::function<void(LostAccess&)> after;
    /// The sentence; none where nothing is said.
    std::optional<std::string> complaint;
};

std::vector<Operation> operations()
{
    const auto nothing = [](LostAccess&) {};
    const auto finding = std::make_shared<ReviewFinding>();
    const auto identity = std::make_shared<FileIdentity>();
    const auto plan = std::make_shared<OrganisePlan>();
    return {
        {"patrol", nothing, [](LostAccess& lost) { lost.house.patrol(); }, noAccessToPatrol},
        {"automatic patrol", nothing,
         [](LostAccess& lost) {
             lost.model().automaticPatrol(lost.model().grants().front());
             lost.house.settle();
         },
         std::nullopt},
        {"trash of one",
         [=](LostAccess& lost) {
             *finding = lost.model().findings().front();
             *identity = TrashService::currentIdentity(finding->url).value();
         },
         [=](LostAccess& lost) { lost.model().moveFindingToTrash(*finding, *identity); },
         changedSinceReview},
        {"trash of a batch", nothing,
         [](LostAccess& lost) {
             lost.model().moveFindingsToTrash(std::vector<ReviewFinding>(lost.model().findings()));
             EXPECT_EQ(lost.model().lastActionMessage(),
                       "Moved 0 of 1 to the Trash \xE2\x80\x94 0 KB taken back. 1 couldn't move; "
                       "nothing was forced.");
         },
         std::nullopt},
        {"undo of trash",
         [](LostAccess& lost) {
             lost.model().moveFindingsToTrash(std::vector<ReviewFinding>(lost.model().findings()));
         },
         [](LostAccess& lost) {
             lost.model().undoLastTrash();
             EXPECT_TRUE(lost.model().lastTrashOperation()) << "it can be tried again";
         },
         notRestored},
        {"tidy", nothing, [](LostAccess& lost) { lost.model().tidyDesktop(); }, noAccessToDesktop},
        {"undo of tidy", [](LostAccess& lost) { lost.model().tidyDesktop(); },
         [](LostAccess& lost) {
             lost.model().undoLastStash();
             EXPECT_TRUE(lost.model().lastStashOperation());
         },
         std::nullopt},
        {"plan", nothing,
         [](LostAccess& lost) {
             EXPECT_FALSE(lost.model().organisePlanForActiveRealm());
             EXPECT_FALSE(lost.model().organisePlanForDesktop());
         },
         std::nullopt},
        {"organise",
         [=](LostAccess& lost) { *plan = lost.model().organisePlanForActiveRealm().value(); },
         [=](LostAccess& lost) { lost.model().organise(*plan); }, noAccessToOrganise},
        {"undo of organise",
         [](LostAccess& lost) {
             lost.model().organise(lost.model().organisePlanForActiveRealm().value());
         },
         [](LostAccess& lost) {
             lost.model().undoLastOrganise();
             EXPECT_TRUE(lost.model().lastOrganiseOperation());
         },
         std::nullopt},
        {"filing", nothing,
         [](LostAccess& lost) {
             lost.model().filePendingRuleMatches();
             EXPECT_FALSE(lost.model().pendingRuleFilingPlan());
         },
         noAccessToOrganise},
    };
}

/// Plays each operation, but for the one named, on a house of its own with the realm taken away
/// before it.
void playAll(const std::function<void(LostAccess&)>& takeAway, const std::string& but = {})
{
    for (const Operation& operation : operations()) {
        if (operation.name == but) {
            continue;
        }
        SCOPED_TRACE(operation.name);
        LostAccess lost;
        operation.before(lost);
        lost.model().saveShield(lost.model().activeRealmIdentity(), lost.desktop.path());
        ASSERT_FALSE(lost.model().errorMessage());
        takeAway(lost);
        const std::multiset<std::string> files = lost.files();
        operation.after(lost);
        EXPECT_EQ(lost.model().errorMessage(), operation.complaint);
        EXPECT_EQ(lost.files(), files);
        EXPECT_FALSE(lost.model().isPatrolling());
    }
}

TEST(AppModelLostAccess, aRealmThatWasRenamedIsToldByEachOperation)
{
    playAll([](LostAccess& lost) { fs::rename(lost.path("Desktop"), lost.path("renamed")); });
}

TEST(AppModelLostAccess, aRealmThatWasRemovedIsToldByEachOperation)
{
    playAll([](LostAccess& lost) { fs::remove_all(lost.path("Desktop")); });
}

TEST(AppModelLostAccess, anotherFolderAtTheRealmsPlaceIsNotTakenForIt)
{
    // What comes back from the Trash goes to its old path, whichever folder is there now.
    playAll(
        [](LostAccess& lost) {
            fs::rename(lost.path("Desktop"), lost.path("renamed"));
            fs::create_directory(lost.path("Desktop"));
        },
        "undo of trash");
}

/// The folder is there and is the granted one, so each operation begins, and tells what it met.
bool tellsOfPermissions(const test::TemporaryDirectory&)
{
    LostAccess lost;
    const std::multiset<std::string> files = lost.files();
    const OrganisePlan plan = lost.model().organisePlanForActiveRealm().value();
    const ReviewFinding finding = lost.model().findings().front();
    const FileIdentity identity = TrashService::currentIdentity(finding.url).value();
    fs::permissions(lost.path("Desktop"), fs::perms::none);

    const auto complaint = [&] { return lost.model().errorMessage().value_or(""); };
    lost.house.patrol();
    EXPECT_TRUE(complaint().starts_with("The patrol could not finish: ")) << complaint();
    lost.model().moveFindingToTrash(finding, identity);
    EXPECT_EQ(complaint(), changedSinceReview);
    lost.model().tidyDesktop();
    EXPECT_EQ(complaint(), "Gruk could not tidy the Desktop. Nothing was changed.");
    lost.model().organise(plan);
    EXPECT_EQ(complaint(), "Gruk could not organise this realm. Nothing was changed.");
    EXPECT_TRUE(lost.model().organisePlanForActiveRealm()->moves.empty());

    fs::permissions(lost.path("Desktop"), fs::perms::owner_all);
    EXPECT_EQ(lost.files(), files);
    return !testing::Test::HasFailure();
}

TEST(AppModelLostAccess, aRealmWhosePermissionWasTakenAwayIsToldByEachOperation)
{
    const test::TemporaryDirectory directory;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(tellsOfPermissions, directory));
}

TEST(AppModelLostAccess, aDiskThatIsUnmountedIsNotPatrolledAsAnEmptyRealm)
{
    const auto run = test::runWithPrivateMounts([]() -> std::string {
        ModelHouse house;
        const std::string place = house.directory.folder("disk");
        test::mountMemory(place);
        house.makePatrolledRealm("disk");
        const FileURL realm = FileURL::directory(place);
        if (house.stored(realm).size() != 1) {
            return "the disk was not patrolled";
        }
        test::unmount(place);
        house.patrol();
        return house.model->errorMessage() == noAccessToPatrol && house.stored(realm).size() == 1
                   ? ""
                   : "the bare mount point was taken for the disk";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
    EXPECT_EQ(run.complaint, "");
}

/// What happens to the realm while its second folder is read.
void patrolWhile(const std::function<void(const ModelHouse&)>& happens,
                 const std::function<void(ModelHouse&, const FileURL&)>& check)
{
    int folders = 0;
    ModelHouse* itself = nullptr;
    ModelHouse house(std::make_shared<SnapshotScanner>([&](const FileURL& folder) {
        if (++folders == 3) {
            happens(*itself);
        }
        return MetadataReader::entries(folder);
    }));
    itself = &house;
    house.directory.file("realm/one/file", 100);
    house.directory.file("realm/two/file", 100);
    const FileURL realm = house.makePatrolledRealm("realm");
    check(house, realm);
    EXPECT_FALSE(house.model->isPatrolling());
}

TEST(AppModelLostAccess, aRealmRemovedInTheMiddleOfAPatrolEndsItInWordsOrWithAnIssue)
{
    patrolWhile([](const ModelHouse& house) { fs::remove_all(house.directory.path("realm")); },
                [](ModelHouse& house, const FileURL& realm) {
                    // What was seen until then is a snapshot with its issues, or the patrol failed.
                    const bool isTold = house.model->errorMessage().has_value()
                                        || house.model->lastActionMessage().has_value();
                    EXPECT_TRUE(isTold);
                    for (const ScanSnapshot& stored : house.stored(realm)) {
                        EXPECT_TRUE(stored.isComplete);
                        EXPECT_FALSE(stored.issues.empty());
                    }
                });
}

}  // namespace

}  // namespace gruk
