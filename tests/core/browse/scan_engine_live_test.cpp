#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <latch>
#include <optional>
#include <thread>
#include <vector>

#include "core/browse/scan_engine.h"
#include "core/patrol/snapshot_scanner.h"
#include "platform/foundation/errors.h"
#include "tests/support/private_mounts.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

Bytes allocatedBytes(const std::string& path)
{
    struct stat facts {};
    EXPECT_EQ(::lstat(path.c_str(), &facts), 0) << path;
    return static_cast<Bytes>(facts.st_blocks) * 512;
}

DirectoryStats liveStats(const FileURL& url)
{
    return ScanEngine().stats(url);
}

}  // namespace

TEST(ScanEngineLive, bothReadersCountTheSame)
{
    const test::TemporaryDirectory disk;
    disk.file("a/x", 100'000);
    disk.file("a/b/\xff\n", 5);
    disk.file(".hidden", 10);
    disk.hardLink("other name", "a/x");
    disk.symbolicLink("link", "a");
    disk.symbolicLink("a/loop", "..");
    disk.folder("empty");
    ASSERT_EQ(::mkfifo(disk.path("fifo").c_str(), 0600), 0);
    const DirectoryStats live = liveStats(disk.url());
    EXPECT_EQ(live, ScanEngine(DirectoryReader(MetadataReader::entries)).stats(disk.url()));
    EXPECT_EQ(live.fileCount, 5);
    EXPECT_EQ(live.logical, 100'015);
    EXPECT_EQ(live.allocated, allocatedBytes(disk.path("a/x"))
                                  + allocatedBytes(disk.path("a/b/\xff\n"))
                                  + allocatedBytes(disk.path(".hidden")));
    EXPECT_EQ(live.allocated, SnapshotScanner().scan(disk.url(), {}).entries.totalBytes());
}

TEST(ScanEngineLive, depthBeyondTheLongestPathIsCountedToItsEnd)
{
    const test::TemporaryDirectory disk;
    const std::string name(200, 'd');
    ASSERT_EQ(::chdir(disk.path().c_str()), 0);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(::mkdir(name.c_str(), 0700), 0);
        ASSERT_EQ(::chdir(name.c_str()), 0);
    }
    std::FILE* file = std::fopen("file", "w");
    ASSERT_NE(file, nullptr);
    std::fputs("twelve bytes", file);
    std::fclose(file);
    ASSERT_EQ(::chdir("/"), 0);
    const DirectoryStats stats = liveStats(disk.url());
    EXPECT_EQ(stats.fileCount, 1);
    EXPECT_EQ(stats.logical, 12);
}

TEST(ScanEngineLive, aSparseFileCountsItsBlocksAndItsLength)
{
    const test::TemporaryDirectory disk;
    const std::string path = disk.file("sparse");
    ASSERT_EQ(::truncate(path.c_str(), 1 << 30), 0);
    EXPECT_EQ(liveStats(disk.url()), (DirectoryStats{allocatedBytes(path), Bytes{1} << 30, 1, 0}));
}

TEST(ScanEngineLive, aMountedVolumeIsNotEnteredAndIsWalkedWhenItIsTheRoot)
{
    const test::TemporaryDirectory disk;
    disk.file("x", 10);
    disk.folder("mount");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(disk.path("mount"));
        disk.file("mount/y", 100);
        disk.file("mount/deeper/z", 1'000);
        ScanEngine engine;
        if (engine.stats(disk.url()).logical != 10) {
            return "the mounted volume was counted";
        }
        const DirectoryStats inside = engine.stats(FileURL(disk.path("mount")));
        return inside.logical == 1'100 && inside.fileCount == 2 ? "" : "it was not walked as root";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(ScanEngineLive, aFolderWithoutPermissionIsRestrictedAndSoIsTheRoot)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            const std::string secret = folder.folder("a/secret");
            folder.file("a/secret/x", 100);
            folder.file("a/open", 10);
            ::chmod(secret.c_str(), 0);
            const DirectoryStats whole = liveStats(folder.url());
            const DirectoryStats inside = liveStats(FileURL(secret));
            ::chmod(secret.c_str(), 0700);
            return whole.logical == 10 && whole.fileCount == 1 && whole.restrictedCount == 1
                   && inside == DirectoryStats{0, 0, 0, 1};
        },
        disk));
}

TEST(ScanEngineLive, aFolderThatVanishesInTheWalkFailsTheCall)
{
    const test::TemporaryDirectory disk;
    disk.folder("vanishes");
    disk.file("x", 10);
    ScanEngine engine;
    const auto remove = [&](const ScanProgress&) { ::rmdir(disk.path("vanishes").c_str()); };
    try {
        static_cast<void>(engine.stats(disk.url(), remove));
        FAIL() << "no error";
    } catch (const FileError& error) {
        EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem);
    }
    EXPECT_EQ(engine.stats(disk.url()).logical, 10);
}

TEST(ScanEngineLive, aRootThatIsAFileFails)
{
    const test::TemporaryDirectory disk;
    EXPECT_THROW(static_cast<void>(liveStats(FileURL(disk.file("x")))), FileError);
}

