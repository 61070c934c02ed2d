#include "core/patrol/snapshot_scanner.h"

#include <gtest/gtest.h>

#include <limits>

#include "core/patrol/snapshot_store.h"
#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Paths = std::vector<std::string>;

class SnapshotScannerTest : public testing::Test {
protected:
    ScanSnapshot scan() { return SnapshotScanner(tree.reader()).scan(tree.root(), Date{1234.5}); }

    static Paths paths(const ScanSnapshot& snapshot)
    {
        Paths result;
        for (const SnapshotEntry& entry : snapshot.entries) {
            result.push_back(entry.relativePath);
        }
        return result;
    }

    static Bytes sizeOf(const ScanSnapshot& snapshot, std::string_view path)
    {
        const auto index = snapshot.entries.find(path);
        EXPECT_TRUE(index) << "no entry " << path;
        return index ? snapshot.entries.allocatedSize(*index) : -1;
    }

    test::TemporaryDirectory disk;
    test::FakeTree tree{disk.url()};
};

}  // namespace

TEST_F(SnapshotScannerTest, anEmptyRealmYieldsACompleteSnapshotWithoutEntriesAndIssues)
{
    const ScanSnapshot snapshot = scan();
    EXPECT_TRUE(snapshot.entries.empty());
    EXPECT_TRUE(snapshot.issues.empty());
    EXPECT_TRUE(snapshot.isComplete);
    EXPECT_EQ(snapshot.rootPath, disk.path());
    EXPECT_EQ(snapshot.capturedAt, Date{1234.5});
}

TEST_F(SnapshotScannerTest, eachSnapshotHasAnIdOfItsOwn)
{
    SnapshotScanner scanner(tree.reader());
    EXPECT_NE(scanner.scan(tree.root(), {}).id, scanner.scan(tree.root(), {}).id);
}

TEST_F(SnapshotScannerTest, anEmptyDirectoryHasAnEntryOfZeroBytes)
{
    FileEntry& folder = tree.directory("empty");
    folder.dateModified = Date{77};
    folder.allocatedSize = 4096;
    const SnapshotEntry expected{"empty", 0, Date{77}, FileKind::folder, true};
    EXPECT_EQ(scan().entries, SnapshotEntries{expected});
}

TEST_F(SnapshotScannerTest, anEntryKeepsSizeDateAndKindOfItsItem)
{
    tree.file("photo.png", 4096).dateModified = Date{-5.5};
    tree.file("unknown").dateModified = std::nullopt;
    const SnapshotEntries expected = {{"photo.png", 4096, Date{-5.5}, FileKind::image, false},
                                      {"unknown", 0, std::nullopt, FileKind::other, false}};
    EXPECT_EQ(scan().entries, expected);
}

TEST_F(SnapshotScannerTest, aFilesSizeIsAddedToEveryDirectoryAboveIt)
{
    tree.file("a/b/c/x", 1);
    tree.file("a/b/y", 10);
    tree.file("a/z", 100);
    tree.file("w", 1000);
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(sizeOf(snapshot, "a/b/c"), 1);
    EXPECT_EQ(sizeOf(snapshot, "a/b"), 11);
    EXPECT_EQ(sizeOf(snapshot, "a"), 111);
    EXPECT_EQ(snapshot.entries.totalBytes(), 1111);
}

TEST_F(SnapshotScannerTest, entriesStandInTheOrderOfAFileBrowserWithEachFolderBeforeItsContent)
{
    for (const char* path : {"file10", "file2", "B/x", "a b", "a/z", "a/B", "a/b", "ä", "Z", "b"}) {
        tree.file(path);
    }
    EXPECT_EQ(paths(scan()), (Paths{"a", "a/b", "a/B", "a/z", "ä", "a b", "b", "B", "B/x", "file2",
                                    "file10", "Z"}));
}

TEST_F(SnapshotScannerTest, issuesStandInTheSameOrder)
{
    for (const char* path : {"file10", "B", "file2", "a/x", "a"}) {
        tree.file(path).deviceID = tree.otherDevice();
    }
    tree.directory("a").deviceID = tree.device();
    Paths issues;
    for (const ScanIssue& issue : scan().issues) {
        issues.push_back(issue.relativePath);
    }
    EXPECT_EQ(issues, (Paths{"a/x", "B", "file2", "file10"}));
}

TEST_F(SnapshotScannerTest, theLastDirectoryFoundIsListedFirst)
{
    for (const char* path : {"a/a1", "a/a2", "b/b1", "c"}) {
        tree.directory(path);
    }
    static_cast<void>(scan());
    EXPECT_EQ(tree.listed(), (Paths{"", "c", "b", "b/b1", "a", "a/a2", "a/a1"}));
}

