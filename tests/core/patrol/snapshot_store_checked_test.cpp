#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "core/patrol/snapshot_store.h"
#include "platform/files/file_reader.h"
#include "tests/support/temporary_directory.h"

namespace gruk {
namespace {

namespace fs = std::filesystem;
using test::TemporaryDirectory;

/// A store that trusts what it found in its file as long as the file is untouched.
class SnapshotStoreCheckedTest : public testing::Test {
protected:
    void SetUp() override
    {
        store.save(snapshotAt(1));
        makeOld();
        ASSERT_EQ(store.snapshots("/r").size(), 1U);
    }

    static ScanSnapshot snapshotAt(double seconds)
    {
        return {UUID::random(),
                "/r",
                Date{seconds},
                SnapshotEntries{{"a", 4096, std::nullopt, FileKind::other, false}},
                {},
                true};
    }

    /// As if it had been written an hour ago.
    void makeOld() const
    {
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
    }

    /// Writes over the file's own bytes, which keeps its length.
    void damage(std::size_t at) const
    {
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(static_cast<std::streamoff>(at));
        file.put('\x01');
    }

    void expectCorrupt()
    {
        const std::string before = directory.read("snapshots.json");
        EXPECT_THROW(static_cast<void>(store.snapshots("/r")), SnapshotStoreError);
        EXPECT_THROW(store.save(snapshotAt(2)), SnapshotStoreError);
        EXPECT_EQ(directory.read("snapshots.json"), before);
    }

    TemporaryDirectory directory;
    std::string path = directory.path("snapshots.json");
    SnapshotStore store{FileURL(path)};
};

TEST_F(SnapshotStoreCheckedTest, noticesAByteThatWasChangedInPlace)
{
    damage(40);
    expectCorrupt();
}

TEST_F(SnapshotStoreCheckedTest, noticesAByteThatWasChangedAlsoWhenTheDateWasPutBack)
{
    const auto date = fs::last_write_time(path);
    damage(40);
    fs::last_write_time(path, date);
    expectCorrupt();
}

TEST_F(SnapshotStoreCheckedTest, noticesAnotherFileInItsPlace)
{
    directory.fileWith("other", R"({"schemaVersion":2,"snapshots":[]})");
    fs::rename(directory.path("other"), path);
    expectCorrupt();
}

TEST_F(SnapshotStoreCheckedTest, noticesAFileThatWasWrittenMomentsAgoAndAgainRightAfter)
{
    // Written now: two writes in a row may carry the same date.
    store.save(snapshotAt(2));
    ASSERT_EQ(store.snapshots("/r").size(), 2U);
    damage(40);
    expectCorrupt();
}

TEST_F(SnapshotStoreCheckedTest, readsOnFromWhatItFoundWhileTheFileIsUntouched)
{
    for (int i = 2; i < 12; ++i) {
        store.save(snapshotAt(i));
        makeOld();
        const auto snapshots = store.snapshots("/r");
        ASSERT_EQ(snapshots.size(), std::min<std::size_t>(8, static_cast<std::size_t>(i)));
        ASSERT_EQ(snapshots.back().capturedAt, Date{static_cast<double>(i)});
        ASSERT_EQ(store.snapshots("/r"), snapshots);
    }
}

TEST_F(SnapshotStoreCheckedTest, isEmptyAgainWhenTheFileIsTakenAway)
{
    fs::remove(path);
    EXPECT_TRUE(store.snapshots("/r").empty());
    store.save(snapshotAt(3));
    EXPECT_EQ(store.snapshots("/r").size(), 1U);
}

TEST_F(SnapshotStoreCheckedTest, aFileOfThisMomentIsNotTrustedThoughItsStampStaysTheSame)
{
    // A page that can be written to already is changed without a trace in the file's dates.
    const int file = ::open(path.c_str(), O_RDWR);
    ASSERT_GE(file, 0);
    constexpr std::size_t size = 64;
    void* const page = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    ASSERT_NE(page, MAP_FAILED);
    auto* const text = static_cast<volatile char*>(page);
    text[0] = text[0];
    // As if the clock stood still since: a date that has not passed yet.
    fs::last_write_time(path, fs::file_time_type::clock::now() + std::chrono::hours(1));
    ASSERT_EQ(store.snapshots("/r").size(), 1U);
    const FileStamp before = FileReader::open(FileURL(path))->stamp();
    text[40] = '\x01';
    const FileStamp after = FileReader::open(FileURL(path))->stamp();
    if (before == after) {
        expectCorrupt();
    }
    ::munmap(page, size);
    if (before != after) {
        GTEST_SKIP() << "this file system dates every change of a mapped page";
    }
}

}  // namespace
}  // namespace gruk
