#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/platform/events/watched_tree.h"
#include "tests/support/private_mounts.h"

namespace gruk {

namespace {

using test::WatchedTree;

class FileEventTreeMountsTest : public test::FileEventTreeFixture {};

TEST_F(FileEventTreeMountsTest, aRootThatIsMountedInItselfIsWatchedOnceAndStaysTheRoot)
{
    for (const bool isMovedAway : {false, true}) {
        disk.folder("realm/inner");
        disk.folder("realm/folder");
        const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
            test::mountAgain(realm, path("inner"));
            WatchedTree watched = watch();
            watched.settle();
            if (watched.tree.watchCount() != 2) {
                return "watches: " + std::to_string(watched.tree.watchCount());
            }
            test::detach(path("inner"));
            if (isMovedAway) {
                rename(path("inner"), disk.path("elsewhere"));
            } else {
                std::filesystem::remove(path("inner"));
            }
            watched.settle();
            const std::string name = isMovedAway ? "moved" : "removed";
            if (watched.tree.isGone() || !watched.hears(path(name))
                || !watched.hears(path("folder/" + name))) {
                return "the root is not watched any more";
            }
            return "";
        });
        if (!run.isPermitted) {
            GTEST_SKIP() << "this process may not mount anything";
        }
        EXPECT_EQ(run.complaint, "") << isMovedAway;
    }
}

}  // namespace

}  // namespace gruk
