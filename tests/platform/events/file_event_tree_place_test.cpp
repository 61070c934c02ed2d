#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/linux/file_event_tree.h"
#include "tests/platform/events/watched_tree.h"
#include "tests/support/private_mounts.h"

namespace gruk {

namespace {

using test::WatchedTree;

/// Where the root stands, and what volumes come and go around it.
class FileEventTreePlaceTest : public test::FileEventTreeFixture {
protected:
    static void expectNoComplaint(const test::MountedRun& run)
    {
        if (!run.isPermitted) {
            GTEST_SKIP() << "this process may not mount anything";
        }
        EXPECT_EQ(run.complaint, "");
    }
};

}  // namespace

TEST_F(FileEventTreePlaceTest, aRenameFartherUpTakesTheRootAway)
{
    const std::string root = disk.folder("top/middle/root");
    for (const char* moved : {"top", "top/middle"}) {
        letTheClockTick();
        WatchedTree watched(FileURL::directory(root));
        EXPECT_FALSE(watched.settle());
        rename(disk.path(moved), disk.path("elsewhere"));
        EXPECT_TRUE(watched.settle()) << moved;
        EXPECT_TRUE(watched.tree.isGone()) << moved;
        rename(disk.path("elsewhere"), disk.path(moved));
    }
}

TEST_F(FileEventTreePlaceTest, whatElseHappensFartherUpIsNoChange)
{
    const std::string root = disk.folder("top/root");
    disk.folder("top/beside");
    WatchedTree watched(FileURL::directory(root));
    watched.settle();
    rename(disk.path("top/beside"), disk.path("top/renamed"));
    disk.file("top/file", 10);
    std::filesystem::remove_all(disk.path("top/renamed"));
    EXPECT_FALSE(watched.settle());
    EXPECT_FALSE(watched.tree.isGone());
    EXPECT_TRUE(watched.hears(root + "/x"));
}

TEST_F(FileEventTreePlaceTest, aRootThatALinkLeadsToGoesWithWhatIsAboveIt)
{
    disk.folder("top/root");
    WatchedTree watched(FileURL::directory(disk.symbolicLink("link", disk.path("top/root"))));
    watched.settle();
    rename(disk.path("top"), disk.path("elsewhere"));
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.tree.isGone());
}

TEST_F(FileEventTreePlaceTest, whatAnUnmountUncoversIsAChangeAndIsWatched)
{
    disk.folder("realm/a/mount point/inside/deep");
    disk.folder("realm/a/other/inside");
    const std::string place = path("a/mount point");
    expectNoComplaint(test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(place);
        test::mountMemory(path("a/other"));
        WatchedTree watched = watch();
        watched.settle();
        if (watched.tree.watchCount() != 2) {
            return "the mounted volumes were entered";
        }
        test::unmount(place);
        if (watched.tree.mountsChanged() || !watched.settle()) {
            return "what came to light is no change";
        }
        if (!watched.hears(place + "/inside/deep/x")) {
            return "what came to light is not watched";
        }
        return watched.tree.watchCount() == 5 ? "" : "the other volume was entered";
    }));
}

TEST_F(FileEventTreePlaceTest, aFolderThatWasHiddenForAWhileIsWatchedAsBefore)
{
    disk.folder("realm/a/inside");
    expectNoComplaint(test::runWithPrivateMounts([&]() -> std::string {
        WatchedTree watched = watch();
        watched.settle();
        test::mountMemory(path("a"));
        if (watched.tree.mountsChanged() || watched.settle()) {
            return "a volume that is not entered is a change";
        }
        test::unmount(path("a"));
        watched.tree.mountsChanged();
        watched.settle();
        return watched.hears(path("a/inside/x")) ? "" : "it is not heard any more";
    }));
}

TEST_F(FileEventTreePlaceTest, aVolumeThatIsMountedOverTheRootTakesItAway)
{
    expectNoComplaint(test::runWithPrivateMounts([&]() -> std::string {
        WatchedTree watched = watch();
        watched.settle();
        test::mountMemory(realm);
        return watched.tree.mountsChanged() && watched.tree.isGone() ? "" : "it stays";
    }));
}

TEST_F(FileEventTreePlaceTest, aRootThatStandsInItselfOnceMoreIsHeardAsBefore)
{
    disk.folder("realm/a/again");
    expectNoComplaint(test::runWithPrivateMounts([&]() -> std::string {
        test::mountAgain(realm, path("a/again"));
        // Reached below itself, so that it stands above itself, too.
        WatchedTree watched(FileURL::directory(path("a/again")));
        watched.settle();
        return watched.hears(path("x")) ? "" : "it is deaf";
    }));
}

}  // namespace gruk
