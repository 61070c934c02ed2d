#include "core/patrol/snapshot_store.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <thread>

#include "platform/foundation/errors.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Case = SnapshotStoreError::Case;
using Snapshots = std::vector<ScanSnapshot>;

ScanSnapshot snapshot(const std::string& root, double capturedAt)
{
    ScanSnapshot result = test::snapshotOf({{"a", 1, Date{5}, FileKind::other, false}});
    result.rootPath = root;
    result.capturedAt = Date{capturedAt};
    return result;
}

template <typename Operation>
std::optional<Case> errorOf(const Operation& operation)
{
    try {
        operation();
    } catch (const SnapshotStoreError& error) {
        return error.which();
    }
    return std::nullopt;
}

class SnapshotStoreTest : public testing::Test {
protected:
    std::vector<double> dates(const std::string& root)
    {
        std::vector<double> result;
        for (const ScanSnapshot& one : store.snapshots(root)) {
            result.push_back(one.capturedAt.secondsSince1970);
        }
        return result;
    }

    /// Saves one snapshot of `root` at each of the dates.
    void saveAt(const std::string& root, std::initializer_list<double> captured)
    {
        for (const double date : captured) {
            store.save(snapshot(root, date));
        }
    }

    [[nodiscard]] std::string content() const { return disk.read("deep/er/snapshots.json"); }

    test::TemporaryDirectory disk;
    FileURL file{disk.path("deep/er/snapshots.json")};
    SnapshotStore store{file};
};

using Dates = std::vector<double>;

}  // namespace

TEST_F(SnapshotStoreTest, theFirstSaveCreatesTheDirectoryAndAFileOfSchemaVersionOne)
{
    EXPECT_FALSE(std::filesystem::exists(disk.path("deep")));
    store.save(snapshot("/realm", 10));
    EXPECT_TRUE(content().starts_with("{\"schemaVersion\":1,\"snapshots\":[{"));
    EXPECT_TRUE(content().ends_with("}]}"));
}

TEST_F(SnapshotStoreTest, aStoreOfItsOwnTouchesNoFile)
{
    EXPECT_FALSE(std::filesystem::exists(disk.path("deep")));
    EXPECT_TRUE(store.snapshots("/realm").empty());
    EXPECT_FALSE(std::filesystem::exists(disk.path("deep")));
}

TEST_F(SnapshotStoreTest, aSavedSnapshotComesBackEqual)
{
    const ScanSnapshot saved = snapshot("/realm", 10);
    store.save(saved);
    EXPECT_EQ(store.snapshots("/realm"), Snapshots{saved});
    EXPECT_EQ(SnapshotStore(file).snapshots("/realm"), Snapshots{saved});
}

TEST_F(SnapshotStoreTest, snapshotsComeOldestFirstByDateWhateverTheOrderOfSaving)
{
    saveAt("/realm", {30, 10, 20});
    EXPECT_EQ(dates("/realm"), (Dates{10, 20, 30}));
}

TEST_F(SnapshotStoreTest, theNinthSaveLeavesEightWithoutTheOldestEvenIfItStandsLastInTheFile)
{
    saveAt("/realm", {20, 30, 40, 50, 60, 70, 80, 10});
    ASSERT_EQ(dates("/realm").size(), 8U);
    saveAt("/realm", {90});
    EXPECT_EQ(dates("/realm"), (Dates{20, 30, 40, 50, 60, 70, 80, 90}));
}

TEST_F(SnapshotStoreTest, aLateSnapshotThatIsOlderThanEightOthersIsEvictedByItsOwnSave)
{
    saveAt("/realm", {20, 30, 40, 50, 60, 70, 80, 90});
    const std::string before = content();
    saveAt("/realm", {10});
    EXPECT_EQ(dates("/realm"), (Dates{20, 30, 40, 50, 60, 70, 80, 90}));
    EXPECT_EQ(content(), before);
}

