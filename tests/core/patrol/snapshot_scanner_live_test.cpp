#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <set>
#include <thread>

#include "core/patrol/snapshot_scanner.h"
#include "platform/foundation/errors.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Paths = std::set<std::string>;

ScanSnapshot scan(const FileURL& root)
{
    return SnapshotScanner().scan(root, Date{});
}

Paths paths(const ScanSnapshot& snapshot)
{
    Paths result;
    for (PathCursor at(snapshot.entries); !at.isAtEnd(); at.advance()) {
        result.insert(std::string(at.path()));
    }
    return result;
}

SnapshotEntry entry(const ScanSnapshot& snapshot, std::string_view path)
{
    const auto index = snapshot.entries.find(path);
    EXPECT_TRUE(index) << "no entry " << path;
    return index ? snapshot.entries[*index] : SnapshotEntry{};
}

/// Notes which items of one folder are opened while it lives.
class OpenWatch {
public:
    explicit OpenWatch(const std::string& folder) : descriptor_(::inotify_init1(IN_NONBLOCK))
    {
        EXPECT_GE(::inotify_add_watch(descriptor_, folder.c_str(), IN_OPEN), 0);
    }
    ~OpenWatch() { ::close(descriptor_); }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    Paths opened()
    {
        Paths names;
        alignas(inotify_event) char buffer[16'384];
        for (long count = 0; (count = ::read(descriptor_, buffer, sizeof buffer)) > 0;) {
            for (const char* at = buffer; at < buffer + count;) {
                inotify_event event{};
                std::memcpy(&event, at, sizeof event);
                names.insert(event.len == 0 ? "" : std::string(at + sizeof event));
                at += sizeof event + event.len;
            }
        }
        return names;
    }

private:
    int descriptor_;
};

/// Folders in folders, "down/down/…", made one inside the other: no call takes a path as long.
class DeepFolders {
public:
    DeepFolders(const std::string& root, int depth)
        : innermost_(::open(root.c_str(), O_RDONLY | O_DIRECTORY))
    {
        for (int i = 0; i < depth; ++i) {
            EXPECT_EQ(::mkdirat(innermost_, "down", 0700), 0);
            enter("down");
            path_ += "down/";
        }
    }
    ~DeepFolders() { ::close(innermost_); }
    DeepFolders(const DeepFolders&) = delete;
    DeepFolders& operator=(const DeepFolders&) = delete;

    /// The relative path of the innermost folder, with a "/" behind it.
    [[nodiscard]] const std::string& path() const { return path_; }

    /// Puts "file" into the innermost folder; returns its allocated bytes.
    [[nodiscard]] Bytes addFile() const
    {
        const int file = ::openat(innermost_, "file", O_WRONLY | O_CREAT, 0600);
        EXPECT_EQ(::write(file, "x", 1), 1);
        ::fsync(file);
        struct stat facts {};
        EXPECT_EQ(::fstat(file, &facts), 0);
        ::close(file);
        return facts.st_blocks * 512;
    }

private:
    void enter(const char* name)
    {
        const int next = ::openat(innermost_, name, O_RDONLY | O_DIRECTORY);
        EXPECT_GE(next, 0);
        ::close(innermost_);
        innermost_ = next;
    }

    int innermost_;
    std::string path_;
};

void makeSocket(const std::string& path)
{
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
}

}  // namespace

TEST(SnapshotScannerLive, namesOfAnyBytesAreEntriesByteForByte)
{
    const test::TemporaryDirectory disk;
    Paths expected;
    for (int byte = 1; byte < 256; ++byte) {
        const std::string letter(1, static_cast<char>(byte));
        if (letter == "/") {
            continue;
        }
        for (const std::string& name : {letter, "x" + letter + "y"}) {
            if (name != ".") {
                disk.file(name);
                expected.insert(name);
            }
        }
        const std::string inside = "folder " + letter + "/" + letter + "x";
        disk.file(inside);
        expected.insert({inside, inside.substr(0, inside.find('/'))});
    }
    const ScanSnapshot snapshot = scan(disk.url());
    EXPECT_EQ(paths(snapshot), expected);
    EXPECT_TRUE(snapshot.issues.empty());
}

