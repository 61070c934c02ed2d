#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <map>

#include "core/patrol/snapshot_scanner.h"
#include "core/realm/seeded_generator.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

/// Fills the folder with a random tree: folders in folders, files, links of both kinds, FIFOs,
/// names of any bytes, and attributes that make screenshots of some. Returns how many items took
/// such an attribute.
int fill(const test::TemporaryDirectory& disk, SeededGenerator& draw)
{
    constexpr char trueList[] = "<?xml version=\"1.0\"?><plist version=\"1.0\"><true/></plist>";
    const char* const stems[] = {"a",  "B",  "file2", "Screenshot 1", "\xff", "\u00e9",
                                 "x.", ".y", "app",   "\u65e5\u672c", "a\nb"};
    const char* const endings[] = {"", ".png", ".app", ".DMG", " (1)"};
    std::vector<std::string> folders = {""};
    std::vector<std::string> files;
    int attributes = 0;
    for (int i = 0; i < 150; ++i) {
        const std::string path = folders.at(draw.bounded(folders.size())) + stems[draw.bounded(11)]
                                 + std::to_string(i) + endings[draw.bounded(5)];
        switch (draw.bounded(6)) {
        case 0:
        case 1:
            disk.folder(path);
            folders.push_back(path + "/");
            break;
        case 2:
            disk.symbolicLink(path, disk.path());
            break;
        case 3:
            if (!files.empty()) {
                disk.hardLink(path, files.at(draw.bounded(files.size())));
            }
            break;
        case 4:
            ::mkfifo(disk.path(path).c_str(), 0600);
            break;
        default:
            disk.file(path, draw.bounded(20'000));
            files.push_back(path);
        }
        if (draw.bounded(4) == 0
            && ::lsetxattr(disk.path(path).c_str(),
                           (std::string("user.") + MetadataReader::screenCaptureAttribute).c_str(),
                           trueList, sizeof trueList - 1, 0)
                   == 0) {
            ++attributes;
        }
    }
    return attributes;
}

}  // namespace

TEST(SnapshotScannerAgreement, theLiveWalkGivesTheSameSnapshotAsTheWalkThroughTheReader)
{
    int attributes = 0;
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        const test::TemporaryDirectory disk;
        SeededGenerator draw(seed);
        attributes += fill(disk, draw);
        const ScanSnapshot live = SnapshotScanner().scan(disk.url(), Date{5});
        const ScanSnapshot read =
            SnapshotScanner(DirectoryReader(MetadataReader::entries)).scan(disk.url(), Date{5});
        ASSERT_GT(live.entries.size(), 50U);
        EXPECT_EQ(live.entries, read.entries) << "seed " << seed;
        EXPECT_EQ(live.issues, read.issues) << "seed " << seed;
        EXPECT_EQ(live.rootPath, read.rootPath);
        EXPECT_EQ(live.capturedAt, read.capturedAt);
        EXPECT_TRUE(live.isComplete && read.isComplete);
    }
    if (attributes == 0) {
        GTEST_SKIP() << "the trees agree, but this file system keeps no attributes to compare";
    }
}

TEST(SnapshotScannerAgreement, bothWalksReportTheSameCounts)
{
    const test::TemporaryDirectory disk;
    SeededGenerator draw(99);
    fill(disk, draw);
    std::int64_t counts[2] = {};
    for (int i = 0; i < 2; ++i) {
        const auto progress = [&](std::int64_t count, std::string_view path) {
            counts[i] = path.empty() ? count : counts[i];
        };
        if (i == 0) {
            static_cast<void>(SnapshotScanner().scan(disk.url(), {}, progress));
        } else {
            static_cast<void>(SnapshotScanner(DirectoryReader(MetadataReader::entries))
                                  .scan(disk.url(), {}, progress));
        }
    }
    EXPECT_GT(counts[0], 0);
    EXPECT_EQ(counts[0], counts[1]);
}

TEST(SnapshotScannerAgreement, bothWalksAgreeOnWhatAnOrdinaryUserMayNotSee)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            SeededGenerator draw(7);
            fill(folder, draw);
            std::map<std::string, mode_t> closed;
            int i = 0;
            for (const SnapshotEntry& entry : SnapshotScanner().scan(folder.url(), {}).entries) {
                if (entry.isDirectory && ++i % 3 == 0) {
                    closed[folder.path(entry.relativePath)] = i % 2 == 0 ? 0 : 0400;
                }
            }
            for (auto at = closed.rbegin(); at != closed.rend(); ++at) {
                ::chmod(at->first.c_str(), at->second);
            }
            const ScanSnapshot live = SnapshotScanner().scan(folder.url(), {});
            const ScanSnapshot read =
                SnapshotScanner(DirectoryReader(MetadataReader::entries)).scan(folder.url(), {});
            for (const auto& [path, mode] : closed) {
                ::chmod(path.c_str(), 0700);
            }
            return !live.issues.empty() && live.issues == read.issues
                   && live.entries == read.entries;
        },
        disk));
}

}  // namespace gruk