TEST(ScanEngineLive, aRootThatIsALinkToAFolderOfTheSameVolumeIsCounted)
{
    const test::TemporaryDirectory disk;
    disk.file("folder/x", 10);
    const FileURL link(disk.symbolicLink("link", "folder"));
    EXPECT_EQ(liveStats(link).logical, 10);
}

TEST(ScanEngineLive, aRootThatIsALinkCountsAsOnTheLinksOwnVolume)
{
    const test::TemporaryDirectory disk;
    disk.folder("mount");
    disk.symbolicLink("link", "mount");
    const test::MountedRun run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(disk.path("mount"));
        disk.file("mount/y", 100);
        return liveStats(FileURL(disk.path("link"))) == DirectoryStats{} ? "" : "it was counted";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "this process may not mount anything";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST(ScanEngineThreads, callsOfSeveralThreadsForOneFolderWalkItOnce)
{
    const test::TemporaryDirectory disk;
    std::atomic<int> listings = 0;
    ScanEngine engine([&](const FileURL& url) {
        ++listings;
        return MetadataReader::entries(url);
    });
    disk.file("a/x", 10);
    std::vector<DirectoryStats> answers(8);
    {
        std::latch start(8);
        std::vector<std::jthread> threads;
        for (DirectoryStats& answer : answers) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                answer = engine.stats(disk.url());
            });
        }
    }
    EXPECT_EQ(listings, 2);
    for (const DirectoryStats& answer : answers) {
        EXPECT_EQ(answer.logical, 10);
    }
}

TEST(ScanEngineThreads, walksRunOneAtATime)
{
    const test::TemporaryDirectory disk;
    for (const char* path : {"a/1/x", "b/1/x", "c/1/x", "d/1/x"}) {
        disk.file(path, 10);
    }
    std::atomic<int> inside = 0;
    std::atomic<bool> overlapped = false;
    ScanEngine engine([&](const FileURL& url) {
        overlapped = overlapped || ++inside > 1;
        std::this_thread::yield();
        auto children = MetadataReader::entries(url);
        --inside;
        return children;
    });
    {
        std::vector<std::jthread> threads;
        for (const char* folder : {"a", "b", "c", "d"}) {
            threads.emplace_back(
                [&, folder] { EXPECT_EQ(engine.stats(FileURL(disk.path(folder))).logical, 10); });
        }
    }
    EXPECT_FALSE(overlapped);
}

TEST(ScanEngineThreads, aCallThatWasCancelledWhileItWaitedNoticesWhenItGetsItsTurn)
{
    const test::TemporaryDirectory disk;
    disk.folder("first");
    disk.folder("second");
    std::latch firstIsInside(1);
    std::latch secondMayBeCancelled(1);
    std::vector<std::string> listed;
    ScanEngine engine([&](const FileURL& url) {
        listed.push_back(url.path());
        firstIsInside.count_down();
        secondMayBeCancelled.wait();
        return std::vector<FileEntry>();
    });
    std::stop_source stop;
    std::atomic<bool> cancelled = false;
    {
        const std::jthread first(
            [&] { static_cast<void>(engine.stats(FileURL(disk.path("first")))); });
        firstIsInside.wait();
        const std::jthread second([&] {
            try {
                static_cast<void>(engine.stats(FileURL(disk.path("second")), {}, stop.get_token()));
            } catch (const CancelledError&) {
                cancelled = true;
            }
        });
        stop.request_stop();
        secondMayBeCancelled.count_down();
    }
    EXPECT_TRUE(cancelled);
    EXPECT_EQ(listed, std::vector<std::string>{disk.path("first")});
}

TEST(ScanEngineThreads, invalidatingWaitsForTheWalkThatRuns)
{
    const test::TemporaryDirectory disk;
    std::latch walkIsInside(1);
    std::latch mayEnd(1);
    std::atomic<bool> isFirst = true;
    std::atomic<bool> invalidated = false;
    std::atomic<bool> invalidatedDuringTheWalk = false;
    ScanEngine engine([&](const FileURL&) {
        if (isFirst.exchange(false)) {
            walkIsInside.count_down();
            mayEnd.wait();
            for (int i = 0; i < 1'000; ++i) {
                std::this_thread::yield();
            }
            invalidatedDuringTheWalk = invalidated.load();
        }
        return std::vector<FileEntry>();
    });
    int progress = 0;
    {
        const std::jthread walking([&] { static_cast<void>(engine.stats(disk.url())); });
        walkIsInside.wait();
        const std::jthread invalidating([&] {
            mayEnd.count_down();
            engine.invalidate();
            invalidated = true;
        });
    }
    EXPECT_FALSE(invalidatedDuringTheWalk);
    // The answer of the walk that ran is gone: counting again reports again.
    static_cast<void>(engine.stats(disk.url(), [&](const ScanProgress&) { ++progress; }));
    EXPECT_EQ(progress, 1);
}

}  // namespace gruk
