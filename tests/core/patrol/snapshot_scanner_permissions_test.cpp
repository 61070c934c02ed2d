#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>

#include "core/patrol/snapshot_scanner.h"
#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Reason = ScanIssue::Reason;

/// What follows runs in a child process, as an ordinary user who owns the folder: it answers
/// whether all is as it should be, and prints what is not.
bool holds(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "does not hold: %s\n", what);
    }
    return condition;
}

}  // namespace

TEST(SnapshotScannerPermissions, aFolderThatDeniesListingKeepsItsEntryAndHasOneIssue)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            const std::string secret = folder.folder("a/secret");
            folder.file("a/secret/x", 100);
            folder.file("a/open", 10);
            ::chmod(secret.c_str(), 0);
            const ScanSnapshot snapshot = SnapshotScanner().scan(folder.url(), {});
            ::chmod(secret.c_str(), 0700);
            const auto at = snapshot.entries.find("a/secret");
            return holds(snapshot.issues
                             == std::vector<ScanIssue>{{"a/secret", Reason::permissionDenied}},
                         "one issue")
                   && holds(snapshot.entries.size() == 3, "three entries")
                   && holds(at && snapshot.entries.allocatedSize(*at) == 0, "a total of 0");
        },
        disk));
}

TEST(SnapshotScannerPermissions, theChildrenOfAFolderThatMayBeListedButNotEnteredAreIssues)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            const std::string closed = folder.folder("closed");
            folder.file("closed/x", 100);
            folder.folder("closed/y");
            ::chmod(closed.c_str(), 0400);
            const ScanSnapshot snapshot = SnapshotScanner().scan(folder.url(), {});
            ::chmod(closed.c_str(), 0700);
            // Their metadata cannot be read, so that nothing tells which volume they lie on.
            return holds(snapshot.issues
                             == std::vector<ScanIssue>{{"closed/x", Reason::differentFilesystem},
                                                       {"closed/y", Reason::differentFilesystem}},
                         "two issues")
                   && holds(snapshot.entries.size() == 1, "one entry");
        },
        disk));
}

TEST(SnapshotScannerPermissions, aRootThatDeniesListingThrows)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            const std::string root = folder.folder("root");
            ::chmod(root.c_str(), 0);
            bool refused = false;
            try {
                static_cast<void>(SnapshotScanner().scan(FileURL::directory(root), {}));
            } catch (const FileError& error) {
                refused = meaning(error) == ErrorMeaning::accessRefused;
            }
            ::chmod(root.c_str(), 0700);
            return holds(refused, "access refused");
        },
        disk));
}

TEST(SnapshotScannerPermissions, filesThatMayNotBeReadAreEntriesAllTheSame)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            const std::string file = folder.file("unreadable", 5'000);
            ::chmod(file.c_str(), 0);
            struct stat facts {};
            ::stat(file.c_str(), &facts);
            const ScanSnapshot snapshot = SnapshotScanner().scan(folder.url(), {});
            return holds(snapshot.issues.empty(), "no issue")
                   && holds(snapshot.entries.totalBytes() == facts.st_blocks * 512, "its bytes");
        },
        disk));
}

TEST(SnapshotScannerPermissions, aDiskBelowTheRealmIsOneIssueAndIsNotEntered)
{
    // The device folder has disks of memory mounted in it on every system that has it at all.
    std::ifstream mounts("/proc/self/mounts");
    std::vector<std::string> names;
    for (std::string device, place, rest;
         mounts >> device >> place && std::getline(mounts, rest);) {
        if (place.starts_with("/dev/") && place.find('/', 5) == std::string::npos) {
            names.push_back(place.substr(5));
        }
    }
    struct stat root {};
    if (names.empty() || ::stat("/dev", &root) != 0) {
        GTEST_SKIP() << "nothing is mounted in the device folder here";
    }
    const ScanSnapshot snapshot = SnapshotScanner().scan(FileURL::directory("/dev"), {});
    int asked = 0;
    for (const std::string& name : names) {
        struct stat mounted {};
        if (::lstat(("/dev/" + name).c_str(), &mounted) != 0 || mounted.st_dev == root.st_dev) {
            continue;
        }
        ++asked;
        EXPECT_EQ(std::count(snapshot.issues.begin(), snapshot.issues.end(),
                             ScanIssue{name, Reason::differentFilesystem}),
                  1)
            << name;
        EXPECT_FALSE(snapshot.entries.find(name)) << name;
    }
    if (asked == 0) {
        GTEST_SKIP() << "no other volume is mounted in the device folder here";
    }
}

}  // namespace gruk
