#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/errors.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/file_event_tree.h"
#include "tests/platform/events/watched_tree.h"
#include "tests/support/private_mounts.h"

namespace gruk {

namespace {

using test::WatchedTree;

/// What the tree does where the system, the disk or the user sets a limit.
class FileEventTreeLimitsTest : public test::FileEventTreeFixture {};

std::size_t openDescriptors()
{
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

}  // namespace

TEST_F(FileEventTreeLimitsTest, namesOfAnyBytesAndDepthBeyondTheLongestPathAreWatched)
{
    const std::string name = std::string(200, 'd') + "\xff\n";
    ASSERT_EQ(::chdir(realm.c_str()), 0);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(::mkdir(name.c_str(), 0700), 0);
        ASSERT_EQ(::chdir(name.c_str()), 0);
    }
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 101U);
    ASSERT_EQ(::mkdir("new", 0700), 0);
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 102U);
    EXPECT_TRUE(watched.hears("new/x"));
    ASSERT_EQ(::chdir("/"), 0);
}

TEST_F(FileEventTreeLimitsTest, aRootThatIsNotThereOrNoFolderCannotBeWatched)
{
    const Descriptor queue(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    EXPECT_THROW(FileEventTree(FileURL(disk.path("gone")), queue.number()), FileError);
    EXPECT_THROW(FileEventTree(FileURL(disk.file("file")), queue.number()), FileError);
}

TEST_F(FileEventTreeLimitsTest, aRootThatIsDeletedOrMovedIsALastChange)
{
    WatchedTree deleted = watch();
    EXPECT_FALSE(deleted.settle());
    ASSERT_EQ(::rmdir(realm.c_str()), 0);
    EXPECT_TRUE(deleted.settle());
    EXPECT_TRUE(deleted.tree.isGone());
    disk.folder("realm");
    WatchedTree moved = watch();
    EXPECT_FALSE(moved.settle());
    rename(realm, disk.path("elsewhere"));
    EXPECT_TRUE(moved.settle());
    EXPECT_TRUE(moved.tree.isGone());
    EXPECT_FALSE(moved.tree.hasWork());
}

TEST_F(FileEventTreeLimitsTest, anotherVolumeIsNotEnteredAndHoldsNothingOpen)
{
    disk.folder("realm/mount");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(path("mount"));
        disk.folder("realm/mount/inside");
        WatchedTree watched = watch();
        watched.settle();
        if (watched.tree.watchCount() != 1) {
            return "the mounted volume was entered";
        }
        if (watched.hears(path("mount/inside/x"))) {
            return "a change on the other volume was told";
        }
        test::unmount(path("mount"));
        return "";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(FileEventTreeLimitsTest, unmountingTheVolumeOfTheRootIsALastChange)
{
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(realm);
        disk.folder("realm/a/b");
        WatchedTree watched = watch();
        watched.settle();
        if (watched.tree.watchCount() != 3) {
            return "it was not taken in";
        }
        // Would fail if a directory were held open.
        test::unmount(realm);
        if (!watched.settle()) {
            return "the end of the volume was not told";
        }
        return watched.tree.isGone() ? "" : "it still waits for more";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(FileEventTreeLimitsTest, runningOutOfWatchesCountsAsAChangeAndIsSaidOnce)
{
    for (int i = 0; i < 10; ++i) {
        disk.folder("realm/" + std::to_string(i));
    }
    int tried = 0;
    WatchCalls calls = WatchCalls::live();
    calls.add = [&, live = calls.add](int queue, int directory) {
        return ++tried > 5 ? -ENOSPC : live(queue, directory);
    };
    WatchedTree watched = watch(calls);
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    EXPECT_EQ(tried, 6);
    const std::optional<std::string> complaint = watched.tree.takeComplaint();
    ASSERT_TRUE(complaint);
    EXPECT_NE(complaint->find("no more watches"), std::string::npos);
    EXPECT_NE(complaint->find(realm), std::string::npos);
    // A later folder is tried once, counts as a change, and is not said again.
    disk.folder("realm/later");
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(tried, 7);
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(tried, 7);
    EXPECT_EQ(watched.tree.takeComplaint(), std::nullopt);
}

TEST_F(FileEventTreeLimitsTest, runningOutOfWatchesWhileAllIsLookedForAgainDropsNone)
{
    disk.folder("realm/a/inner");
    disk.folder("realm/b");
    bool isShort = false;
    WatchCalls calls = WatchCalls::live();
    calls.add = [&, live = calls.add](int queue, int directory) {
        return isShort ? -ENOSPC : live(queue, directory);
    };
    WatchedTree watched = watch(calls);
    EXPECT_FALSE(watched.settle());
    ASSERT_EQ(watched.tree.watchCount(), 4U);
    isShort = true;
    EXPECT_TRUE(watched.tree.handle({-1, IN_Q_OVERFLOW, {}}));
    EXPECT_TRUE(watched.settle());
    // What was not reached is not known to be gone.
    EXPECT_EQ(watched.tree.watchCount(), 4U);
    EXPECT_TRUE(watched.hears(path("a/inner/x")));
    EXPECT_TRUE(watched.hears(path("b/x")));
}

TEST_F(FileEventTreeLimitsTest, aFolderThatMayNotBeReadIsPassedByAndWatchedOnceItMay)
{
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            // Of the ordinary user's own: the rest may belong to whoever runs the tests.
            const std::string deep = folder.folder("own/closed/deep");
            const std::string closed = folder.path("own/closed");
            ::chmod(closed.c_str(), 0);
            WatchedTree watched(FileURL::directory(folder.path("own")));
            watched.settle();
            const std::size_t before = watched.tree.watchCount();
            ::chmod(closed.c_str(), 0700);
            const bool isHeard = watched.settle();
            return isHeard && before == 1 && watched.tree.watchCount() == 3
                   && watched.hears(deep + "/x") && !watched.tree.takeComplaint();
        },
        disk));
}

