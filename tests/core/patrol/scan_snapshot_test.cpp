#include "core/patrol/scan_snapshot.h"

#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <limits>

#include "core/patrol/snapshot_store.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

/// The stored form of a snapshot, seen through the store that writes and reads it.

namespace gruk {

namespace {

namespace json = boost::json;

class ScanSnapshotTest : public testing::Test {
protected:
    /// The snapshot's object in the file that a save of it makes.
    json::object stored(const ScanSnapshot& snapshot)
    {
        store.save(snapshot);
        const json::value root = json::parse(disk.read("s.json"));
        return root.as_object().at("snapshots").as_array().back().as_object();
    }

    /// What comes back of a saved snapshot.
    ScanSnapshot returned(const ScanSnapshot& snapshot)
    {
        store.save(snapshot);
        return store.snapshots(snapshot.rootPath).back();
    }

    /// What the store reads from a file of one snapshot with these entries and issues.
    std::vector<ScanSnapshot> read(const std::string& entries, const std::string& issues = "[]")
    {
        disk.fileWith("s.json", R"({"snapshots":[{"issues":)" + issues
                                    + R"(,"capturedAt":"2026-11-20T08:05:09Z","isComplete":true,)"
                                    + R"("rootPath":"\/realm","entries":)" + entries
                                    + R"(,"id":"6d25a6bf-8a0a-4c7e-9c0f-1b5b4a5d0e01"}],)"
                                    + "\n \"schemaVersion\" : 1 }");
        return store.snapshots("/realm");
    }

