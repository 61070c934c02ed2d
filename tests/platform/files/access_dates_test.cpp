#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "platform/files/atomic_file.h"
#include "platform/files/move_calls.h"
#include "platform/files/tree_reader.h"
#include "platform/files/whole_directory.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/directory_sizes.h"
#include "platform/linux/file_event_tree.h"
#include "platform/linux/left_overs.h"
#include "platform/settings/bookmarks.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;

constexpr time_t longAgo = 978'307'200;  // 2001

/// Folders that were last opened long ago, so that every listing that leaves a trace is seen.
class OldFolders {
public:
    OldFolders()
    {
        disk.file("realm/a/b/x", 10);
        disk.file("realm/c/y", 10);
        names = {"", "realm", "realm/a", "realm/a/b", "realm/c"};
        for (const std::string& name : names) {
            const timespec times[2] = {{longAgo, 0}, {0, UTIME_OMIT}};
            EXPECT_EQ(::utimensat(AT_FDCWD, disk.path(name).c_str(), times, 0), 0);
        }
    }

    /// The folders that were opened since, or are not there.
    [[nodiscard]] std::vector<std::string> opened() const
    {
        std::vector<std::string> result;
        for (const std::string& name : names) {
            struct stat facts {};
            if (::stat(disk.path(name).c_str(), &facts) != 0 || facts.st_atim.tv_sec != longAgo) {
                result.push_back(name);
            }
        }
        return result;
    }

    /// Whether this disk keeps the dates at all.
    [[nodiscard]] static bool areKept()
    {
        const OldFolders folders;
        for (const auto& item : fs::directory_iterator(folders.disk.path("realm"))) {
            static_cast<void>(item);
        }
        return folders.opened() == std::vector<std::string>{"realm"};
    }

    TemporaryDirectory disk;
    std::vector<std::string> names;
};

using Opened = std::vector<std::string>;

class AccessDatesTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!OldFolders::areKept()) {
            GTEST_SKIP() << "this disk does not record when a folder was opened";
        }
    }

    [[nodiscard]] FileURL realm() const { return FileURL::directory(folders.disk.path("realm")); }

    OldFolders folders;
};

}  // namespace

TEST_F(AccessDatesTest, aWalkLeavesThoseOfTheFoldersThatItLists)
{
    TreeReader reader(realm());
    int children = 0;
    const auto count = [&](const ListedChild&) { ++children; };
    reader.list(0, {}, count);
    reader.list(1, "c", count);
    reader.list(1, "a", count);
    reader.list(2, "b", count);
    EXPECT_EQ(children, 5);
    EXPECT_EQ(folders.opened(), Opened());
}

TEST_F(AccessDatesTest, aFolderThatIsBrowsedKeepsItsDate)
{
    const auto begin = [](std::size_t) {};
    const auto visit = [](std::size_t, const ListedChild&, AttributeValue) {};
    readWholeDirectory(realm(), {}, {begin, visit});
    EXPECT_EQ(folders.opened(), Opened());
}

TEST_F(AccessDatesTest, theSizeOfATrashedFolderLeavesThoseOfWhatIsInIt)
{
    const Descriptor parent(::open(folders.disk.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    EXPECT_TRUE(sizeOnDisk(parent.number(), "realm", WalkLimits()));
    EXPECT_EQ(folders.opened(), Opened());
}

TEST_F(AccessDatesTest, aWatchedTreeKeepsThem)
{
    const Descriptor queue(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
    FileEventTree tree(realm(), queue.number());
    while (tree.hasWork()) {
        tree.work(1);
    }
    EXPECT_EQ(tree.watchCount(), 4U);
    EXPECT_EQ(folders.opened(), Opened());
}

TEST_F(AccessDatesTest, lookingForARealmBesideItsOldPlaceLeavesTheFolderThatHeldIt)
{
    const std::string bookmark = makeBookmark(realm());
    fs::rename(folders.disk.path("realm"), folders.disk.path("renamed"));
    folders.names = {""};
    EXPECT_EQ(resolveBookmark(bookmark).path(), folders.disk.path("renamed"));
    EXPECT_EQ(folders.opened(), Opened());
}

TEST_F(AccessDatesTest, clearingLeftOversLeavesTheFolderOfTheFile)
{
    removeLeftOvers(folders.disk.path("realm"), "x", FileCalls::live());
    EXPECT_EQ(folders.opened(), Opened());
}

TEST(AccessDates, aFolderOfSomebodyElsesIsListedAllTheSame)
{
    struct stat facts {};
    if (::stat("/usr", &facts) != 0 || facts.st_uid != 0) {
        GTEST_SKIP() << "there is no folder of the system's here";
    }
    const TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const TemporaryDirectory&) {
            // The system refuses to hide from its owner that somebody else opened it.
            const Descriptor refused(
                ::open("/usr", O_RDONLY | O_DIRECTORY | O_NOATIME | O_CLOEXEC));
            TreeReader reader(FileURL::directory("/"));
            bool hasUsr = false;
            reader.list(0, {},
                        [&](const ListedChild& child) { hasUsr = hasUsr || child.name == "usr"; });
            int children = 0;
            reader.list(1, "usr", [&](const ListedChild&) { ++children; });
            return !refused.isOpen() && hasUsr && children > 0;
        },
        disk));
}

}  // namespace gruk