TEST_F(SnapshotStoreTest, savingAnIdThatIsPresentReplacesItAndDoesNotRaiseTheCount)
{
    saveAt("/realm", {10, 20});
    ScanSnapshot replaced = store.snapshots("/realm").front();
    replaced.entries = SnapshotEntries{{"b", 2, std::nullopt, FileKind::pdf, false}};
    replaced.capturedAt = Date{30};
    store.save(replaced);
    const Snapshots stored = store.snapshots("/realm");
    ASSERT_EQ(stored.size(), 2U);
    EXPECT_EQ(stored.back(), replaced);
    EXPECT_EQ(stored.front().capturedAt, Date{20});
}

TEST_F(SnapshotStoreTest, savesForTwoRealmsNeverEvictEachOther)
{
    for (int i = 1; i <= 12; ++i) {
        saveAt("/a", {10.0 * i});
        saveAt("/a/b", {10.0 * i + 1});
    }
    EXPECT_EQ(dates("/a"), (Dates{50, 60, 70, 80, 90, 100, 110, 120}));
    EXPECT_EQ(dates("/a/b"), (Dates{51, 61, 71, 81, 91, 101, 111, 121}));
}

TEST_F(SnapshotStoreTest, rootsAreComparedByteForByte)
{
    saveAt("/realm", {10});
    for (const char* root : {"/realm/", "/Realm", "/realm/.", "/real", "", "/"}) {
        EXPECT_TRUE(store.snapshots(root).empty()) << root;
    }
    saveAt("/\xff", {20});
    saveAt("/\xfe", {30});
    EXPECT_EQ(dates("/\xff"), Dates{20});
}

TEST_F(SnapshotStoreTest, twoSnapshotsOfTheSameMomentKeepTheirOrder)
{
    const ScanSnapshot first = snapshot("/realm", 10);
    const ScanSnapshot second = snapshot("/realm", 10);
    const ScanSnapshot older = snapshot("/realm", 5);
    store.save(first);
    store.save(second);
    store.save(older);
    EXPECT_EQ(store.snapshots("/realm"), (Snapshots{older, first, second}));
}

TEST_F(SnapshotStoreTest, theLatestSnapshotsAreTheEndOfTheList)
{
    saveAt("/realm", {30, 10, 20, 20, 40});
    const Snapshots all = store.snapshots("/realm");
    for (std::size_t count = 0; count <= 6; ++count) {
        const auto kept = static_cast<std::ptrdiff_t>(std::min(count, all.size()));
        EXPECT_EQ(store.latestSnapshots("/realm", count), Snapshots(all.end() - kept, all.end()));
    }
    EXPECT_TRUE(store.latestSnapshots("/other", 3).empty());
}

TEST_F(SnapshotStoreTest, anIncompleteSnapshotIsRefusedAndTouchesNoFile)
{
    ScanSnapshot incomplete = snapshot("/realm", 10);
    incomplete.isComplete = false;
    EXPECT_EQ(errorOf([&] { store.save(incomplete); }), Case::incompleteSnapshot);
    EXPECT_FALSE(std::filesystem::exists(disk.path("deep")));
    // Asked before the file is read, so that a corrupt one does not matter.
    disk.fileWith("deep/er/snapshots.json", "x");
    EXPECT_EQ(errorOf([&] { store.save(incomplete); }), Case::incompleteSnapshot);
}

TEST_F(SnapshotStoreTest, aFileOfSchemaVersionTwoIsCorruptOnAListingAndOnASaveAndStaysAsItIs)
{
    const std::string newer = R"({"schemaVersion":2,"snapshots":[]})";
    disk.fileWith("deep/er/snapshots.json", newer);
    EXPECT_EQ(errorOf([&] { static_cast<void>(store.snapshots("/realm")); }), Case::corruptStore);
    EXPECT_EQ(errorOf([&] { store.save(snapshot("/realm", 10)); }), Case::corruptStore);
    EXPECT_EQ(content(), newer);
}

TEST_F(SnapshotStoreTest, anEmptyFileIsCorrupt)
{
    disk.fileWith("deep/er/snapshots.json", "");
    EXPECT_EQ(errorOf([&] { static_cast<void>(store.snapshots("/realm")); }), Case::corruptStore);
    EXPECT_EQ(errorOf([&] { store.save(snapshot("/realm", 10)); }), Case::corruptStore);
    EXPECT_EQ(content(), "");
}