TEST_F(FileEventTreeLimitsTest, whatIsInAFolderThatMayOnlyBeListedIsWatchedOnceItMayBeEntered)
{
    for (const char* closedFolder : {"own", "own/closed"}) {
        EXPECT_TRUE(test::succeedsAsOrdinaryUser(
            [&](const test::TemporaryDirectory& folder) {
                const std::string deep = folder.folder("own/closed/deep/deeper");
                const std::string closed = folder.path(closedFolder);
                const auto inAll = static_cast<std::size_t>(4);
                ::chmod(closed.c_str(), 0400);
                WatchedTree watched(FileURL::directory(folder.path("own")));
                watched.settle();
                const std::size_t before = watched.tree.watchCount();
                ::chmod(closed.c_str(), 0700);
                return watched.settle() && before < inAll && watched.tree.watchCount() == inAll
                       && watched.hears(deep + "/x");
            },
            disk))
            << closedFolder;
        std::filesystem::remove_all(disk.path("own"));
    }
}

TEST_F(FileEventTreeLimitsTest, anOverflowCountsAsAChangeAndWhatCameMeanwhileIsFound)
{
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int most = 0;
    ASSERT_TRUE(limit >> most);
    if (most > 70'000) {
        GTEST_SKIP() << "the queue holds " << most << " records here, too many to fill";
    }
    disk.folder("realm/leaves/inner");
    disk.folder("realm/stays/inner");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    for (int i = 0; i <= most / 2; ++i) {
        const std::string name = path("stays/" + std::to_string(i % 100));
        ASSERT_EQ(::mknod(name.c_str(), S_IFREG | 0600, 0), 0);
        ASSERT_EQ(::unlink(name.c_str()), 0);
    }
    disk.folder("realm/new/deep");
    rename(path("leaves"), disk.path("outside"));
    EXPECT_TRUE(watched.settle());
    const std::optional<std::string> complaint = watched.tree.takeComplaint();
    ASSERT_TRUE(complaint);
    EXPECT_NE(complaint->find("faster than they could be read"), std::string::npos);
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    EXPECT_TRUE(watched.hears(path("new/deep/x")));
    EXPECT_TRUE(watched.hears(path("stays/inner/x")));
    EXPECT_FALSE(watched.hears(disk.path("outside/inner/x")));
}

TEST_F(FileEventTreeLimitsTest, aRecordOfAnOverflowIsAChangeAndIsSaidOnce)
{
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_TRUE(watched.tree.handle({-1, IN_Q_OVERFLOW, {}}));
    EXPECT_TRUE(watched.tree.takeComplaint());
    EXPECT_TRUE(watched.tree.handle({-1, IN_Q_OVERFLOW, {}}));
    EXPECT_EQ(watched.tree.takeComplaint(), std::nullopt);
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
}

TEST_F(FileEventTreeLimitsTest, recordsOfWatchesThatEndedAreNoChange)
{
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_FALSE(watched.tree.handle({12'345, IN_CREATE | IN_ISDIR, "x"}));
    EXPECT_FALSE(watched.tree.hasWork());
}

TEST_F(FileEventTreeLimitsTest, noDirectoryIsHeldOpenOnceTheTreeIsTakenIn)
{
    disk.folder("realm/a/b/c");
    disk.folder("realm/d");
    const std::size_t before = openDescriptors();
    {
        WatchedTree watched = watch();
        watched.settle();
        EXPECT_EQ(openDescriptors(), before + 1) << "more than the queue";
        rename(path("a"), path("d/a"));
        watched.settle();
        EXPECT_EQ(openDescriptors(), before + 1);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(FileEventTreeLimitsTest, runningOutOfDescriptorsCountsAsAChangeAndIsSaidOnce)
{
#if defined(GRUK_SANITIZED)
    GTEST_SKIP() << "the sanitizer looks at objects through descriptors of its own";
#endif
    for (int i = 0; i < 5; ++i) {
        disk.folder("realm/" + std::to_string(i));
    }
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    disk.folder("realm/later");
    std::vector<Descriptor> taken;
    rlimit former{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
    rlimit small = former;
    small.rlim_cur = 64;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &small), 0);
    for (;;) {
        Descriptor next(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        if (!next.isOpen()) {
            break;
        }
        taken.push_back(std::move(next));
    }
    EXPECT_TRUE(watched.settle());
    const std::optional<std::string> complaint = watched.tree.takeComplaint();
    taken.clear();
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &former), 0);
    ASSERT_TRUE(complaint);
    EXPECT_NE(complaint->find("Too much is open"), std::string::npos);
}

}  // namespace gruk
