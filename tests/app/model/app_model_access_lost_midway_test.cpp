#include <filesystem>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_midway.h"
#include "tests/support/lost_ways.h"

/// The realm goes away while an operation is at work on it, at one of its steps after the other.
/// What was done until then is told by the sentence for it, and no file is lost.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::Going;
using test::LostMidway;
using test::LostWay;

void expectAllFiles(LostMidway& midway, const LostWay&)
{
    EXPECT_EQ(midway.files(), midway.filesBefore());
}

TEST(AppModelAccessLostMidway, aRealmThatIsRenamedDuringAnOperationLosesNothingAndIsTold)
{
    test::playLosses([] { return Going{test::renamed()}; }, expectAllFiles);
}

TEST(AppModelAccessLostMidway, aRealmThatIsRemovedDuringAnOperationIsToldAndNotMadeAgain)
{
    test::playLosses([] { return Going{test::removed()}; },
                     [](LostMidway& midway, const LostWay&) {
                         // What had gone to the Trash is there, and what the user removed stays
                         // removed.
                         EXPECT_EQ(midway.files(), midway.filesAtLoss());
                         EXPECT_FALSE(fs::exists(midway.desktop().path()));
                     });
}

TEST(AppModelAccessLostMidway, anotherFolderInTheRealmsPlaceDuringAnOperationIsLeftAsItIs)
{
    test::playLosses([] { return Going{test::replaced()}; },
                     [](LostMidway& midway, const LostWay&) {
                         EXPECT_EQ(midway.files(), midway.filesAtLoss());
                         test::expectUntouchedLookAlike(midway.desktop().path());
                     });
}

void expectAllComesBack(LostMidway& midway, const LostWay& way)
{
    way.comesBack(midway.desktop().path());
    expectAllFiles(midway, way);
    midway.undoEverything();
    EXPECT_EQ(midway.paths(), midway.originalPaths());
}

TEST(AppModelAccessLostMidway, aRealmWhosePermissionGoesDuringAnOperationLosesNothingAndIsTold)
{
    const auto afterwards = [](LostMidway& midway, const LostWay& way) {
        expectAllComesBack(midway, way);
        // From a closed folder not even the program's own unfinished record can be taken away: the
        // next record does that.
        midway.model().organise(midway.model().organisePlanForActiveRealm().value());
        EXPECT_EQ(midway.complaint(), "");
    };
    test::asItIsClosed(
        [&](const test::MakeGoing& makeGoing) { test::playLosses(makeGoing, afterwards); });
}

TEST(AppModelAccessLostMidway, aDiskThatIsPulledOutDuringAnOperationLosesNothingAndIsTold)
{
    const bool isPermitted = test::asItsDiskIsPulledOut([](const test::MakeGoing& makeGoing) {
        test::playLosses(makeGoing, [](LostMidway& midway, const LostWay& way) {
            test::expectUntouchedLookAlike(midway.desktop().path());
            expectAllComesBack(midway, way);
        });
    });
    if (!isPermitted) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
}

}  // namespace

}  // namespace gruk
