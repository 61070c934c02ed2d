#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "core/patrol/snapshot_store.h"
#include "platform/foundation/errors.h"
#include "tests/support/fault_calls.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::FaultCalls;

/// Enough entries for several pieces of writing.
ScanSnapshot largeSnapshot(double capturedAt)
{
    std::vector<SnapshotEntry> entries;
    for (int i = 0; i < 9'000; ++i) {
        entries.push_back({"a long enough name to fill the buffers " + std::to_string(i), i,
                           std::nullopt, FileKind::other, false});
    }
    ScanSnapshot snapshot = test::snapshotOf(entries);
    snapshot.capturedAt = Date{capturedAt};
    return snapshot;
}

/// Saves with the faults; whether it reported one. The error is the fault's own.
bool saveFails(const FileURL& file, const FaultCalls& faults, const ScanSnapshot& snapshot)
{
    try {
        SnapshotStore(file, faults.calls()).save(snapshot);
        return false;
    } catch (const FileError& problem) {
        EXPECT_EQ(problem.code().value(), faults.error);
        return true;
    }
}

FaultCalls faultAt(std::size_t number, int error, FaultCalls::Span span)
{
    FaultCalls faults;
    faults.failAt = number;
    faults.error = error;
    faults.span = span;
    faults.removeFails = error == EIO;
    return faults;
}

class SnapshotStoreFaults : public testing::TestWithParam<std::tuple<int, FaultCalls::Span>> {
protected:
    test::TemporaryDirectory disk;
};

}  // namespace

TEST_P(SnapshotStoreFaults, aFaultAtAnyCallOfASaveLeavesTheOldFileOrTheNewOneWhole)
{
    const auto [error, span] = GetParam();
    const ScanSnapshot first = largeSnapshot(10);
    const ScanSnapshot second = largeSnapshot(20);
    const std::vector<ScanSnapshot> both = {first, second};
    std::size_t number = 0;
    for (bool wasReached = true; wasReached; ++number) {
        const std::string name = std::to_string(number) + "/snapshots.json";
        const FileURL file(disk.path(name));
        SnapshotStore(file).save(first);
        const std::string before = disk.read(name);
        const FaultCalls faults = faultAt(number, error, span);
        const bool failed = saveFails(file, faults, second);
        wasReached = faults.names().size() > number;
        if (failed) {
            EXPECT_EQ(disk.read(name), before) << "call " << number;
        } else {
            EXPECT_EQ(SnapshotStore(file).snapshots("/realm"), both) << "call " << number;
        }
        // Whatever stayed behind does not keep the next save from working.
        SnapshotStore(file).save(second);
        ASSERT_EQ(SnapshotStore(file).snapshots("/realm"), both) << "call " << number;
        EXPECT_EQ(std::distance(
                      std::filesystem::directory_iterator(disk.path(std::to_string(number))), {}),
                  1)
            << "call " << number << " left something behind for good";
    }
    EXPECT_GT(number, 6U);
}

TEST_P(SnapshotStoreFaults, aFaultAtAnyCallOfTheFirstSaveLeavesNoFileOrTheWholeOne)
{
    const auto [error, span] = GetParam();
    const ScanSnapshot snapshot = test::snapshotOf({});
    bool wasReached = true;
    for (std::size_t number = 0; wasReached; ++number) {
        const FileURL file(disk.path("deep " + std::to_string(number) + "/er/snapshots.json"));
        const FaultCalls faults = faultAt(number, error, span);
        const bool failed = saveFails(file, faults, snapshot);
        wasReached = faults.names().size() > number;
        EXPECT_EQ(std::filesystem::exists(file.path()), !failed) << "call " << number;
        EXPECT_EQ(SnapshotStore(file).snapshots("/realm").size(), failed ? 0U : 1U);
    }
}

INSTANTIATE_TEST_SUITE_P(OfEveryKind, SnapshotStoreFaults,
                         testing::Combine(testing::Values(ENOSPC, EIO),
                                          testing::Values(FaultCalls::Span::once,
                                                          FaultCalls::Span::fromThenOn)));

TEST(SnapshotStoreSlowDisk, aSystemThatTakesFewBytesAtATimeStillGetsTheWholeFile)
{
    const test::TemporaryDirectory disk;
    const FileURL file(disk.path("snapshots.json"));
    FaultCalls slow;
    slow.longestWrite = 4'099;
    const ScanSnapshot snapshot = largeSnapshot(10);
    SnapshotStore(file, slow.calls()).save(snapshot);
    EXPECT_EQ(SnapshotStore(file).snapshots("/realm"), std::vector<ScanSnapshot>{snapshot});
}

}  // namespace gruk
