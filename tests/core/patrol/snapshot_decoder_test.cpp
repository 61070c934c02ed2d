#include "core/patrol/snapshot_decoder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/patrol/canonical_reader.h"
#include "core/patrol/general_reader.h"
#include "core/patrol/snapshot_encoder.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/snapshot_store.h"
#include "tests/support/temporary_directory.h"

namespace gruk {
namespace {

using test::TemporaryDirectory;

std::string textOf(const std::vector<ScanSnapshot>& snapshots)
{
    std::string text(SnapshotEncoder::storeHead);
    for (const ScanSnapshot& snapshot : snapshots) {
        if (text.size() > SnapshotEncoder::storeHead.size()) {
            text += SnapshotEncoder::betweenSnapshots;
        }
        SnapshotEncoder::encode(snapshot, [&](std::string_view piece) { text += piece; });
    }
    return text.append(SnapshotEncoder::storeTail);
}

/// A snapshot with every kind of value in it.
ScanSnapshot richSnapshot(std::mt19937& random)
{
    static const std::vector<std::string> names = {
        "a",           "B",         "report (1).pdf", "quote\"d",   "back\\slash",
        "line\nbreak", "caf\u00e9", "\u65e5\u672c",   "\U0001f642", "\xff\xfe",
        "half\xc3",    "\x01",      "del\x7f",        ".hidden"};
    static const std::vector<double> dates = {
        0, -1, -62'135'596'800.0, 1.7e9, 1.7e9 + 59, 4'294'967'296.0, 9'999'999'999.0, 1e12};
    std::vector<SnapshotEntry> entries;
    for (const std::string& top : names) {
        if (random() % 3 != 0) {
            continue;
        }
        entries.push_back(
            {top, static_cast<Bytes>(random() % 1'000'000), std::nullopt, FileKind::folder, true});
        for (const std::string& name : names) {
            if (random() % 3 == 0) {
                const auto size = static_cast<Bytes>(random());
                const auto date = random() % 4 == 0
                                      ? std::nullopt
                                      : std::optional(Date{dates[random() % dates.size()]});
                entries.push_back({top + "/" + name, size, date,
                                   allFileKinds[random() % allFileKinds.size()],
                                   random() % 2 == 0});
            }
        }
    }
    ScanSnapshot snapshot{UUID::random(),
                          "/realm/" + names[random() % names.size()],
                          Date{1.79e9},
                          SnapshotEntries(entries),
                          {},
                          random() % 5 != 0};
    for (unsigned i = 0; i < random() % 4; ++i) {
        snapshot.issues.push_back(
            {names[random() % names.size()], static_cast<ScanIssue::Reason>(random() % 4)});
    }
    return snapshot;
}

std::vector<ScanSnapshot> richSnapshots(std::mt19937& random)
{
    std::vector<ScanSnapshot> snapshots;
    for (unsigned i = 0; i < 1 + random() % 3; ++i) {
        snapshots.push_back(richSnapshot(random));
    }
    return snapshots;
}

/// A file with that content, opened.
FileReader opened(const TemporaryDirectory& directory, const std::string& text)
{
    return std::move(*FileReader::open(FileURL(directory.fileWith("store", text))));
}

/// All snapshots of the text as the general reader has them; none when it is no store.
std::optional<std::vector<ScanSnapshot>> generally(const TemporaryDirectory& directory,
                                                   const std::string& text)
{
    FileReader file = opened(directory, text);
    std::vector<ScanSnapshot> snapshots;
    const bool isStore = GeneralReader::read(
        file, [](std::size_t) { return true; },
        [&](const StoredSnapshot&, ScanSnapshot&& one) { snapshots.push_back(std::move(one)); });
    return isStore ? std::optional(std::move(snapshots)) : std::nullopt;
}

/// The same by the reader of the one form.
std::optional<std::vector<ScanSnapshot>> canonically(const TemporaryDirectory& directory,
                                                     const std::string& text)
{
    FileReader file = opened(directory, text);
    const auto found = CanonicalReader(file).check();
    if (!found) {
        return std::nullopt;
    }
    std::vector<ScanSnapshot> snapshots;
    for (const StoredSnapshot& stored : *found) {
        try {
            auto snapshot = CanonicalReader(file).build(stored.begin);
            EXPECT_TRUE(snapshot) << "checked, but not to be built";
            snapshots.push_back(std::move(*snapshot));
        } catch (const InvalidEntryPath&) {
            return std::nullopt;
        }
        EXPECT_EQ(snapshots.back().id, stored.id);
        EXPECT_EQ(snapshots.back().rootPath, stored.rootPath);
        EXPECT_EQ(snapshots.back().capturedAt, stored.capturedAt);
        EXPECT_EQ(text[stored.begin], '{');
        EXPECT_EQ(text[stored.end - 1], '}');
    }
    return snapshots;
}

TEST(SnapshotDecoder, readsBackWhatTheEncoderWroteByBothWays)
{
    const TemporaryDirectory directory;
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        const std::vector<ScanSnapshot> snapshots = richSnapshots(random);
        const std::string text = textOf(snapshots);
        ASSERT_EQ(canonically(directory, text), snapshots) << text;
        ASSERT_EQ(generally(directory, text), snapshots) << text;
    }
}

TEST(SnapshotDecoder, neverTakesByTheFastWayWhatTheGeneralWayRefusesOrReadsOtherwise)
{
    const TemporaryDirectory directory;
    std::mt19937 random(2);
    int taken = 0;
    for (int round = 0; round < 1'000; ++round) {
        std::string text = textOf(richSnapshots(random));
        const auto place = random() % text.size();
        switch (random() % 4) {
        case 0:
            text[place] = static_cast<char>(random());
            break;
        case 1:
            text.erase(place, 1 + random() % 20);
            break;
        case 2:
            text.insert(place, 1, "\"\\,:{}[]0u/ \xc3"[random() % 13]);
            break;
        default:
            text[place] = static_cast<char>(text[place] ^ (1 << random() % 7));
            break;
        }
        const auto fast = canonically(directory, text);
        if (fast) {
            ++taken;
            ASSERT_EQ(fast, generally(directory, text)) << text;
        }
    }
    EXPECT_GT(taken, 40) << "the changes left too few stores whole to compare anything";
}

TEST(SnapshotDecoder, readsEntriesLongerThanWhatIsReadAtOnce)
{
    const TemporaryDirectory directory;
    std::string path;
    for (int level = 0; level < 3'000; ++level) {
        path += (level > 0 ? "/" : "") + std::string(255, level % 2 == 0 ? '\xff' : 'x');
    }
    std::vector<SnapshotEntry> entries;
    for (int i = 0; i < 6'000; ++i) {
        entries.push_back({"file" + std::to_string(i), i, Date{1.6e9 + i}, FileKind::pdf, false});
    }
    entries.push_back({"z/" + path.substr(0, 60'000), 9, std::nullopt, FileKind::other, false});
    const std::vector<ScanSnapshot> snapshots = {
        {UUID::random(), "/r", Date{1e9}, SnapshotEntries(entries), {}, true}};
    const std::string text = textOf(snapshots);
    EXPECT_EQ(canonically(directory, text), snapshots);
}

/// A store large enough to be checked in two halves.
std::string largeStore(int snapshots)
{
    std::vector<SnapshotEntry> entries;
    for (int i = 0; i < 60'000; ++i) {
        // Names that look like what stands between two snapshots.
        entries.push_back(
            {"},{\"id\":\"" + std::to_string(i), i, Date{1.6e9 + i}, FileKind::pdf, false});
    }
    std::vector<ScanSnapshot> list;
    for (int i = 0; i < snapshots; ++i) {
        list.push_back({UUID::random(),
                        "/r" + std::to_string(i),
                        Date{1e9 + i},
                        SnapshotEntries(entries),
                        {},
                        true});
    }
    return textOf(list);
}

TEST(SnapshotDecoder, findsTheSameInALargeStoreThatIsCheckedInTwoHalves)
{
    const TemporaryDirectory directory;
    for (const int count : {1, 2, 3, 5}) {
        const std::string text = largeStore(count);
        ASSERT_TRUE(count < 3 || text.size() > 17'000'000) << "too small for two halves";
        FileReader file = opened(directory, text);
        const auto found = CanonicalReader(file).check();
        ASSERT_TRUE(found);
        ASSERT_EQ(found->size(), static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            const StoredSnapshot& one = (*found)[static_cast<std::size_t>(i)];
            EXPECT_EQ(one.rootPath, "/r" + std::to_string(i));
            EXPECT_EQ(one.ordinal, static_cast<std::size_t>(i));
            EXPECT_EQ(text.substr(one.begin, 7), R"({"id":")");
            EXPECT_EQ(text[one.end - 1], '}');
        }
    }
}

TEST(SnapshotDecoder, refusesALargeStoreWithAFaultInEitherHalf)
{
    const TemporaryDirectory directory;
    const std::string whole = largeStore(4);
    for (const double place : {0.0, 0.1, 0.3, 0.49, 0.51, 0.7, 0.9, 1.0}) {
        std::string text = whole;
        const auto at = static_cast<std::size_t>(place * static_cast<double>(text.size() - 1));
        text[at] = text[at] == '\x01' ? '\x02' : '\x01';
        FileReader file = opened(directory, text);
        EXPECT_FALSE(CanonicalReader(file).check()) << place;
        EXPECT_THROW(static_cast<void>(SnapshotDecoder::check(file)), SnapshotStoreError);
    }
}

TEST(SnapshotDecoder, readsAnyFormThatJSONAllows)
{
    const TemporaryDirectory directory;
    const std::string text = R"( {
        "made by" : {"hand": [1, 2.5, null, {"deep": ["x"]}]},
        "snapshots" : [ {
            "isComplete" : true, "note": null,
            "issues" : [ {"reason":"unreadable", "relativePath":"b", "more": 1e9} ],
            "entries" : [
                { "isDirectory": false, "kind":"pdf", "allocatedSize": 7, "relativePath":"b" },
                { "relativePath":"\u0061\/x", "allocatedSize": 4096, "kind":"other",
                  "isDirectory": false, "modifiedAt": "2026-11-20T08:05:09Z" } ],
            "capturedAt" : "2026-11-20T08:05:10Z",
            "rootPath" : "/home/caf\u00e9",
            "id" : "6F9619FF-8B86-D011-B42D-00C04FC964FF"
        } ],
        "schemaVersion" : 1 } )"
                             "\n";
    FileReader file = opened(directory, text);
    const StoreContents contents = SnapshotDecoder::check(file);
    EXPECT_FALSE(contents.isCanonical);
    ASSERT_EQ(contents.snapshots.size(), 1U);
    std::vector<ScanSnapshot> built;
    SnapshotDecoder::build(file, contents, contents.snapshots,
                           [&](ScanSnapshot&& one) { built.push_back(one); });
    ASSERT_EQ(built.size(), 1U);
    EXPECT_EQ(built[0].rootPath, "/home/caf\u00e9");
    ASSERT_EQ(built[0].entries.size(), 2U);
    EXPECT_EQ(built[0].entries[0].relativePath, "a/x");
    EXPECT_EQ(built[0].entries[0].modifiedAt, iso8601::parse("2026-11-20T08:05:09Z"));
    EXPECT_EQ(built[0].issues, (std::vector<ScanIssue>{{"b", ScanIssue::Reason::unreadable}}));
}

TEST(SnapshotDecoder, refusesWhatIsNoStore)
{
    const TemporaryDirectory directory;
    const std::string entry =
        R"({"relativePath":"a","allocatedSize":1,"kind":"pdf","isDirectory":false})";
    const auto withEntry = [](const std::string& one) {
        return R"({"schemaVersion":1,"snapshots":[{"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF",)"
               R"("rootPath":"/r","capturedAt":"2026-11-20T08:05:10Z","entries":[)"
               + one + R"(],"issues":[],"isComplete":true}]})";
    };
    ASSERT_TRUE(canonically(directory, withEntry(entry)));
    const std::vector<std::string> texts = {
        "",
        " ",
        "null",
        "[]",
        "{}",
        R"({"schemaVersion":1})",
        R"({"snapshots":[]})",
        R"({"schemaVersion":2,"snapshots":[]})",
        R"({"schemaVersion":1.0,"snapshots":[]})",
        R"({"schemaVersion":"1","snapshots":[]})",
        R"({"schemaVersion":1,"snapshots":{}})",
        R"({"schemaVersion":1,"snapshots":[]}x)",
        R"({"schemaVersion":1,"snapshots":[],})",
        R"({"schemaVersion":1,"schemaVersion":1,"snapshots":[]})",
        R"({"schemaVersion":1,"snapshots":[1]})",
        R"({"schemaVersion":1,"snapshots":[null]})",
        withEntry("1"),
        withEntry("{}"),
        withEntry(entry + ","),
        withEntry(entry + entry),
        withEntry(R"({"relativePath":"a","allocatedSize":01,"kind":"pdf","isDirectory":false})"),
        withEntry(R"({"relativePath":"a","allocatedSize":+1,"kind":"pdf","isDirectory":false})"),
        withEntry(
            R"({"relativePath":"a","allocatedSize":9223372036854775808,"kind":"pdf","isDirectory":false})"),
        withEntry(R"({"relativePath":"a","allocatedSize":1,"kind":"PDF","isDirectory":false})"),
        withEntry(R"({"relativePath":"a","allocatedSize":1,"kind":"pdf","isDirectory":0})"),
        withEntry(
            R"({"relativePath":"a","allocatedSize":1,"modifiedAt":null,"kind":"pdf","isDirectory":false})"),
        withEntry(
            R"({"relativePath":"a","allocatedSize":1,"modifiedAt":"2026-02-30T00:00:00Z","kind":"pdf","isDirectory":false})"),
        withEntry(
            R"({"relativePath":"\ud800","allocatedSize":1,"kind":"pdf","isDirectory":false})"),
        withEntry(
            R"({"relativePath":"\u0000zz","allocatedSize":1,"kind":"pdf","isDirectory":false})"),
        withEntry("{\"relativePath\":\"\xff\",\"allocatedSize\":1,\"kind\":\"pdf\",\"isDirectory\":"
                  "false}"),
    };
    for (const std::string& text : texts) {
        FileReader file = opened(directory, text);
        try {
            static_cast<void>(SnapshotDecoder::check(file));
            ADD_FAILURE() << "taken: " << text;
        } catch (const SnapshotStoreError& error) {
            EXPECT_EQ(error.which(), SnapshotStoreError::Case::corruptStore);
        }
    }
}

TEST(SnapshotDecoder, refusesASnapshotWithAPathThatStandsTwice)
{
    const TemporaryDirectory directory;
    ScanSnapshot snapshot{UUID::random(), "/r", Date{1e9}, {}, {}, true};
    snapshot.entries = SnapshotEntries{{"a", 1, std::nullopt, FileKind::other, false},
                                       {"b", 1, std::nullopt, FileKind::other, false}};
    std::string text = textOf({snapshot});
    text[text.find("\"b\"") + 1] = 'a';
    FileReader file = opened(directory, text);
    EXPECT_THROW(static_cast<void>(SnapshotDecoder::check(file)), SnapshotStoreError);
}

TEST(SnapshotDecoder, putsPathsInOrderThatStandInAnother)
{
    const TemporaryDirectory directory;
    ScanSnapshot snapshot{UUID::random(), "/r", Date{1e9}, {}, {}, true};
    snapshot.entries = SnapshotEntries{{"a", 1, std::nullopt, FileKind::other, false},
                                       {"b", 2, std::nullopt, FileKind::other, false}};
    std::string text = textOf({snapshot});
    text[text.find("\"a\"") + 1] = 'c';
    EXPECT_FALSE(canonically(directory, text));
    const auto built = generally(directory, text);
    ASSERT_TRUE(built);
    EXPECT_EQ((*built)[0].entries[0].relativePath, "b");
    EXPECT_EQ((*built)[0].entries[1].relativePath, "c");
}

}  // namespace
}  // namespace gruk