TEST(SnapshotScannerLive, namesOf255BytesAreEntriesWhateverTheirBytes)
{
    const test::TemporaryDirectory disk;
    Paths expected;
    for (const char filler : {'x', '\xff', '\x80', ' ', '\n'}) {
        const std::string name(255, filler);
        disk.file(name + "/" + name);
        expected.insert({name, name + "/" + name});
    }
    EXPECT_EQ(paths(scan(disk.url())), expected);
}

TEST(SnapshotScannerLive, aTreeOfThreeThousandFoldersIsWalkedToItsEnd)
{
    const test::TemporaryDirectory disk;
    const DeepFolders deep(disk.path(), 3'000);
    const Bytes size = deep.addFile();
    const ScanSnapshot snapshot = scan(disk.url());
    EXPECT_EQ(snapshot.entries.size(), 3'001U);
    EXPECT_TRUE(snapshot.issues.empty());
    EXPECT_EQ(entry(snapshot, deep.path() + "file").allocatedSize, size);
    for (SnapshotEntries::Index i = 0; i < snapshot.entries.size(); ++i) {
        ASSERT_EQ(snapshot.entries.allocatedSize(i), size) << i;
    }
}

TEST(SnapshotScannerLive, fifosSocketsAndDevicesAreEntriesAndAreNeverOpened)
{
    const test::TemporaryDirectory disk;
    Paths expected = {"fifo", "socket", "file"};
    disk.file("file", 10);
    ASSERT_EQ(::mkfifo(disk.path("fifo").c_str(), 0600), 0);
    makeSocket(disk.path("socket"));
    // Only root may make devices; where it may not either, there are none to be opened.
    if (::mknod(disk.path("null").c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0) {
        expected.insert("null");
    }
    if (::mknod(disk.path("disk").c_str(), S_IFBLK | 0600, makedev(7, 0)) == 0) {
        expected.insert("disk");
    }
    OpenWatch watch(disk.path());
    const ScanSnapshot snapshot = scan(disk.url());
    EXPECT_EQ(paths(snapshot), expected);
    for (const std::string& path : expected) {
        EXPECT_EQ(entry(snapshot, path).kind, FileKind::other) << path;
        EXPECT_FALSE(entry(snapshot, path).isDirectory) << path;
    }
    // The folder itself is opened; the watch would tell of anything in it.
    EXPECT_EQ(watch.opened(), Paths{""});
    EXPECT_TRUE(snapshot.issues.empty());
}

TEST(SnapshotScannerLive, aSparseFileAccountsForItsBlocksOnly)
{
    const test::TemporaryDirectory disk;
    const std::string path = disk.file("sparse");
    ASSERT_EQ(::truncate(path.c_str(), 1'000'000'000), 0);
    EXPECT_EQ(entry(scan(disk.url()), "sparse").allocatedSize, 0);
}

TEST(SnapshotScannerLive, aHardLinkedFileCountsOnceAcrossFolders)
{
    const test::TemporaryDirectory disk;
    disk.file("a/one", 100'000);
    disk.hardLink("b/c/two", "a/one");
    disk.hardLink("three", "a/one");
    disk.file("b/single", 50'000);
    struct stat linked {};
    struct stat single {};
    ASSERT_EQ(::stat(disk.path("a/one").c_str(), &linked), 0);
    ASSERT_EQ(::stat(disk.path("b/single").c_str(), &single), 0);
    ASSERT_GT(linked.st_blocks, 0);

    const ScanSnapshot snapshot = scan(disk.url());
    EXPECT_EQ(snapshot.entries.size(), 7U);
    EXPECT_EQ(entry(snapshot, "a/one").allocatedSize + entry(snapshot, "b/c/two").allocatedSize
                  + entry(snapshot, "three").allocatedSize,
              linked.st_blocks * 512);
    EXPECT_EQ(snapshot.entries.totalBytes(), (linked.st_blocks + single.st_blocks) * 512);
}

TEST(SnapshotScannerLive, symbolicLinksAreNotThere)
{
    const test::TemporaryDirectory disk;
    disk.file("real/x", 10);
    disk.symbolicLink("to folder", disk.path("real"));
    disk.symbolicLink("to file", "real/x");
    disk.symbolicLink("to nothing", "nowhere");
    disk.symbolicLink("real/up", "..");
    EXPECT_EQ(paths(scan(disk.url())), (Paths{"real", "real/x"}));
}

TEST(SnapshotScannerLive, datesBefore1970AndAfter2106AreKept)
{
    const test::TemporaryDirectory disk;
    struct Row {
        const char* name;
        time_t seconds;
        long nanoseconds;
    };
    const Row rows[] = {{"1960", -315'619'200, 0},
                        {"just before the epoch", -1, 500'000'000},
                        {"2107", 4'323'456'000, 250'000'000},
                        {"2200", 7'258'118'400, 0}};
    for (const Row& row : rows) {
        const timespec times[2] = {{row.seconds, row.nanoseconds}, {row.seconds, row.nanoseconds}};
        const std::string path = disk.file(row.name);
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
        struct stat facts {};
        ASSERT_EQ(::stat(path.c_str(), &facts), 0);
        if (facts.st_mtim.tv_sec != row.seconds) {
            GTEST_SKIP() << "this file system does not keep " << row.name;
        }
    }
    const ScanSnapshot snapshot = scan(disk.url());
    for (const Row& row : rows) {
        EXPECT_EQ(
            entry(snapshot, row.name).modifiedAt,
            Date{static_cast<double>(row.seconds) + static_cast<double>(row.nanoseconds) * 1e-9})
            << row.name;
    }
}

TEST(SnapshotScannerLive, theLastFractionOfASecondIsDroppedTowardsThePastInEveryYear)
{
    const test::TemporaryDirectory disk;
    for (const time_t second : {-2'000'000'000L, -315'619'200L, -1L, 0L, 978'307'199L,
                                1'795'000'000L, 4'323'456'000L, 15'000'000'000L}) {
        const timespec times[2] = {{second, 999'999'999}, {second, 999'999'999}};
        const std::string name = std::to_string(second);
        const std::string path = disk.file(name);
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
        struct stat facts {};
        ASSERT_EQ(::stat(path.c_str(), &facts), 0);
        if (facts.st_mtim.tv_sec != second) {
            continue;  // This file system does not keep such a date.
        }
        const std::optional<Date> modified = entry(scan(disk.url()), name).modifiedAt;
        ASSERT_TRUE(modified);
        EXPECT_EQ(iso8601::text(*modified), iso8601::text(Date{static_cast<double>(second)}));
    }
}

TEST(SnapshotScannerLive, aFolderThatVanishesInTheWalkHasDisappearedAndKeepsItsEntry)
{
    const test::TemporaryDirectory disk;
    disk.file("stays/x");
    disk.file("vanishes/deep/y", 10);
    bool removed = false;
    const ScanSnapshot snapshot =
        SnapshotScanner().scan(disk.url(), {}, [&](std::int64_t, std::string_view) {
            // Called at the end of the root, when both folders wait to be listed.
            if (!removed) {
                removed = true;
                ::unlink(disk.path("vanishes/deep/y").c_str());
                ::rmdir(disk.path("vanishes/deep").c_str());
                ::rmdir(disk.path("vanishes").c_str());
            }
        });
    EXPECT_EQ(paths(snapshot), (Paths{"stays", "stays/x", "vanishes"}));
    EXPECT_EQ(snapshot.issues,
              (std::vector<ScanIssue>{{"vanishes", ScanIssue::Reason::disappeared}}));
}

TEST(SnapshotScannerLive, aFolderSwappedForALinkInTheWalkIsNotFollowed)
{
    const test::TemporaryDirectory disk;
    const test::TemporaryDirectory elsewhere;
    elsewhere.file("secret");
    disk.folder("swapped");
    const ScanSnapshot snapshot =
        SnapshotScanner().scan(disk.url(), {}, [&](std::int64_t, std::string_view path) {
            if (path.empty()) {
                ::rmdir(disk.path("swapped").c_str());
                disk.symbolicLink("swapped", elsewhere.path());
            }
        });
    EXPECT_EQ(paths(snapshot), Paths{"swapped"});
    ASSERT_EQ(snapshot.issues.size(), 1U);
    EXPECT_EQ(snapshot.issues.front().relativePath, "swapped");
}

TEST(SnapshotScannerLive, aFolderSwappedForAFIFOInTheWalkIsUnreadableAndNotOpened)
{
    const test::TemporaryDirectory disk;
    disk.folder("swapped");
    const ScanSnapshot snapshot =
        SnapshotScanner().scan(disk.url(), {}, [&](std::int64_t, std::string_view path) {
            if (path.empty()) {
                ::rmdir(disk.path("swapped").c_str());
                ::mkfifo(disk.path("swapped").c_str(), 0600);
            }
        });
    EXPECT_EQ(snapshot.issues,
              (std::vector<ScanIssue>{{"swapped", ScanIssue::Reason::unreadable}}));
}

TEST(SnapshotScannerLive, aFolderInUseHasNoIssuesOfFilesThatComeAndGo)
{
    const test::TemporaryDirectory disk;
    disk.file("stays", 10);
    std::size_t issues = 0;
    {
        const std::jthread busy([&](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                for (int i = 0; i < 50; ++i) {
                    const std::string path = disk.path("comes and goes " + std::to_string(i));
                    ::close(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
                    ::unlink(path.c_str());
                }
            }
        });
        for (int i = 0; i < 2'000; ++i) {
            issues += scan(disk.url()).issues.size();
        }
    }
    EXPECT_EQ(issues, 0U);
}

TEST(SnapshotScannerLive, aDiskThatIsMountedInTheRealmIsOneIssueAndWhatIsBehindItIsNotSeen)
{
    const test::TemporaryDirectory disk;
    disk.file("here/x", 10);
    disk.folder("here/mount");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(disk.path("here/mount"));
        disk.file("here/mount/inside/y", 10);
        const ScanSnapshot snapshot = scan(disk.url());
        const std::vector<ScanIssue> expected = {
            {"here/mount", ScanIssue::Reason::differentFilesystem}};
        return snapshot.issues == expected && paths(snapshot) == Paths{"here", "here/x"}
                   ? ""
                   : "it was entered";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(SnapshotScannerLive, aRootThatIsALinkToAFolderIsWalkedUnderItsOwnPath)
{
    const test::TemporaryDirectory disk;
    disk.file("real/x");
    const std::string link = disk.symbolicLink("link", "real");
    const ScanSnapshot snapshot = scan(FileURL::directory(link));
    EXPECT_EQ(snapshot.rootPath, link);
    EXPECT_EQ(paths(snapshot), Paths{"x"});
}

TEST(SnapshotScannerLive, aRootThatIsNoDirectoryOrIsNotThereThrows)
{
    const test::TemporaryDirectory disk;
    // Opening it would block for ever.
    ASSERT_EQ(::mkfifo(disk.path("fifo").c_str(), 0600), 0);
    EXPECT_THROW(static_cast<void>(scan(FileURL(disk.path("fifo")))), FileError);
    EXPECT_THROW(static_cast<void>(scan(FileURL(disk.file("file")))), FileError);
    EXPECT_THROW(static_cast<void>(scan(FileURL(disk.path("gone")))), FileError);
}

}  // namespace gruk
