#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "core/patrol/snapshot_store.h"
#include "platform/foundation/errors.h"
#include "tests/support/fault_calls.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

ScanSnapshot snapshotAt(const std::string& root, double capturedAt)
{
    ScanSnapshot result = test::snapshotOf({{"a", 1, Date{5}, FileKind::other, false},
                                            {"b", 2, std::nullopt, FileKind::image, false}});
    result.id = UUID::random();
    result.rootPath = root;
    result.capturedAt = Date{capturedAt};
    return result;
}

/// One store with the snapshots of several realms, mixed.
class SnapshotStoreRealms : public testing::Test {
protected:
    void save(const std::string& root, std::initializer_list<double> captured)
    {
        for (const double date : captured) {
            saved.push_back(snapshotAt(root, date));
            store.save(saved.back());
        }
    }
    [[nodiscard]] std::vector<ScanSnapshot> of(const std::string& root) const
    {
        std::vector<ScanSnapshot> result;
        std::copy_if(saved.begin(), saved.end(), std::back_inserter(result),
                     [&](const ScanSnapshot& one) { return one.rootPath == root; });
        return result;
    }
    [[nodiscard]] std::string content() const { return disk.read("app/snapshots.json"); }
    void write(const std::string& text) const
    {
        std::ofstream(file.path(), std::ios::binary) << text;
    }
    /// The same store in a form that Gruk does not write.
    void loosen()
    {
        std::string text = content();
        text.insert(1, " ");
        write(text);
    }
    [[nodiscard]] std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const auto& item : std::filesystem::directory_iterator(disk.path("app"))) {
            result.push_back(item.path().filename());
        }
        std::sort(result.begin(), result.end());
        return result;
    }

    test::TemporaryDirectory disk;
    FileURL file{disk.path("app/snapshots.json")};
    SnapshotStore store{file};
    std::vector<ScanSnapshot> saved;
};

const std::string oddName = std::string("/r\"e\\a") + '\x01' + "\xFF é";

}  // namespace

TEST_F(SnapshotStoreRealms, aForgottenRealmIsGoneAndTheOthersStayToTheByte)
{
    save("/a", {1, 2});
    save("/a/b", {3});
    const std::string without = content();
    save("/gone", {4, 5});
    store.forget("/gone");
    EXPECT_EQ(content(), without);
    EXPECT_TRUE(store.snapshots("/gone").empty());
    EXPECT_EQ(store.snapshots("/a"), of("/a"));
    EXPECT_EQ(store.snapshots("/a/b"), of("/a/b"));
}

TEST_F(SnapshotStoreRealms, forgettingTheOnlyRealmLeavesAnEmptyStore)
{
    save("/a", {1});
    store.forget("/a");
    EXPECT_EQ(content(), R"({"schemaVersion":1,"snapshots":[]})");
    save("/a", {2});
    EXPECT_EQ(store.snapshots("/a").size(), 1U);
}

TEST_F(SnapshotStoreRealms, forgettingWhatIsNotThereWritesNothing)
{
    store.forget("/a");
    EXPECT_FALSE(std::filesystem::exists(file.path()));
    save("/a", {1});
    test::FaultCalls counted;
    SnapshotStore(file, counted.calls()).forget("/a/");
    EXPECT_TRUE(counted.names().empty());
}

TEST_F(SnapshotStoreRealms, aRealmThatIsTakenBackBeforeTheReplacementIsNotForgotten)
{
    save("/a", {1});
    const std::string before = content();
    std::stop_source takenBack;
    test::FaultCalls faults;
    // While the new file is being written.
    faults.before = [&](std::size_t) { takenBack.request_stop(); };
    EXPECT_THROW(SnapshotStore(file, faults.calls()).forget("/a", takenBack.get_token()),
                 CancelledError);
    EXPECT_EQ(content(), before);
    EXPECT_EQ(names(), std::vector<std::string>{"snapshots.json"});
}

TEST_F(SnapshotStoreRealms, aRealmsSnapshotsMoveToAnotherPathAndNothingElseChanges)
{
    save("/a", {1, 2});
    save("/b", {3});
    const std::vector<UUID> moved = store.move("/a", oddName);
    EXPECT_EQ(moved, (std::vector<UUID>{of("/a")[0].id, of("/a")[1].id}));
    EXPECT_TRUE(store.snapshots("/a").empty());
    std::vector<ScanSnapshot> expected = of("/a");
    for (ScanSnapshot& one : expected) {
        one.rootPath = oddName;
    }
    EXPECT_EQ(store.snapshots(oddName), expected);
    EXPECT_EQ(store.snapshots("/b"), of("/b"));

    // And back, from a name that is written with escapes.
    store.move(oddName, "/a");
    EXPECT_EQ(store.snapshots("/a"), of("/a"));
    const std::string text = content();
    SnapshotStore(FileURL(disk.path("fresh.json"))).save(of("/a")[0]);
    for (const ScanSnapshot& one : saved) {
        SnapshotStore(FileURL(disk.path("again.json"))).save(one);
    }
    EXPECT_EQ(text, disk.read("again.json")) << "the form is the one that Gruk gives it";
}

