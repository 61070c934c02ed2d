#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/atomic_file.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/file_event_tree.h"
#include "tests/platform/events/watched_tree.h"
#include "tests/support/private_mounts.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::WatchedTree;

/// What the tree does not tell: the program's own folders, and its own writing.
class FileEventTreeOwnItemsTest : public test::FileEventTreeFixture {
protected:
    WatchedTree watchWithout(const std::string& folder)
    {
        return watch(WatchCalls::live(), {OwnFolders({FileURL::directory(folder)}), {}});
    }

    /// What a patrol does there: a store replaced, a lock, a left-over of another's.
    void writeInto(const std::string& folder)
    {
        replaceFile(FileURL(folder + "/snapshots.json"), "new");
        replaceFile(FileURL(folder + "/deeper/settings.json"), "new");
        const Descriptor lock(::open((folder + "/x.lock").c_str(), O_CREAT | O_RDWR, 0600));
        EXPECT_TRUE(lock.isOpen());
    }
};

}  // namespace

TEST_F(FileEventTreeOwnItemsTest, ownFoldersGiveNoEvents)
{
    disk.folder("realm/.local/share/Gruk/deeper");
    disk.folder("realm/.local/share/other");
    WatchedTree watched = watchWithout(path(".local/share/Gruk"));
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 4U);
    for (int i = 0; i < 3; ++i) {
        writeInto(path(".local/share/Gruk"));
        EXPECT_FALSE(watched.settle());
    }
    EXPECT_TRUE(watched.hears(path(".local/share/other/x")));
}

TEST_F(FileEventTreeOwnItemsTest, ownFoldersGiveNoEventsWhenALinkLeadsToThem)
{
    disk.folder("realm/elsewhere/Gruk");
    WatchedTree watched = watchWithout(disk.symbolicLink("link", path("elsewhere/Gruk")));
    EXPECT_FALSE(watched.settle());
    writeInto(path("elsewhere/Gruk"));
    EXPECT_FALSE(watched.settle());
    EXPECT_TRUE(watched.hears(path("elsewhere/x")));
}

TEST_F(FileEventTreeOwnItemsTest, ownFoldersGiveNoEventsWhereTheyAreMountedOnceMore)
{
    const std::string own = disk.folder("app/Gruk");
    disk.folder("realm/shown");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountAgain(disk.path("app"), path("shown"));
        WatchedTree watched = watchWithout(own);
        watched.settle();
        writeInto(own);
        if (watched.settle()) {
            return "its own writing was told";
        }
        return watched.hears(disk.path("app/x")) ? "" : "what is beside it is not watched";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(FileEventTreeOwnItemsTest, anOwnFolderThatIsMadeAnewGivesNoEvents)
{
    const std::string own = disk.folder("realm/Gruk");
    WatchedTree watched = watchWithout(own);
    watched.settle();
    fs::remove_all(own);
    EXPECT_TRUE(watched.settle()) << "that it goes is seen from above";
    disk.folder("realm/Gruk");
    EXPECT_TRUE(watched.settle());
    writeInto(own);
    EXPECT_FALSE(watched.settle());
}

TEST_F(FileEventTreeOwnItemsTest, aFolderThatIsMovedToAnOwnPlaceIsNotWatchedAnyMore)
{
    disk.folder("realm/old/deeper");
    WatchedTree watched = watchWithout(path("Gruk"));
    EXPECT_FALSE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 3U);
    rename(path("old"), path("Gruk"));
    EXPECT_TRUE(watched.settle());
    EXPECT_EQ(watched.tree.watchCount(), 1U);
    writeInto(path("Gruk"));
    EXPECT_FALSE(watched.settle());
    rename(path("Gruk"), path("old"));
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.hears(path("old/deeper/x")));
}

TEST_F(FileEventTreeOwnItemsTest, aRealmThatIsAnOwnFolderGivesNoEventButItsEnd)
{
    disk.folder("realm/deeper");
    WatchedTree watched = watchWithout(realm);
    EXPECT_FALSE(watched.settle());
    writeInto(realm);
    EXPECT_FALSE(watched.settle());
    EXPECT_FALSE(watched.tree.mountsChanged());
    EXPECT_FALSE(watched.settle());
    rename(realm, disk.path("elsewhere"));
    EXPECT_TRUE(watched.settle());
    EXPECT_TRUE(watched.tree.isGone());
}

TEST_F(FileEventTreeOwnItemsTest, replacingAFileOfItsOwnIsNoChangeWhereverALinkHasPutIt)
{
    disk.fileWith("realm/dotfiles/settings.json", "old");
    const FileURL settings(disk.symbolicLink("settings.json", path("dotfiles/settings.json")));
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    for (int i = 0; i < 3; ++i) {
        replaceFile(settings, "new");
        EXPECT_FALSE(watched.settle());
    }
    EXPECT_EQ(disk.read("realm/dotfiles/settings.json"), "new");
    disk.fileWith("realm/dotfiles/settings.json", "by somebody else");
    EXPECT_TRUE(watched.settle());
}

TEST_F(FileEventTreeOwnItemsTest, aLeftOverOfAKilledProcessIsNoChangeWhenItIsRemoved)
{
    disk.fileWith("realm/.settings.json.0123abcd.gruk-new", "half");
    disk.fileWith("realm/settings.json", "old");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    replaceFile(FileURL(path("settings.json")), "new");
    EXPECT_FALSE(fs::exists(path(".settings.json.0123abcd.gruk-new")));
    EXPECT_FALSE(watched.settle());
}

TEST_F(FileEventTreeOwnItemsTest, namesThatOnlyLookTemporaryAreChanges)
{
    for (const char* name : {".0123abcd.gruk-new", ".x.0123ABCD.gruk-new", "x.0123abcd.gruk-new",
                             ".x.0123abc.gruk-new", ".x.0123abcd.gruk-newer", "x.gruk-new"}) {
        WatchedTree watched = watch();
        EXPECT_TRUE(watched.hears(path(name))) << name;
    }
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    disk.folder("realm/.folder.0123abcd.gruk-new");
    EXPECT_TRUE(watched.settle()) << "Gruk makes files of such names";
    EXPECT_TRUE(watched.hears(path(".folder.0123abcd.gruk-new/x")));
}

TEST_F(FileEventTreeOwnItemsTest, othersWhoReplaceAFileMakeAChange)
{
    disk.fileWith("realm/.text.swp", "new");
    disk.fileWith("realm/text", "old");
    WatchedTree watched = watch();
    EXPECT_FALSE(watched.settle());
    rename(path(".text.swp"), path("text"));
    EXPECT_TRUE(watched.settle());
}

TEST_F(FileEventTreeOwnItemsTest, aJournalIsNoChangeInAnyFolder)
{
    disk.folder("realm/Hoard");
    WatchedTree watched = watch(WatchCalls::live(), {{}, {".gruk-stash.json"}});
    EXPECT_FALSE(watched.settle());
    replaceFile(FileURL(path("Hoard/.gruk-stash.json")), "{}");
    EXPECT_FALSE(watched.settle());
    fs::remove(path("Hoard/.gruk-stash.json"));
    EXPECT_FALSE(watched.settle());
    EXPECT_TRUE(watched.hears(path("Hoard/.gruk-stash.json.bak")));
}

}  // namespace gruk
