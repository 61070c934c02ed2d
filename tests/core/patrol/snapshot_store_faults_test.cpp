#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "core/patrol/snapshot_store.h"
#include "platform/foundation/errors.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

/// Calls of the system of which one fails.
struct FaultyCalls {
    /// The position of the call that fails, from 0; -1 for none.
    int failing = -1;
    int error = EIO;
    int made = 0;
    /// At most so many bytes are taken by one write.
    std::size_t writeLimit = static_cast<std::size_t>(-1);

    bool fails() { return made++ == failing; }

    FileCalls calls()
    {
        const FileCalls live = FileCalls::live();
        FileCalls faulty;
        faulty.createExclusive = [this, live](const char* path) {
            return fails() ? -error : live.createExclusive(path);
        };
        faulty.write = [this, live](int descriptor, const char* bytes, std::size_t count) -> long {
            return fails() ? -error : live.write(descriptor, bytes, std::min(count, writeLimit));
        };
        faulty.synchronize = [this, live](int descriptor) {
            return fails() ? -error : live.synchronize(descriptor);
        };
        faulty.close = [this, live](int descriptor) {
            // A descriptor is gone also when closing it reports an error.
            const int result = live.close(descriptor);
            return fails() ? -error : result;
        };
        faulty.rename = [this, live](const char* from, const char* to) {
            return fails() ? -error : live.rename(from, to);
        };
        faulty.synchronizeDirectory = [this, live](const char* path) {
            return fails() ? -error : live.synchronizeDirectory(path);
        };
        faulty.remove = [this, live](const char* path) {
            return fails() ? -error : live.remove(path);
        };
        faulty.makeDirectory = [this, live](const char* path) {
            return fails() ? -error : live.makeDirectory(path);
        };
        return faulty;
    }
};

/// Enough entries for several pieces of writing.
ScanSnapshot largeSnapshot(double capturedAt)
{
    std::vector<SnapshotEntry> entries;
    for (int i = 0; i < 30'000; ++i) {
        entries.push_back({"a long enough name to fill the buffers " + std::to_string(i), i,
                           std::nullopt, FileKind::other, false});
    }
    ScanSnapshot snapshot = test::snapshotOf(entries);
    snapshot.capturedAt = Date{capturedAt};
    return snapshot;
}

}  // namespace

TEST(SnapshotStoreFaults, aFaultAtAnyCallOfASaveLeavesTheOldFileOrTheNewOneWhole)
{
    const ScanSnapshot first = largeSnapshot(10);
    const ScanSnapshot second = largeSnapshot(20);
    const std::vector<ScanSnapshot> both = {first, second};
    int faults = 0;
    for (const int error : {ENOSPC, EIO}) {
        for (bool wasReached = true; wasReached; ++faults) {
            const test::TemporaryDirectory disk;
            const FileURL file(disk.path("s/snapshots.json"));
            SnapshotStore(file).save(first);
            const std::string before = disk.read("s/snapshots.json");
            FaultyCalls faulty;
            faulty.failing = faults % 1'000;
            faulty.error = error;
            SnapshotStore store(file, faulty.calls());
            bool failed = false;
            try {
                store.save(second);
            } catch (const FileError& problem) {
                failed = true;
                EXPECT_EQ(problem.code().value(), error);
            }
            wasReached = faulty.made > faulty.failing;
            if (failed) {
                EXPECT_EQ(disk.read("s/snapshots.json"), before) << "call " << faulty.failing;
            } else {
                EXPECT_EQ(SnapshotStore(file).snapshots("/realm"), both)
                    << "call " << faulty.failing;
            }
            // Whatever stayed behind does not keep the next save from working.
            SnapshotStore(file).save(second);
            ASSERT_EQ(SnapshotStore(file).snapshots("/realm"), both);
            EXPECT_EQ(std::distance(std::filesystem::directory_iterator(disk.path("s")), {}), 1)
                << "call " << faulty.failing << " left something behind for good";
        }
        EXPECT_GT(faults % 1'000, 6);
        faults = 1'000;
    }
}

TEST(SnapshotStoreFaults, aFaultAtAnyCallOfTheFirstSaveLeavesNoFileOrTheWholeOne)
{
    const ScanSnapshot snapshot = test::snapshotOf({});
    bool wasReached = true;
    for (int failing = 0; wasReached; ++failing) {
        const test::TemporaryDirectory disk;
        const FileURL file(disk.path("deep/er/snapshots.json"));
        FaultyCalls faulty;
        faulty.failing = failing;
        bool failed = false;
        try {
            SnapshotStore(file, faulty.calls()).save(snapshot);
        } catch (const FileError&) {
            failed = true;
        }
        wasReached = faulty.made > failing;
        EXPECT_EQ(std::filesystem::exists(file.path()), !failed) << "call " << failing;
        EXPECT_EQ(SnapshotStore(file).snapshots("/realm").size(), failed ? 0U : 1U);
    }
}

TEST(SnapshotStoreFaults, aSystemThatTakesFewBytesAtATimeStillGetsTheWholeFile)
{
    const test::TemporaryDirectory disk;
    const FileURL file(disk.path("snapshots.json"));
    FaultyCalls slow;
    slow.writeLimit = 4'099;
    const ScanSnapshot snapshot = largeSnapshot(10);
    SnapshotStore(file, slow.calls()).save(snapshot);
    EXPECT_EQ(SnapshotStore(file).snapshots("/realm"), std::vector<ScanSnapshot>{snapshot});
}

}  // namespace gruk
