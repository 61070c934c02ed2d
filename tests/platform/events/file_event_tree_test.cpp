#include "platform/linux/file_event_tree.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "platform/linux/descriptor.h"
#include "tests/platform/events/watched_tree.h"

namespace gruk {

namespace {

using test::WatchedTree;

class FileEventTreeTest : public test::FileEventTreeFixture {};

}  // namespace

TEST_F(FileEventTreeTest, takingATreeInIsNoChangeAndWatchesEveryFolder)
{
    disk.file("realm/a/b/c/x", 10);
    disk.folder("realm/d");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    EXPECT_FALSE(watched.settle());
}

TEST_F(FileEventTreeTest, createGrowRenameAndDeleteOfAFileAreChangesAtAnyDepth)
{
    disk.file("realm/a/b/x", 10);
    WatchedTree watched = watch();
    for (const std::string folder : {"", "a/b/"}) {
        EXPECT_TRUE(watched.hears(path(folder + "new")));
        std::ofstream(path(folder + "new")) << "more";
        EXPECT_TRUE(watched.settle()) << "grow";
        rename(path(folder + "new"), path(folder + "other"));
        EXPECT_TRUE(watched.settle()) << "rename";
        ASSERT_EQ(::unlink(path(folder + "other").c_str()), 0);
        EXPECT_TRUE(watched.settle()) << "delete";
        EXPECT_FALSE(watched.settle());
    }
}

TEST_F(FileEventTreeTest, aFileThatGrowsWhileItStaysOpenIsAChange)
{
    disk.file("realm/log", 10);
    const Descriptor log(::open(path("log").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    ASSERT_EQ(::write(log.number(), "x", 1), 1);
    EXPECT_TRUE(watched.settle());
    ASSERT_EQ(::ftruncate(log.number(), 0), 0);
    EXPECT_TRUE(watched.settle());
}

TEST_F(FileEventTreeTest, aFileThatIsWrittenInMemoryIsAChangeWhenItIsClosed)
{
    const std::string file = disk.file("realm/file", 4'096);
    Descriptor opened(::open(file.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(opened.isOpen());
    void* memory = ::mmap(nullptr, 4'096, PROT_READ | PROT_WRITE, MAP_SHARED, opened.number(), 0);
    ASSERT_NE(memory, MAP_FAILED);
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    std::memcpy(memory, "written", 7);
    ASSERT_EQ(::msync(memory, 4'096, MS_SYNC), 0);
    EXPECT_FALSE(watched.settle()) << "the kernel tells nothing of that";
    ASSERT_EQ(::munmap(memory, 4'096), 0);
    opened.reset();
    EXPECT_TRUE(watched.settle());
}

TEST_F(FileEventTreeTest, aFileThatHasNoNameAnyMoreIsNoChangeWhenItGrows)
{
    disk.file("realm/log", 10);
    const Descriptor log(::open(path("log").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    WatchedTree watched = watch();
    ASSERT_EQ(::unlink(path("log").c_str()), 0);
    EXPECT_TRUE(watched.settle());
    ASSERT_EQ(::write(log.number(), "x", 1), 1);
    EXPECT_FALSE(watched.settle());
}

TEST_F(FileEventTreeTest, permissionsAndTimesAreAChangeAndReadingIsNone)
{
    disk.fileWith("realm/a/x", "content");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(disk.read("realm/a/x"), "content");
    EXPECT_EQ(std::distance(std::filesystem::recursive_directory_iterator(realm), {}), 2);
    EXPECT_FALSE(watched.settle());
    ASSERT_EQ(::chmod(path("a/x").c_str(), 0644), 0);
    EXPECT_TRUE(watched.settle());
}

TEST_F(FileEventTreeTest, aDeepNewSubtreeIsFollowed)
{
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    disk.folder("realm/1/2/3/4/5/6/7/8");
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 9U);
    EXPECT_TRUE(watched.hears(path("1/2/3/4/5/6/7/8/x")));
    EXPECT_TRUE(watched.hears(path("1/2/3/x")));
}

TEST_F(FileEventTreeTest, whatIsMadeInAFolderWhileItIsTakenInIsFollowedToo)
{
    disk.folder("realm/a/b");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.tree.work(1));  // The root has been listed, and "a" waits.
    disk.folder("realm/a/c/d");
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    EXPECT_TRUE(watched.hears(path("a/c/d/x")));
}

TEST_F(FileEventTreeTest, whatIsMadeInAFolderBeforeItsFirstWatchStandsCountsAsAChange)
{
    disk.folder("realm/a");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.tree.work(1));
    disk.file("realm/a/x", 10);
    EXPECT_FALSE(watched.read()) << "its watch stood already";
    EXPECT_TRUE(watched.settle());
}

TEST_F(FileEventTreeTest, aFolderThatIsRenamedKeepsItsWatchesAndIsFollowedUnderItsNewName)
{
    disk.folder("realm/a/b/c");
    disk.folder("realm/z");
    int added = 0;
    int removed = 0;
    WatchCalls calls = WatchCalls::live();
    calls.add = [&, live = calls.add](int queue, int directory) {
        ++added;
        return live(queue, directory);
    };
    calls.remove = [&, live = calls.remove](int queue, int watch) {
        ++removed;
        live(queue, watch);
    };
    WatchedTree watched = watch(calls);
    EXPECT_FALSE(watched.settle());
    rename(path("a"), path("z/renamed"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    EXPECT_EQ(removed, 0);
    EXPECT_TRUE(watched.hears(path("z/renamed/b/c/x")));
    disk.folder("realm/z/renamed/b/c/new/deep");
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.hears(path("z/renamed/b/c/new/deep/x")));
    EXPECT_EQ(watched.tree.watchCount(), 7U);
}

TEST_F(FileEventTreeTest, aFolderThatIsRenamedBeforeItWasTakenInIsFoundUnderItsNewName)
{
    disk.folder("realm/a/b");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.tree.work(1));
    rename(path("a"), path("c"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 3U);
    EXPECT_TRUE(watched.hears(path("c/b/x")));
}

TEST_F(FileEventTreeTest, aFolderWhosePlaceAnotherTookWhileItWasTakenInIsNotMistakenForIt)
{
    disk.folder("realm/a/one/deep");
    disk.folder("other/two/deep");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.tree.work(2));  // "one" waits, inside "a".
    rename(path("a"), path("b"));
    rename(disk.path("other"), path("a"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 7U);
    EXPECT_TRUE(watched.hears(path("b/one/deep/x")));
    EXPECT_TRUE(watched.hears(path("a/two/deep/x")));
    // Were they mixed up, this would take the wrong ones away.
    rename(path("a"), disk.path("other"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 4U);
    EXPECT_TRUE(watched.hears(path("b/one/deep/y")));
}

TEST_F(FileEventTreeTest, twoFoldersThatSwapTheirNamesAreBothFollowed)
{
    disk.folder("realm/a/1");
    disk.folder("realm/b/2");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    rename(path("a"), path("t"));
    rename(path("b"), path("a"));
    rename(path("t"), path("b"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    disk.folder("realm/a/2/new");
    disk.folder("realm/b/1/new");
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.hears(path("a/2/new/x")));
    EXPECT_TRUE(watched.hears(path("b/1/new/x")));
}

TEST_F(FileEventTreeTest, aFolderThatIsMovedIntoAFolderThatItHeldIsFollowed)
{
    disk.folder("realm/a/b");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    rename(path("a/b"), path("b"));
    rename(path("a"), path("b/a"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 3U);
    disk.folder("realm/b/a/new");
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.hears(path("b/a/new/x")));
}

TEST_F(FileEventTreeTest, aFolderMovedInIsFollowedWithAllThatIsInIt)
{
    disk.folder("outside/b/c");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    rename(disk.path("outside"), path("inside"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 4U);
    EXPECT_TRUE(watched.hears(path("inside/b/c/x")));
}

TEST_F(FileEventTreeTest, aFolderMovedOutIsAChangeAndThenNoneOfOurs)
{
    disk.folder("realm/a/b/c");
    disk.folder("realm/d");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    rename(path("a"), disk.path("outside"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 2U);
    EXPECT_FALSE(watched.hears(disk.path("outside/b/c/x")));
    EXPECT_FALSE(watched.hears(disk.path("outside/x")));
    EXPECT_TRUE(watched.hears(path("d/x")));
    // And in again.
    rename(disk.path("outside"), path("a"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 5U);
    EXPECT_TRUE(watched.hears(path("a/b/c/y")));
}

TEST_F(FileEventTreeTest, manyFoldersMovedOutAtOnceAreLetGoOfTogether)
{
    for (int i = 0; i < 300; ++i) {
        disk.folder("realm/" + std::to_string(i) + "/a");
    }
    disk.folder("outside");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 601U);
    for (int i = 1; i < 300; ++i) {
        rename(path(std::to_string(i)), disk.path("outside/" + std::to_string(i)));
    }
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 3U);
    EXPECT_TRUE(watched.hears(path("0/a/x")));
}

TEST_F(FileEventTreeTest, aFolderThatIsDeletedIsForgotten)
{
    disk.folder("realm/a/b");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    ASSERT_EQ(std::filesystem::remove_all(path("a")), 2U);
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
    disk.folder("realm/a/b");
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.hears(path("a/b/x")));
}

TEST_F(FileEventTreeTest, aFolderThatComesAndGoesBeforeItIsTakenInLeavesNothing)
{
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    disk.folder("realm/a/b");
    ASSERT_EQ(std::filesystem::remove_all(path("a")), 2U);
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
    EXPECT_EQ(watched.tree.takeComplaint(), std::nullopt);
}

TEST_F(FileEventTreeTest, aLinkIsNotFollowed)
{
    disk.folder("outside/a");
    disk.symbolicLink("realm/link", "../outside");
    disk.symbolicLink("realm/loop", ".");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
    EXPECT_FALSE(watched.hears(disk.path("outside/a/x")));
    disk.symbolicLink("realm/later", "../outside");
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
    EXPECT_FALSE(watched.hears(disk.path("outside/a/y")));
}

TEST_F(FileEventTreeTest, aFolderSwappedForALinkBeforeItIsTakenInIsNotFollowed)
{
    disk.folder("realm/a");
    disk.folder("outside/b");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.tree.work(1));
    ASSERT_EQ(::rmdir(path("a").c_str()), 0);
    disk.symbolicLink("realm/a", "../outside");
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
    EXPECT_FALSE(watched.hears(disk.path("outside/b/x")));
}

TEST_F(FileEventTreeTest, aRootThatIsALinkToAFolderIsWatched)
{
    disk.folder("realm/a");
    const FileURL link(disk.symbolicLink("link", "realm"));
    static_cast<void>(watch());
    WatchedTree watched(link);
    EXPECT_FALSE(watched.settle());
    EXPECT_TRUE(watched.hears(path("a/x")));
}

}  // namespace gruk
