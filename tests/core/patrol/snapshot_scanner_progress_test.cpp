#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <latch>
#include <mutex>
#include <thread>

#include "core/patrol/snapshot_scanner.h"
#include "platform/foundation/errors.h"
#include "tests/support/fake_tree.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Paths = std::vector<std::string>;
using PatrolReport = std::pair<std::int64_t, std::string>;

class SnapshotScannerProgressTest : public testing::Test {
protected:
    ScanSnapshot scan(const PatrolProgressFunction& progress = {})
    {
        return SnapshotScanner(tree.reader(), [this] { return time; })
            .scan(tree.root(), Date{}, progress, stop.get_token());
    }

    test::TemporaryDirectory disk;
    test::FakeTree tree{disk.url()};
    /// What the scanner's clock says.
    std::chrono::nanoseconds time{0};
    std::stop_source stop;
};

}  // namespace

TEST_F(SnapshotScannerProgressTest, aRunOfLessThanATenthOfASecondReportsOnceAtTheEndOfTheRoot)
{
    tree.file("a/b");
    tree.file("c");
    tree.onListing("a", [this] { time += std::chrono::nanoseconds(99'999'999); });
    std::vector<PatrolReport> reports;
    static_cast<void>(scan(
        [&](std::int64_t count, std::string_view path) { reports.emplace_back(count, path); }));
    EXPECT_EQ(reports, (std::vector<PatrolReport>{{2, ""}}));
}

TEST_F(SnapshotScannerProgressTest, anEmptyRealmReportsItsRootToo)
{
    int reports = 0;
    static_cast<void>(scan([&](std::int64_t count, std::string_view path) {
        ++reports;
        EXPECT_EQ(count, 0);
        EXPECT_EQ(path, "");
    }));
    EXPECT_EQ(reports, 1);
}

TEST_F(SnapshotScannerProgressTest, progressIsReportedAtMostTenTimesASecond)
{
    for (int i = 0; i < 2'000; ++i) {
        const std::string folder = "d" + std::to_string(i);
        tree.directory(folder);
        tree.onListing(folder, [this] { time += std::chrono::milliseconds(1); });
    }
    std::int64_t reports = 0;
    static_cast<void>(scan([&](std::int64_t, std::string_view) { ++reports; }));
    EXPECT_EQ(reports, 1 + 2'000 / 100);
}

TEST_F(SnapshotScannerProgressTest, aReportFollowsWhenExactlyATenthOfASecondHasPassed)
{
    tree.directory("a");
    tree.directory("b");
    tree.onListing("b", [this] { time += std::chrono::nanoseconds(99'999'999); });
    tree.onListing("a", [this] { time += std::chrono::nanoseconds(1); });
    std::vector<std::string> reported;
    static_cast<void>(
        scan([&](std::int64_t, std::string_view path) { reported.emplace_back(path); }));
    EXPECT_EQ(reported, (std::vector<std::string>{"", "a"}));
}

TEST_F(SnapshotScannerProgressTest, pathsScannedCountsFilesDirectoriesAndOtherVolumesButNoLinks)
{
    tree.file("file");
    tree.directory("folder");
    tree.file("elsewhere").deviceID = tree.otherDevice();
    tree.directory("mount").deviceID = tree.otherDevice();
    tree.symbolicLink("link");
    std::int64_t counted = 0;
    static_cast<void>(scan([&](std::int64_t count, std::string_view) { counted = count; }));
    EXPECT_EQ(counted, 4);
}

TEST_F(SnapshotScannerProgressTest, cancellationBeforeTheFirstDirectoryIsTheCancellationError)
{
    tree.file("a");
    stop.request_stop();
    EXPECT_THROW(static_cast<void>(scan()), CancelledError);
    EXPECT_TRUE(tree.listed().empty());
}

TEST_F(SnapshotScannerProgressTest, cancellationIsNoticedBeforeTheNextDirectory)
{
    tree.directory("a");
    tree.directory("b");
    // "b" is listed first and is empty, so that the next check is that of "a".
    tree.onListing("b", [this] { stop.request_stop(); });
    EXPECT_THROW(static_cast<void>(scan()), CancelledError);
    EXPECT_EQ(tree.listed(), (Paths{"", "b"}));
}

TEST_F(SnapshotScannerProgressTest, cancellationIsNoticedAtTheNextChild)
{
    // All that the root holds would be an issue; none is recorded, since nothing is returned.
    tree.file("a").deviceID = tree.otherDevice();
    tree.onListing("", [this] { stop.request_stop(); });
    EXPECT_THROW(static_cast<void>(scan()), CancelledError);
}

TEST_F(SnapshotScannerProgressTest, cancellationByTheProgressFunctionStopsTheWalk)
{
    tree.directory("a");
    EXPECT_THROW(
        static_cast<void>(scan([this](std::int64_t, std::string_view) { stop.request_stop(); })),
        CancelledError);
    EXPECT_EQ(tree.listed(), Paths{""});
}

TEST_F(SnapshotScannerProgressTest, aStopAfterTheLastCheckStillYieldsTheSnapshot)
{
    tree.onListing("", [this] { stop.request_stop(); });
    EXPECT_TRUE(scan().isComplete);
}

TEST_F(SnapshotScannerProgressTest, aScannerThatWasCancelledScansAgain)
{
    tree.file("a", 5);
    SnapshotScanner scanner(tree.reader());
    stop.request_stop();
    EXPECT_THROW(static_cast<void>(scanner.scan(tree.root(), {}, {}, stop.get_token())),
                 CancelledError);
    EXPECT_EQ(scanner.scan(tree.root(), {}).entries.totalBytes(), 5);
}

TEST_F(SnapshotScannerProgressTest, aSecondScanWaitsForTheFirst)
{
    std::latch secondIsAboutToStart(1);
    std::mutex lock;
    std::vector<std::thread::id> walking;
    const auto chainOfFolders = [&](const FileURL& url) {
        secondIsAboutToStart.wait();
        {
            const std::lock_guard guard(lock);
            walking.push_back(std::this_thread::get_id());
        }
        // Lets the other walk take its step now, if it can.
        std::this_thread::yield();
        std::vector<FileEntry> children;
        if (url.path().size() < disk.path().size() + 2 * 200) {
            FileEntry child;
            child.id = url.appending("d", FileURL::Names::directory);
            child.isDirectory = true;
            child.deviceID = tree.device();
            children.push_back(child);
        }
        return children;
    };
    SnapshotScanner scanner(chainOfFolders);
    std::size_t firstSize = 0;
    std::size_t secondSize = 0;
    {
        const std::jthread first([&] { firstSize = scanner.scan(disk.url(), {}).entries.size(); });
        const std::jthread second([&] {
            secondIsAboutToStart.count_down();
            secondSize = scanner.scan(disk.url(), {}).entries.size();
        });
    }
    EXPECT_EQ(firstSize, 200U);
    EXPECT_EQ(secondSize, 200U);
    const auto change = std::adjacent_find(walking.begin(), walking.end(), std::not_equal_to<>());
    EXPECT_EQ(change - walking.begin(), 200);
    EXPECT_EQ(std::adjacent_find(change + 1, walking.end(), std::not_equal_to<>()), walking.end());
}

}  // namespace gruk