TEST_F(SnapshotScannerTest, packagesAreWalkedLikeAnyDirectory)
{
    tree.file("Tools.app/Contents/x", 7);
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(sizeOf(snapshot, "Tools.app"), 7);
    EXPECT_EQ(snapshot.entries.kind(*snapshot.entries.find("Tools.app")), FileKind::application);
}

TEST_F(SnapshotScannerTest, twoHardLinksBothHaveEntriesAndOnlyTheFirstReachedCarriesTheBytes)
{
    for (const char* path : {"a/x", "b/x"}) {
        FileEntry& link = tree.file(path, 4096);
        link.linkCount = 2;
        link.inode = 42;
    }
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(tree.listed(), (Paths{"", "b", "a"}));
    EXPECT_EQ(sizeOf(snapshot, "b/x"), 4096);
    EXPECT_EQ(sizeOf(snapshot, "b"), 4096);
    EXPECT_EQ(sizeOf(snapshot, "a/x"), 0);
    EXPECT_EQ(sizeOf(snapshot, "a"), 0);
    EXPECT_EQ(snapshot.entries.totalBytes(), 4096);
}

TEST_F(SnapshotScannerTest, threeHardLinksInOneFolderCountOnceAtTheFirstListed)
{
    for (const char* path : {"z", "m", "a"}) {
        FileEntry& link = tree.file(path, 4096);
        link.linkCount = 3;
        link.inode = 42;
    }
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(sizeOf(snapshot, "z"), 4096);
    EXPECT_EQ(sizeOf(snapshot, "m"), 0);
    EXPECT_EQ(sizeOf(snapshot, "a"), 0);
}

TEST_F(SnapshotScannerTest, aFileWithOneLinkNeverTouchesTheSeenHardLinks)
{
    for (const char* path : {"1 single", "2 single", "3 linked", "4 single"}) {
        FileEntry& file = tree.file(path, 4096);
        file.inode = 42;
        file.linkCount = file.name() == "3 linked" ? 2 : 1;
    }
    FileEntry& elsewhere = tree.file("5 elsewhere", 4096);
    elsewhere.inode = 42;
    elsewhere.deviceID = tree.otherDevice();
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(snapshot.entries.size(), 4U);
    for (const SnapshotEntry& entry : snapshot.entries) {
        EXPECT_EQ(entry.allocatedSize, 4096) << entry.relativePath;
    }
}

