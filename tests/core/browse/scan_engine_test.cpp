#include "core/browse/scan_engine.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <system_error>
#include <vector>

#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Paths = std::vector<std::string>;
constexpr Bytes megabyte = 1'000'000;

class ScanEngineTest : public testing::Test {
protected:
    DirectoryStats stats() { return engine.stats(tree.root(), {}, stop.get_token()); }

    /// A folder of the tree that is asked about itself, and so must exist.
    FileURL root(const char* name)
    {
        tree.directory(name);
        return FileURL::directory(disk.folder(name));
    }

    test::TemporaryDirectory disk;
    test::FakeTree tree{disk.url()};
    /// What the engine's clock says.
    std::chrono::nanoseconds time{0};
    std::stop_source stop;
    ScanEngine engine{tree.reader(), [this] { return time; }};
};

FileError refusal(std::errc code)
{
    return {std::make_error_code(code), "open", "somewhere"};
}

}  // namespace

TEST_F(ScanEngineTest, anEmptyFolderYieldsAllZerosAndIsCached)
{
    EXPECT_EQ(stats(), DirectoryStats{});
    EXPECT_EQ(stats(), DirectoryStats{});
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(ScanEngineTest, filesOfEveryDepthCountAndDirectoriesThemselvesDoNot)
{
    FileEntry& file = tree.file("a/b/x", 4096);
    file.logicalSize = 10;
    tree.file("y", 100).logicalSize = 7;
    tree.directory("a").allocatedSize = 4096;
    tree.directory("a").logicalSize = 4096;
    EXPECT_EQ(stats(), (DirectoryStats{4196, 17, 2, 0}));
}

TEST_F(ScanEngineTest, theLastDirectoryFoundIsListedFirst)
{
    for (const char* path : {"a/a1", "a/a2", "b/b1", "c"}) {
        tree.directory(path);
    }
    static_cast<void>(stats());
    EXPECT_EQ(tree.listed(), (Paths{"", "c", "b", "b/b1", "a", "a/a2", "a/a1"}));
}

TEST_F(ScanEngineTest, aSymbolicLinkToAHugeFolderAddsNothing)
{
    FileEntry& link = tree.symbolicLink("link");
    link.isDirectory = true;
    link.allocatedSize = 1'000 * megabyte;
    tree.symbolicLink("elsewhere").deviceID = tree.otherDevice();
    EXPECT_EQ(stats(), DirectoryStats{});
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(ScanEngineTest, aMountedVolumeInsideTheTreeAddsNothing)
{
    tree.file("mount/x", megabyte);
    tree.directory("mount").deviceID = tree.otherDevice();
    tree.file("bound", megabyte).deviceID = tree.otherDevice();
    EXPECT_EQ(stats(), DirectoryStats{});
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(ScanEngineTest, twoHardLinksToOneMegabyteAreTwoFilesOfOneMegabyte)
{
    for (const char* path : {"a/x", "b/x"}) {
        FileEntry& link = tree.file(path, megabyte);
        link.linkCount = 2;
        link.inode = 42;
    }
    EXPECT_EQ(stats(), (DirectoryStats{megabyte, megabyte, 2, 0}));
}

TEST_F(ScanEngineTest, aHardLinkedFileWhoseSecondNameLiesOutsideTheTreeCountsInFull)
{
    tree.file("x", megabyte).linkCount = 2;
    EXPECT_EQ(stats(), (DirectoryStats{megabyte, megabyte, 1, 0}));
}

TEST_F(ScanEngineTest, aFileHardLinkedIntoTwoSiblingFoldersCountsInFullInEach)
{
    for (const char* path : {"a/x", "b/x"}) {
        FileEntry& link = tree.file(path, megabyte);
        link.linkCount = 2;
        link.inode = 42;
    }
    for (const char* folder : {"a", "b"}) {
        EXPECT_EQ(engine.stats(root(folder)), (DirectoryStats{megabyte, megabyte, 1, 0}));
    }
}

TEST_F(ScanEngineTest, filesOfOneLinkWithTheSameNumberAreDifferentFiles)
{
    tree.file("a", 1).inode = 42;
    tree.file("b", 10).inode = 42;
    EXPECT_EQ(stats(), (DirectoryStats{11, 11, 2, 0}));
}

TEST_F(ScanEngineTest, askingWithATrailingDotSegmentAndInTheCleanFormHitsTheSameCacheEntry)
{
    tree.file("a/x", 5);
    root("a");
    const DirectoryStats first = engine.stats(FileURL(disk.path("a/.")));
    EXPECT_EQ(engine.stats(FileURL(disk.path("a"))), first);
    EXPECT_EQ(engine.stats(FileURL::directory(disk.path("a"))), first);
    EXPECT_EQ(engine.stats(FileURL(disk.path("a/../a/"))), first);
    EXPECT_EQ(tree.listed(), Paths{"a"});
}

TEST_F(ScanEngineTest, theCachedAnswerComesWithoutProgress)
{
    tree.file("x", 5);
    static_cast<void>(stats());
    EXPECT_EQ(engine.stats(tree.root(),
                           [](const ScanProgress&) { ADD_FAILURE() << "a word of progress"; }),
              (DirectoryStats{5, 5, 1, 0}));
}

TEST_F(ScanEngineTest, theCachedAnswerStaysUntilItIsInvalidated)
{
    tree.file("x", 5);
    static_cast<void>(stats());
    tree.file("y", 10);
    EXPECT_EQ(stats().allocated, 5);
    engine.invalidate(FileURL(disk.path("./")));
    EXPECT_EQ(stats().allocated, 15);
}

TEST_F(ScanEngineTest, invalidatingOneFolderKeepsTheOthers)
{
    const FileURL a = root("a");
    const FileURL b = root("b");
    static_cast<void>(engine.stats(a));
    static_cast<void>(engine.stats(b));
    engine.invalidate(a);
    static_cast<void>(engine.stats(a));
    static_cast<void>(engine.stats(b));
    EXPECT_EQ(tree.listed(), (Paths{"a", "b", "a"}));
}

TEST_F(ScanEngineTest, invalidatingWithoutAFolderEmptiesTheWholeCache)
{
    const FileURL a = root("a");
    static_cast<void>(stats());
    static_cast<void>(engine.stats(a));
    engine.invalidate();
    static_cast<void>(stats());
    static_cast<void>(engine.stats(a));
    EXPECT_EQ(tree.listed(), (Paths{"", "a", "a", "", "a", "a"}));
}

TEST_F(ScanEngineTest, aSubdirectoryWithoutPermissionAddsOneRestrictedAndTheWalkGoesOn)
{
    tree.file("a/x", 5);
    tree.file("b/y", 10);
    tree.file("c/z", 100);
    tree.onListing("b", [] { throw refusal(std::errc::permission_denied); });
    tree.onListing("c", [] { throw refusal(std::errc::operation_not_permitted); });
    EXPECT_EQ(stats(), (DirectoryStats{5, 5, 1, 2}));
}

TEST_F(ScanEngineTest, aPermissionErrorInsideAnotherErrorCountsAsOne)
{
    tree.directory("a");
    tree.onListing("a", [] {
        try {
            throw refusal(std::errc::permission_denied);
        } catch (...) {
            std::throw_with_nested(std::runtime_error("no listing"));
        }
    });
    EXPECT_EQ(stats(), (DirectoryStats{0, 0, 0, 1}));
}

TEST_F(ScanEngineTest, aRootThatMayNotBeListedGivesOneRestrictedAndZeroForTheRest)
{
    tree.file("x", 5);
    tree.onListing("", [] { throw refusal(std::errc::permission_denied); });
    EXPECT_EQ(stats(), (DirectoryStats{0, 0, 0, 1}));
}

TEST_F(ScanEngineTest, aVanishedSubdirectoryFailsTheWholeCallAndNothingIsCached)
{
    tree.file("x", 5);
    tree.directory("a");
    bool isGone = true;
    tree.onListing("a", [&] {
        if (isGone) {
            throw refusal(std::errc::no_such_file_or_directory);
        }
    });
    try {
        static_cast<void>(stats());
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
    }
    isGone = false;
    EXPECT_EQ(stats(), (DirectoryStats{5, 5, 1, 0}));
}

TEST_F(ScanEngineTest, aRootThatIsNotThereFailsBeforeAnythingIsListed)
{
    EXPECT_THROW(static_cast<void>(engine.stats(FileURL(disk.path("gone")))), FileError);
    EXPECT_TRUE(tree.listed().empty());
}

TEST_F(ScanEngineTest, cancellingWhileADirectorysChildrenAreProcessedTakesEffectAtTheNextDirectory)
{
    tree.directory("a");
    tree.file("x", 5);
    tree.onListing("", [this] { stop.request_stop(); });
    EXPECT_THROW(static_cast<void>(stats()), CancelledError);
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(ScanEngineTest, aStopDuringTheLastDirectoryStillYieldsTheStats)
{
    tree.file("x", 5);
    tree.onListing("", [this] { stop.request_stop(); });
    EXPECT_EQ(stats(), (DirectoryStats{5, 5, 1, 0}));
}

TEST_F(ScanEngineTest, aCancelledCallCachesNothing)
{
    stop.request_stop();
    EXPECT_THROW(static_cast<void>(stats()), CancelledError);
    EXPECT_TRUE(tree.listed().empty());
    EXPECT_EQ(engine.stats(tree.root()), DirectoryStats{});
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(ScanEngineTest, theFirstDirectoryAlwaysReportsAndTheLastNotParticularly)
{
    tree.file("x", 5);
    tree.file("a/y", 10);
    std::vector<ScanProgress> reports;
    static_cast<void>(
        engine.stats(tree.root(), [&](const ScanProgress& report) { reports.push_back(report); }));
    EXPECT_EQ(reports, (std::vector<ScanProgress>{{1, 5}}));
}

TEST_F(ScanEngineTest, aReportFollowsWhenATenthOfASecondHasPassedSinceTheLast)
{
    for (int i = 0; i < 6; ++i) {
        const std::string folder = "d" + std::to_string(i);
        tree.file(folder + "/x", 1);
        // From the last folder to the first: at 60, 120, … milliseconds.
        tree.onListing(folder, [this] { time += std::chrono::milliseconds(60); });
    }
    std::vector<ScanProgress> reports;
    static_cast<void>(
        engine.stats(tree.root(), [&](const ScanProgress& report) { reports.push_back(report); }));
    EXPECT_EQ(reports, (std::vector<ScanProgress>{{0, 0}, {2, 2}, {4, 4}, {6, 6}}));
}

TEST_F(ScanEngineTest, exactlyATenthOfASecondIsEnoughAndAMomentLessIsNot)
{
    tree.directory("a");
    tree.directory("b");
    tree.onListing("b", [this] { time += std::chrono::nanoseconds(99'999'999); });
    tree.onListing("a", [this] { time += std::chrono::nanoseconds(1); });
    int reports = 0;
    std::vector<std::size_t> listedAt;
    static_cast<void>(engine.stats(tree.root(), [&](const ScanProgress&) {
        ++reports;
        listedAt.push_back(tree.listed().size());
    }));
    EXPECT_EQ(listedAt, (std::vector<std::size_t>{1, 3}));
}

TEST_F(ScanEngineTest, noReportFollowsADirectoryThatMayNotBeListed)
{
    tree.onListing("", [] { throw refusal(std::errc::permission_denied); });
    static_cast<void>(engine.stats(
        tree.root(), [](const ScanProgress&) { ADD_FAILURE() << "a word of progress"; }));
}

TEST_F(ScanEngineTest, depthCostsNoCallStack)
{
    int level = 0;
    ScanEngine deep([&](const FileURL&) {
        std::vector<FileEntry> children;
        if (++level < 5'000) {
            FileEntry child;
            child.id = FileURL::directory("/d");
            child.isDirectory = true;
            child.deviceID = tree.device();
            children.push_back(child);
        }
        return children;
    });
    EXPECT_EQ(deep.stats(tree.root()), DirectoryStats{});
    EXPECT_EQ(level, 5'000);
}

TEST_F(ScanEngineTest, theLengthsOfTwoSparseFilesStopNothingAndStayAtTheLargestNumber)
{
    for (const char* path : {"a/one", "a/two", "three"}) {
        tree.file(path, 4096).logicalSize = std::numeric_limits<Bytes>::max();
    }
    EXPECT_EQ(stats(), (DirectoryStats{3 * 4096, std::numeric_limits<Bytes>::max(), 3, 0}));
}

TEST_F(ScanEngineTest, aChildThatIsGoneWhenItIsLookedAtAddsNothing)
{
    FileEntry& gone = tree.file("gone", 5);
    gone.deviceID = 0;
    gone.inode = 0;
    tree.file("x", 10);
    EXPECT_EQ(stats(), (DirectoryStats{10, 10, 1, 0}));
}

TEST_F(ScanEngineTest, whatWasTouchedIsForgottenWithAllBelowAndAboveIt)
{
    for (const char* name : {"a", "a/b", "a/b/c", "a/d", "ab"}) {
        static_cast<void>(engine.stats(root(name)));
    }
    const std::size_t before = tree.listed().size();
    engine.invalidateAround({FileURL(disk.path("a/b"))});
    static_cast<void>(engine.stats(root("a/d")));
    static_cast<void>(engine.stats(root("ab")));
    EXPECT_EQ(tree.listed().size(), before);
    static_cast<void>(engine.stats(root("a/b/c")));
    EXPECT_EQ(tree.listed().size(), before + 1);
    static_cast<void>(engine.stats(root("a/b")));
    EXPECT_EQ(tree.listed().size(), before + 3);
    static_cast<void>(engine.stats(root("a")));
    EXPECT_EQ(tree.listed().size(), before + 7);
}

// Without a folder of its own, which the process that dies would leave behind.
TEST(ScanEngineDeathTest, aTotalThatLeavesTheRangeStopsTheProgram)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    test::FakeTree tree{FileURL::directory("/")};
    tree.file("a", std::numeric_limits<Bytes>::max());
    tree.file("b", 1);
    ScanEngine engine{tree.reader()};
    EXPECT_DEATH(static_cast<void>(engine.stats(tree.root())), "64-bit range");
}

}  // namespace gruk