TEST_F(SnapshotStoreRealms, whatMovesComesBesideWhatIsThereAndGoesBackAlone)
{
    save("/a", {1, 3, 5, 7, 9, 11});
    save("/b", {2, 4, 6, 8});
    const std::vector<UUID> moved = store.move("/a", "/b");
    EXPECT_EQ(moved.size(), 6U);
    EXPECT_EQ(store.snapshots("/b").size(), 10U) << "none is lost before the next patrol";
    store.moveBack(moved, "/b", "/a");
    EXPECT_EQ(store.snapshots("/a"), of("/a"));
    EXPECT_EQ(store.snapshots("/b"), of("/b"));
    store.move("/a", "/b");
    store.save(snapshotAt("/b", 20));
    EXPECT_EQ(store.snapshots("/b").size(), SnapshotStore::snapshotsKeptPerRealm);
    EXPECT_EQ(store.snapshots("/b").back().capturedAt, Date{20});
}

TEST_F(SnapshotStoreRealms, aStoreInAnotherFormForgetsAndMovesAsWell)
{
    save("/a", {1, 2});
    save("/b", {3});
    save("/c", {4});
    loosen();
    store.forget("/b");
    EXPECT_TRUE(store.snapshots("/b").empty());
    loosen();
    EXPECT_EQ(store.move("/a", "/moved").size(), 2U);
    EXPECT_EQ(store.snapshots("/moved").size(), 2U);
    EXPECT_EQ(store.snapshots("/c"), of("/c"));
}

TEST_F(SnapshotStoreRealms, tellsWhatTheFileAndEachRealmOfItTake)
{
    EXPECT_EQ(store.shares(), StoreShares());
    save("/a", {1, 2});
    save("/b", {3});
    const StoreShares shares = store.shares();
    EXPECT_EQ(shares.fileBytes, content().size());
    ASSERT_EQ(shares.realms.size(), 2U);
    EXPECT_EQ(shares.realms.at("/a").snapshots, 2U);
    EXPECT_EQ(shares.realms.at("/a").bytes, 2 * shares.realms.at("/b").bytes);
    const std::size_t frame = std::string_view(R"({"schemaVersion":1,"snapshots":[,,]})").size();
    EXPECT_EQ(shares.realms.at("/a").bytes + shares.realms.at("/b").bytes + frame,
              shares.fileBytes);
    loosen();
    EXPECT_EQ(store.shares().realms, shares.realms);
}

TEST_F(SnapshotStoreRealms, aDamagedStoreRefusesAllOfThisAndStaysAsItIs)
{
    save("/a", {1});
    write("{");
    EXPECT_THROW(store.forget("/a"), SnapshotStoreError);
    EXPECT_THROW(store.move("/a", "/b"), SnapshotStoreError);
    EXPECT_THROW(static_cast<void>(store.shares()), SnapshotStoreError);
    EXPECT_EQ(content(), "{");
}

TEST_F(SnapshotStoreRealms, aDamagedStoreIsSetAsideByRenamingAndANewOneBegins)
{
    save("/a", {1});
    for (const char* aside : {"snapshots.json.damaged", "snapshots.json.damaged.2"}) {
        const std::string damage = std::string("damage of ") + aside;
        write(damage);
        EXPECT_EQ(store.setAside(), FileURL(disk.path(std::string("app/") + aside)));
        EXPECT_EQ(disk.read(std::string("app/") + aside), damage);
        EXPECT_TRUE(store.snapshots("/a").empty());
        save("/a", {2});
        EXPECT_EQ(store.snapshots("/a").size(), 1U);
    }
}

TEST_F(SnapshotStoreRealms, aStoreThatIsSoundIsNotSetAside)
{
    EXPECT_EQ(store.setAside(), std::nullopt);
    save("/a", {1});
    EXPECT_EQ(store.setAside(), std::nullopt);
    EXPECT_EQ(names(), std::vector<std::string>{"snapshots.json"});
}

TEST_F(SnapshotStoreRealms, aFaultAtAnyCallLeavesTheOldStoreOrTheNewOneWhole)
{
    const auto forgets = [](SnapshotStore& faulty) { faulty.forget("/a"); };
    const auto moves = [](SnapshotStore& faulty) { faulty.move("/a", "/c"); };
    for (const std::function<void(SnapshotStore&)>& change :
         {std::function<void(SnapshotStore&)>(forgets),
          std::function<void(SnapshotStore&)>(moves)}) {
        bool wasReached = true;
        for (std::size_t number = 0; wasReached; ++number) {
            std::filesystem::remove(file.path());
            save("/a", {1, 2});
            save("/b", {3});
            const std::string before = content();
            test::FaultCalls faults;
            faults.failAt = number;
            faults.error = ENOSPC;
            SnapshotStore faulty(file, faults.calls());
            bool failed = false;
            try {
                change(faulty);
            } catch (const FileError&) {
                failed = true;
            }
            wasReached = faults.names().size() > number;
            EXPECT_EQ(content() == before, failed) << "call " << number;
            EXPECT_EQ(store.snapshots("/b").size(), 1U) << "call " << number;
            EXPECT_EQ(names(), std::vector<std::string>{"snapshots.json"});
        }
    }
}

}  // namespace gruk
