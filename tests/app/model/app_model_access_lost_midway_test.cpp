#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_midway.h"
#include "tests/support/private_mounts.h"
#include "tests/support/pulled_disk.h"

/// The realm goes away while an operation is at work on it, at one of its calls on the disk after
/// the other. What was done until then is told by the sentence for it, and no file is lost.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::Loss;
using test::LostMidway;

/// With its first two calls an operation takes note of which folder stands there. Another one that
/// comes before that, in the moment since the access was opened, cannot be told from it.
constexpr std::size_t whenFolderIsKnown = 2;

void expectAllFiles(LostMidway& midway)
{
    EXPECT_EQ(midway.lost().files(), midway.filesBefore());
}

TEST(AppModelAccessLostMidway, aRealmThatIsRenamedDuringAnOperationLosesNothingAndIsTold)
{
    const auto rename = [](LostMidway& midway) {
        fs::rename(midway.lost().path("Desktop"), midway.lost().path("renamed"));
    };
    test::playLosses([&] { return Loss{{}, 0, rename, expectAllFiles}; });
}

TEST(AppModelAccessLostMidway, aRealmThatIsRemovedDuringAnOperationIsToldAndNotMadeAgain)
{
    const auto remove = [](LostMidway& midway) { fs::remove_all(midway.lost().path("Desktop")); };
    const auto expectTheRest = [](LostMidway& midway) {
        // What had gone to the Trash is there, and what the user removed stays removed.
        EXPECT_EQ(midway.lost().files(), midway.filesAtLoss());
        EXPECT_FALSE(fs::exists(midway.lost().path("Desktop")));
    };
    test::playLosses([&] { return Loss{{}, 0, remove, expectTheRest}; });
}

TEST(AppModelAccessLostMidway, anotherFolderInTheRealmsPlaceDuringAnOperationIsLeftAsItIs)
{
    const auto replace = [](LostMidway& midway) {
        fs::rename(midway.lost().path("Desktop"), midway.lost().path("renamed"));
        midway.lost().house.directory.file("Desktop/a.png", 100);
    };
    const auto expectBoth = [](LostMidway& midway) {
        EXPECT_EQ(midway.lost().files(), midway.filesAtLoss());
        const fs::directory_iterator stranger(midway.lost().path("Desktop"));
        EXPECT_EQ(std::distance(begin(stranger), end(stranger)), 1);
        EXPECT_TRUE(fs::exists(midway.lost().path("Desktop/a.png")));
    };
    test::playLosses([&] { return Loss{{}, whenFolderIsKnown, replace, expectBoth}; });
}

bool losesNothingOfAClosedRealm(const test::TemporaryDirectory&)
{
    const auto close = [](LostMidway& midway) {
        fs::permissions(midway.lost().path("Desktop"), fs::perms::none);
    };
    const auto open = [](LostMidway& midway) {
        fs::permissions(midway.lost().path("Desktop"), fs::perms::owner_all);
        expectAllFiles(midway);
        midway.undoEverything();
        EXPECT_EQ(midway.paths(), midway.originalPaths());
        // From a closed folder not even the program's own unfinished record can be taken away: the
        // next record does that.
        midway.model().organise(midway.model().organisePlanForActiveRealm().value());
        EXPECT_EQ(midway.complaint(), "");
    };
    test::playLosses([&] { return Loss{{}, 0, close, open}; });
    return !testing::Test::HasFailure();
}

TEST(AppModelAccessLostMidway, aRealmWhosePermissionGoesDuringAnOperationLosesNothingAndIsTold)
{
    const test::TemporaryDirectory directory;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(losesNothingOfAClosedRealm, directory));
}

/// A realm on a disk that is pulled out, and later comes back.
Loss pulledOut()
{
    const auto disk = std::make_shared<test::PulledDisk>();
    return {{"disk/Desktop", [disk](const std::string& house) { disk->prepare(house); },
             [disk] { disk->pullOut(); }},
            whenFolderIsKnown,
            [disk](LostMidway&) { disk->pullOut(); },
            [disk](LostMidway& midway) {
                disk->expectBareFolderUntouched();
                disk->plugIn();
                expectAllFiles(midway);
                midway.undoEverything();
                EXPECT_EQ(midway.paths(), midway.originalPaths());
            }};
}

TEST(AppModelAccessLostMidway, aDiskThatIsPulledOutDuringAnOperationLosesNothingAndIsTold)
{
    const auto run = test::runWithPrivateMounts([]() -> std::string {
        test::playLosses(pulledOut);
        return testing::Test::HasFailure() ? "see above" : "";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
    EXPECT_EQ(run.complaint, "");
}

}  // namespace

}  // namespace gruk