    test::TemporaryDirectory disk;
    SnapshotStore store{FileURL(disk.path("s.json"))};
};

SnapshotEntry entry(const std::string& path, Bytes size, std::optional<Date> date = std::nullopt)
{
    return {path, size, date, FileKind::other, false};
}

}  // namespace

TEST_F(ScanSnapshotTest, everyFieldHasItsKeyAndNothingElseIsStored)
{
    ScanSnapshot snapshot =
        test::snapshotOf({{"a/b.png", 4'096, Date{1'700'000'000}, FileKind::image, false}},
                         {{"a/c", ScanIssue::Reason::permissionDenied}});
    snapshot.capturedAt = Date{1'700'000'001};
    const json::value expected = {
        {"id", snapshot.id.text()},
        {"rootPath", "/realm"},
        {"capturedAt", "2023-11-14T22:13:21Z"},
        {"entries", json::array{{{"relativePath", "a/b.png"},
                                 {"allocatedSize", 4'096},
                                 {"modifiedAt", "2023-11-14T22:13:20Z"},
                                 {"kind", "image"},
                                 {"isDirectory", false}}}},
        {"issues", json::array{{{"relativePath", "a/c"}, {"reason", "permissionDenied"}}}},
        {"isComplete", true}};
    EXPECT_EQ(json::value(stored(snapshot)), expected);
    EXPECT_EQ(disk.read("s.json").find_first_of(" \n\t"), std::string::npos);
}

TEST_F(ScanSnapshotTest, anEntryWithNoModificationDateEncodesWithNoKeyAndDecodesBackToNone)
{
    const ScanSnapshot snapshot = test::snapshotOf({entry("a", 1), entry("b", 1, Date{0})});
    const json::array entries = stored(snapshot).at("entries").as_array();
    EXPECT_FALSE(entries.at(0).as_object().contains("modifiedAt"));
    EXPECT_TRUE(entries.at(1).as_object().contains("modifiedAt"));
    EXPECT_EQ(returned(snapshot).entries, snapshot.entries);
}

TEST_F(ScanSnapshotTest, emptyEntriesAndIssuesEncodeAsEmptyArrays)
{
    const json::object object = stored(test::snapshotOf({}));
    EXPECT_EQ(object.at("entries"), json::array());
    EXPECT_EQ(object.at("issues"), json::array());
}

TEST_F(ScanSnapshotTest, aReasonOfGoneFailsTheDecodingOfTheWholeSnapshot)
{
    EXPECT_EQ(read("[]", R"([{"relativePath":"a","reason":"unreadable"}])").size(), 1U);
    EXPECT_THROW(read("[]", R"([{"relativePath":"a","reason":"gone"}])"), SnapshotStoreError);
}

TEST_F(ScanSnapshotTest, datesKeepWholeSecondsOnlyAfterBeingStored)
{
    ScanSnapshot snapshot = test::snapshotOf(
        {entry("a", 1, Date{1'000.999}), entry("b", 1, Date{-0.5}), entry("c", 1, Date{7})});
    snapshot.capturedAt = Date{2'000.5};
    const ScanSnapshot back = returned(snapshot);
    EXPECT_EQ(back.capturedAt, Date{2'000});
    EXPECT_EQ(back.entries[0].modifiedAt, Date{1'000});
    EXPECT_EQ(back.entries[1].modifiedAt, Date{-1});
    EXPECT_EQ(back.entries[2].modifiedAt, Date{7});
    // The snapshot at hand keeps what it had.
    EXPECT_EQ(snapshot.capturedAt, Date{2'000.5});
}

TEST_F(ScanSnapshotTest, datesFarFromNowComeBack)
{
    std::vector<SnapshotEntry> entries;
    int i = 0;
    for (const double seconds : {-2'208'988'800.0, -62'167'219'200.0, -62'167'219'201.0,
                                 4'294'967'296.0, 253'402'300'799.0, 253'402'300'800.0}) {
        entries.push_back(entry(std::to_string(i++), 1, Date{seconds}));
    }
    const ScanSnapshot snapshot = test::snapshotOf(entries);
    EXPECT_EQ(returned(snapshot).entries, snapshot.entries);
}

TEST_F(ScanSnapshotTest, sizesOfAll63BitsComeBack)
{
    const ScanSnapshot snapshot =
        test::snapshotOf({entry("a", std::numeric_limits<Bytes>::max() - 9'007'199'254'740'993),
                          entry("b", 9'007'199'254'740'993), entry("c", 0)});
    EXPECT_EQ(returned(snapshot).entries, snapshot.entries);
}

TEST_F(ScanSnapshotTest, everyKindAndReasonComesBack)
{
    std::vector<SnapshotEntry> entries;
    for (const FileKind kind : allFileKinds) {
        entries.push_back({std::string(rawString(kind)), 1, std::nullopt, kind, true});
    }
    std::vector<ScanIssue> issues;
    for (const auto reason :
         {ScanIssue::Reason::differentFilesystem, ScanIssue::Reason::disappeared,
          ScanIssue::Reason::permissionDenied, ScanIssue::Reason::unreadable}) {
        issues.push_back({"at " + std::string(rawString(reason)), reason});
    }
    const ScanSnapshot snapshot = test::snapshotOf(entries, issues);
    EXPECT_EQ(returned(snapshot), snapshot);
}

TEST_F(ScanSnapshotTest, pathsOfAnyBytesComeBack)
{
    std::vector<SnapshotEntry> entries;
    std::vector<ScanIssue> issues;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/') {
            const std::string name = "x" + std::string(1, static_cast<char>(byte)) + "y";
            entries.push_back(entry(name, byte));
            issues.push_back({name + "/z", ScanIssue::Reason::unreadable});
        }
    }
    for (const char* name : {"\u2028", "\u007f", "\U0001f417", "\xe2\x82", "\xed\xa0\x80",
                             "\\u0000", "\\\"", "\xc3\xa9\xff"}) {
        entries.push_back(entry(std::string("deep/er/") + name, 1));
    }
    ScanSnapshot snapshot = test::snapshotOf(entries, issues);
    snapshot.rootPath = "/realm of \"\xff\"\n";
    EXPECT_EQ(returned(snapshot), snapshot);
}

TEST_F(ScanSnapshotTest, aFileInAnotherOrderAndLayoutIsReadAllTheSame)
{
    const auto snapshots = read(R"( [ {"isDirectory" : false, "kind":"pd\u0066",
        "allocatedSize":7 , "relativePath":"b\/\u00e9", "further":[{"x":null}]},
        {"kind":"folder","modifiedAt":"1969-12-31T23:59:59Z","relativePath":"b","isDirectory":true,
         "allocatedSize":-0}])");
    ASSERT_EQ(snapshots.size(), 1U);
    const SnapshotEntries expected = {{"b", 0, Date{-1}, FileKind::folder, true},
                                      {"b/\u00e9", 7, std::nullopt, FileKind::pdf, false}};
    EXPECT_EQ(snapshots[0].entries, expected);
    EXPECT_EQ(snapshots[0].capturedAt, *iso8601::parse("2026-11-20T08:05:09Z"));
    // And it passes through a save.
    store.save(test::snapshotOf({}));
    ASSERT_EQ(store.snapshots("/realm").size(), 2U);
    EXPECT_EQ(store.snapshots("/realm").back(), snapshots[0]);
}

TEST_F(ScanSnapshotTest, aSnapshotThatIsMarkedAsIncompleteIsReadAsSuch)
{
    ScanSnapshot snapshot = test::snapshotOf({});
    store.save(snapshot);
    std::string content = disk.read("s.json");
    const std::string mark = "\"isComplete\":true";
    content.replace(content.find(mark), mark.size(), "\"isComplete\":false");
    disk.fileWith("s.json", content);
    snapshot.isComplete = false;
    EXPECT_EQ(store.snapshots("/realm"), std::vector<ScanSnapshot>{snapshot});
}

TEST_F(ScanSnapshotTest, randomSnapshotsComeBackThroughTheFile)
{
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        SeededGenerator draw(seed);
        const auto entries = test::randomEntries(draw, draw.bounded(60));
        ScanSnapshot snapshot = test::snapshotOf(entries, test::randomIssues(draw, entries));
        snapshot.capturedAt.secondsSince1970 += static_cast<double>(seed);
        ASSERT_EQ(returned(snapshot), snapshot) << "seed " << seed;
    }
    EXPECT_EQ(store.snapshots("/realm").size(), SnapshotStore::snapshotsKeptPerRealm);
}

}  // namespace gruk