TEST_F(SnapshotScannerTest, aMountPointUnderTheRootIsOneIssueAndItsContentIsNotVisited)
{
    tree.file("mount/x", 10);
    tree.directory("mount").deviceID = tree.otherDevice();
    const ScanSnapshot snapshot = scan();
    EXPECT_TRUE(snapshot.entries.empty());
    EXPECT_EQ(snapshot.issues,
              (std::vector<ScanIssue>{{"mount", ScanIssue::Reason::differentFilesystem}}));
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(SnapshotScannerTest, aFileOnAnotherVolumeIsAnIssueToo)
{
    tree.file("a/bound", 10).deviceID = tree.otherDevice();
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(paths(snapshot), Paths{"a"});
    EXPECT_EQ(sizeOf(snapshot, "a"), 0);
    EXPECT_EQ(snapshot.issues,
              (std::vector<ScanIssue>{{"a/bound", ScanIssue::Reason::differentFilesystem}}));
}

TEST_F(SnapshotScannerTest, aChildThatVanishedBeforeItWasLookedAtIsGoneWithoutEntryOrIssue)
{
    for (const char* path : {"gone", "a/gone"}) {
        FileEntry& gone = tree.file(path);
        gone.deviceID = 0;
        gone.inode = 0;
    }
    std::int64_t counted = -1;
    const ScanSnapshot snapshot =
        SnapshotScanner(tree.reader())
            .scan(tree.root(), {}, [&](std::int64_t count, std::string_view) { counted = count; });
    EXPECT_TRUE(snapshot.issues.empty());
    EXPECT_EQ(paths(snapshot), Paths{"a"});
    EXPECT_EQ(counted, 1);
}

TEST_F(SnapshotScannerTest, aChildThatIsThereButTellsNothingIsAnIssue)
{
    FileEntry& closed = tree.file("closed");
    closed.deviceID = 0;
    closed.inode = 0;
    closed.isUnreadable = true;
    EXPECT_EQ(scan().issues,
              (std::vector<ScanIssue>{{"closed", ScanIssue::Reason::differentFilesystem}}));
}

TEST_F(SnapshotScannerTest, aNameThatIsListedTwiceIsOneEntry)
{
    tree.file("a/x", 100);
    tree.file("a/y", 10);
    SnapshotScanner scanner([&](const FileURL& url) {
        // As a folder may be listed in which something is renamed meanwhile.
        std::vector<FileEntry> children = tree.reader()(url);
        if (url.lastPathComponent() == "a") {
            children.push_back(children.front());
        }
        return children;
    });
    const ScanSnapshot snapshot = scanner.scan(tree.root(), {});
    EXPECT_EQ(paths(snapshot), (Paths{"a", "a/x", "a/y"}));
    EXPECT_EQ(sizeOf(snapshot, "a"), 110);
    EXPECT_EQ(snapshot.entries.totalBytes(), 110);
}

TEST_F(SnapshotScannerTest, aSymbolicLinkToADirectoryAddsNothing)
{
    tree.symbolicLink("link").isDirectory = true;
    tree.symbolicLink("elsewhere").deviceID = tree.otherDevice();
    tree.symbolicLink("a/unknown").deviceID = 0;
    std::int64_t counted = -1;
    SnapshotScanner scanner(tree.reader());
    const ScanSnapshot snapshot = scanner.scan(
        tree.root(), {}, [&](std::int64_t count, std::string_view) { counted = count; });
    EXPECT_EQ(paths(snapshot), Paths{"a"});
    EXPECT_TRUE(snapshot.issues.empty());
    EXPECT_EQ(counted, 1);
    EXPECT_EQ(tree.listed(), (Paths{"", "a"}));
}

TEST_F(SnapshotScannerTest, theRootIsStandardizedFirst)
{
    const auto name = std::string(disk.url().lastPathComponent());
    tree.file("x");
    const FileURL crooked(disk.path() + "/./../" + name + "/");
    const ScanSnapshot snapshot = SnapshotScanner(tree.reader()).scan(crooked, {});
    EXPECT_EQ(snapshot.rootPath, disk.path());
    EXPECT_EQ(paths(snapshot), Paths{"x"});
}

TEST_F(SnapshotScannerTest, aRootThatIsNotThereThrowsBeforeAnythingElseHappens)
{
    SnapshotScanner scanner(tree.reader());
    std::stop_source stop;
    stop.request_stop();
    try {
        static_cast<void>(scanner.scan(FileURL(disk.path("gone")), {}, {}, stop.get_token()));
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
    }
    EXPECT_TRUE(tree.listed().empty());
}

TEST_F(SnapshotScannerTest, theScannerKeepsNothingBetweenCalls)
{
    FileEntry& link = tree.file("a", 4096);
    link.linkCount = 2;
    SnapshotScanner scanner(tree.reader());
    const ScanSnapshot first = scanner.scan(tree.root(), {});
    const ScanSnapshot second = scanner.scan(tree.root(), {});
    EXPECT_EQ(first.entries, second.entries);
    EXPECT_EQ(sizeOf(second, "a"), 4096);
}

TEST_F(SnapshotScannerTest, absurdSizesEndNoWalkAndNoSumOfThemLeavesTheRange)
{
    constexpr Bytes most = std::numeric_limits<Bytes>::max();
    tree.file("a/b/first", most);
    tree.file("a/second", most);
    tree.file("negative", -5);
    tree.file("plain", 4'096);
    const ScanSnapshot snapshot = scan();
    Bytes sum = 0;
    for (const SnapshotEntry& entry : snapshot.entries) {
        EXPECT_GE(entry.allocatedSize, 0);
        sum = checkedAdd(sum, entry.allocatedSize);
    }
    EXPECT_GT(sum, most / 2);
    // And its own store takes it back.
    const test::TemporaryDirectory home;
    SnapshotStore store{FileURL(home.path("s.json"))};
    store.save(snapshot);
    EXPECT_EQ(store.snapshots(disk.path()).front().entries.totalBytes(),
              snapshot.entries.totalBytes());
}

TEST_F(SnapshotScannerTest, sizesThatFitAreRecordedAsTheyAre)
{
    constexpr Bytes exabyte = 1'000'000'000'000'000'000;
    tree.file("a/b/large", exabyte);
    tree.file("a/b/larger", 2 * exabyte);
    const ScanSnapshot snapshot = scan();
    EXPECT_EQ(sizeOf(snapshot, "a/b/larger"), 2 * exabyte);
    EXPECT_EQ(sizeOf(snapshot, "a"), 3 * exabyte);
}

}  // namespace gruk