TEST_F(SnapshotStoreTest, aStoreWithoutSnapshotsIsAnEmptyStore)
{
    disk.fileWith("deep/er/snapshots.json", R"({"schemaVersion":1,"snapshots":[]})");
    EXPECT_TRUE(store.snapshots("/realm").empty());
    saveAt("/realm", {10});
    EXPECT_EQ(dates("/realm"), Dates{10});
}

TEST_F(SnapshotStoreTest, somethingElseInThePlaceOfTheFileIsCorrupt)
{
    disk.folder("deep/er/snapshots.json");
    EXPECT_EQ(errorOf([&] { static_cast<void>(store.snapshots("/realm")); }), Case::corruptStore);
    EXPECT_EQ(errorOf([&] { store.save(snapshot("/realm", 10)); }), Case::corruptStore);
}

TEST_F(SnapshotStoreTest, aDirectoryThatCannotBeCreatedIsTheSystemsError)
{
    disk.file("deep");
    EXPECT_ANY_THROW(store.save(snapshot("/realm", 10)));
    EXPECT_TRUE(std::filesystem::is_regular_file(disk.path("deep")));
}

TEST_F(SnapshotStoreTest, afterTheCorruptFileIsTakenAwayTheStoreIsEmpty)
{
    disk.fileWith("deep/er/snapshots.json", "{");
    EXPECT_EQ(errorOf([&] { store.save(snapshot("/realm", 10)); }), Case::corruptStore);
    std::filesystem::remove(file.path());
    saveAt("/realm", {10});
    EXPECT_EQ(dates("/realm"), Dates{10});
}

TEST_F(SnapshotStoreTest, savesOfManyThreadsLoseNoSnapshot)
{
    constexpr int threads = 4;
    constexpr int saves = 8;
    {
        std::vector<std::jthread> savers;
        for (int t = 0; t < threads; ++t) {
            savers.emplace_back([this, t] {
                for (int i = 0; i < saves; ++i) {
                    store.save(snapshot("/realm " + std::to_string(t), i));
                    static_cast<void>(store.snapshots("/realm 0"));
                }
            });
        }
    }
    for (int t = 0; t < threads; ++t) {
        EXPECT_EQ(dates("/realm " + std::to_string(t)).size(), std::size_t{saves});
    }
}

TEST(SnapshotStorePermissions, aFolderThatMayNotBeWrittenIsTheSystemsErrorAndTheFileStays)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            SnapshotStore store(FileURL(folder.path("s/snapshots.json")));
            store.save(snapshot("/realm", 10));
            const std::string before = folder.read("s/snapshots.json");
            ::chmod(folder.path("s").c_str(), 0500);
            bool refused = false;
            try {
                store.save(snapshot("/realm", 20));
            } catch (const FileError& error) {
                refused = meaning(error) == ErrorMeaning::accessRefused;
            }
            ::chmod(folder.path("s").c_str(), 0700);
            return refused && folder.read("s/snapshots.json") == before
                   && store.snapshots("/realm").size() == 1;
        },
        disk));
}

TEST(SnapshotStorePermissions, aFileThatMayNotBeReadIsCorrupt)
{
    const test::TemporaryDirectory disk;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& folder) {
            SnapshotStore store(FileURL(folder.path("snapshots.json")));
            store.save(snapshot("/realm", 10));
            ::chmod(folder.path("snapshots.json").c_str(), 0);
            return errorOf([&] { static_cast<void>(store.snapshots("/realm")); })
                       == Case::corruptStore
                   && errorOf([&] { store.save(snapshot("/realm", 20)); }) == Case::corruptStore;
        },
        disk));
}

TEST_F(SnapshotStoreTest, anIdStandsOnceInTheWholeFileAlsoUnderAnotherRoot)
{
    saveAt("/a", {10, 20});
    ScanSnapshot moved = store.snapshots("/a").front();
    moved.rootPath = "/b";
    store.save(moved);
    EXPECT_EQ(store.snapshots("/b"), Snapshots{moved});
    EXPECT_EQ(dates("/a"), Dates{20});
}

}  // namespace gruk
