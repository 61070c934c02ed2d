#include <gtest/gtest.h>

#include <boost/json.hpp>
#include <functional>

#include "core/patrol/snapshot_store.h"
#include "tests/support/random_snapshot.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

namespace json = boost::json;

enum class Verdict { good, corrupt, otherError };

class SnapshotStoreCorruptionTest : public testing::Test {
protected:
    SnapshotStoreCorruptionTest()
    {
        // Every form of every field that a file can have.
        ScanSnapshot first = test::snapshotOf(
            {{"a \xff", 4'096, Date{1'700'000'000}, FileKind::folder, true},
             {"a \xff/b\"\\\n.png", 9'007'199'254'740'993, std::nullopt, FileKind::image, false},
             {"z", 0, Date{-1}, FileKind::other, false}},
            {{"a \xff/gone", ScanIssue::Reason::disappeared},
             {"m", ScanIssue::Reason::differentFilesystem}});
        first.rootPath = "/r\xfe";
        ScanSnapshot second = test::snapshotOf({});
        second.capturedAt = Date{-62'000'000'000};
        store.save(first);
        store.save(second);
        whole = disk.read("s.json");
    }

    /// What the store makes of a file: a listing and a save must agree and leave its bytes alone.
    Verdict verdict(const std::string& content)
    {
        disk.fileWith("s.json", content);
        const Verdict listing = outcome([this] { static_cast<void>(store.snapshots("/realm")); });
        const Verdict latest =
            outcome([this] { static_cast<void>(store.latestSnapshots("/other", 1)); });
        EXPECT_EQ(listing, latest);
        if (listing != Verdict::good) {
            EXPECT_EQ(outcome([this] { store.save(test::snapshotOf({})); }), listing);
            EXPECT_EQ(disk.read("s.json"), content);
        }
        return listing;
    }

    /// The file with its first `from` replaced.
    [[nodiscard]] std::string with(const std::string& from, const std::string& to) const
    {
        const std::size_t at = whole.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return std::string(whole).replace(at, from.size(), to);
    }

    static Verdict outcome(const std::function<void()>& operation)
    {
        try {
            operation();
            return Verdict::good;
        } catch (const SnapshotStoreError& error) {
            return error.which() == SnapshotStoreError::Case::corruptStore ? Verdict::corrupt
                                                                           : Verdict::otherError;
        } catch (const std::exception&) {
            return Verdict::otherError;
        }
    }

    test::TemporaryDirectory disk;
    SnapshotStore store{FileURL(disk.path("s.json"))};
    std::string whole;
};

/// Calls `visit` with every value of the tree in turn, its place in words, and the tree whole; the
/// value may be changed for the time of the call.
void forEachValue(json::value& value, const std::string& place,
                  const std::function<void(json::value&, const std::string&)>& visit)
{
    visit(value, place);
    if (json::object* object = value.if_object()) {
        for (auto& member : *object) {
            forEachValue(member.value(), place + "." + std::string(member.key()), visit);
        }
    } else if (json::array* array = value.if_array()) {
        for (std::size_t i = 0; i < array->size(); ++i) {
            forEachValue((*array)[i], place + "[" + std::to_string(i) + "]", visit);
        }
    }
}

bool isOfSameType(const json::value& a, const json::value& b)
{
    return a.kind() == b.kind() || (a.is_number() && b.is_number() && !b.is_double());
}

}  // namespace

TEST_F(SnapshotStoreCorruptionTest, theFileItselfIsGood)
{
    EXPECT_EQ(verdict(whole), Verdict::good);
    EXPECT_EQ(json::serialize(json::parse(whole)).empty(), false);
    EXPECT_EQ(verdict(json::serialize(json::parse(whole))), Verdict::good);
}

TEST_F(SnapshotStoreCorruptionTest, aFileCutOffAtAnyByteIsCorruptAndStaysAsItWas)
{
    // As Gruk writes it, and with a blank in front, as another program might.
    for (const std::string& content : {whole, " " + whole}) {
        for (std::size_t length = 0; length < content.size(); ++length) {
            ASSERT_EQ(verdict(content.substr(0, length)), Verdict::corrupt)
                << length << " of " << content.size();
        }
    }
}

TEST_F(SnapshotStoreCorruptionTest, aFileWithAnyValueOfAnotherTypeIsCorruptAndStaysAsItWas)
{
    json::value root = json::parse(whole);
    const json::value others[] = {nullptr,
                                  true,
                                  5,
                                  1.5,
                                  "x",
                                  json::array(),
                                  json::object(),
                                  json::array{1},
                                  json::object{{"a", 1}}};
    int replaced = 0;
    forEachValue(root, "", [&](json::value& value, const std::string& place) {
        const json::value former = value;
        for (const json::value& other : others) {
            if (!isOfSameType(former, other)) {
                ++replaced;
                value = other;
                for (const char* head : {"", " "}) {
                    EXPECT_EQ(verdict(head + json::serialize(root)), Verdict::corrupt)
                        << place << " = " << json::serialize(other);
                }
            }
        }
        value = former;
    });
    EXPECT_GT(replaced, 250);
}

TEST_F(SnapshotStoreCorruptionTest, aFileWithoutAnyOneKeyIsCorruptButForTheDateOfAnEntry)
{
    json::value root = json::parse(whole);
    int removed = 0;
    forEachValue(root, "", [&](json::value& value, const std::string& place) {
        json::object* object = value.if_object();
        if (object == nullptr) {
            return;
        }
        const json::object former = *object;
        for (const auto& member : former) {
            ++removed;
            object->erase(member.key());
            EXPECT_EQ(verdict(json::serialize(root)),
                      member.key() == "modifiedAt" ? Verdict::good : Verdict::corrupt)
                << place << "." << member.key();
            *object = former;
        }
    });
    EXPECT_GT(removed, 25);
}

TEST_F(SnapshotStoreCorruptionTest, aFileWithAnyByteChangedIsGoodOnlyWhereItIsStillJSON)
{
    const std::string bytes = std::string("\0\"\\{}[],: 0x\xff\n", 14);
    for (std::size_t i = 0; i < 3 * whole.size(); ++i) {
        std::string content = whole;
        content[i % whole.size()] = bytes[i % bytes.size()];
        boost::system::error_code error;
        static_cast<void>(json::parse(content, error));
        const Verdict found = verdict(content);
        ASSERT_NE(found, Verdict::otherError) << content;
        ASSERT_FALSE(error && found == Verdict::good) << content;
        ASSERT_EQ(verdict(" " + content), found) << content;
    }
}

TEST_F(SnapshotStoreCorruptionTest, valuesOfTheRightTypeThatAreOffAreCorrupt)
{
    const std::pair<std::string, std::string> changes[] = {
        {R"("schemaVersion":1)", R"("schemaVersion":0)"},
        {R"("schemaVersion":1)", R"("schemaVersion":18446744073709551617)"},
        {R"("kind":"image")", R"("kind":"picture")"},
        {R"("kind":"image")", R"("kind":"Image")"},
        {R"("reason":"disappeared")", R"("reason":"gone")"},
        {R"("allocatedSize":4096)", R"("allocatedSize":4096.5)"},
        {R"("allocatedSize":4096)", R"("allocatedSize":9223372036854775808)"},
        {R"("allocatedSize":4096)", R"("allocatedSize":04096)"},
        {R"("modifiedAt":"2023-11-14T22:13:20Z")", R"("modifiedAt":"2023-11-14")"},
        {R"("modifiedAt":"2023-11-14T22:13:20Z")", R"("modifiedAt":"2023-11-14T22:13:20+00:00")"},
        {R"("modifiedAt":"2023-11-14T22:13:20Z")", R"("modifiedAt":"2023-02-30T22:13:20Z")"},
        {R"("modifiedAt":"2023-11-14T22:13:20Z")", R"("modifiedAt":"")"},
        {R"("relativePath":"z")", R"("relativePath":"z\u0000")"},
        {R"("relativePath":"z")", R"("relativePath":"z\u00007a")"},
        {R"("relativePath":"z")", R"("relativePath":"z\ud800")"},
        {R"("relativePath":"z")", "\"relativePath\":\"z\xff\""},
        {R"("id":")", R"("id":"x)"},
    };
    for (const auto& [from, to] : changes) {
        EXPECT_EQ(verdict(with(from, to)), Verdict::corrupt) << to;
    }
}

TEST_F(SnapshotStoreCorruptionTest, aPathThatNoWalkCanFindIsCorruptForEveryRealm)
{
    for (const char* path : {"", "/z", "z/", "z//y", "z/../y", ".", "..", "z\\u0000"}) {
        EXPECT_EQ(verdict(with(R"("relativePath":"z")",
                               std::string("\"relativePath\":\"") + path + "\"")),
                  Verdict::corrupt)
            << path;
    }
}

TEST_F(SnapshotStoreCorruptionTest, aPathThatStandsTwiceIsCorruptForItsRealm)
{
    for (const char* path : {"a \\u0000ff", "a \\u0000ff/b\\\"\\\\\\n.png"}) {
        disk.fileWith("s.json", with(R"("relativePath":"z")",
                                     std::string("\"relativePath\":\"") + path + "\""));
        EXPECT_EQ(outcome([this] { static_cast<void>(store.snapshots("/r\xfe")); }),
                  Verdict::corrupt)
            << path;
    }
}

TEST_F(SnapshotStoreCorruptionTest, aKeyThatStandsTwiceInOneObjectIsCorrupt)
{
    for (const char* member :
         {R"("schemaVersion":1)", R"("snapshots":[])", R"("isComplete":true)", R"("issues":[])",
          R"("entries":[])", R"("kind":"image")", R"("isDirectory":false)", R"("allocatedSize":0)",
          R"("reason":"disappeared")", R"("relativePath":"z")"}) {
        const std::string text(member);
        const std::string key = text.substr(0, text.find(':') + 1);
        EXPECT_EQ(verdict(with(key, text + "," + key)), Verdict::corrupt) << member;
        EXPECT_EQ(verdict(" " + with(key, text + "," + key)), Verdict::corrupt) << member;
    }
}

TEST_F(SnapshotStoreCorruptionTest, anythingBehindTheEnvelopeIsCorrupt)
{
    for (const char* tail : {"x", "{}", "]", "}", ",", "\"", "1"}) {
        EXPECT_EQ(verdict(whole + tail), Verdict::corrupt) << tail;
    }
    EXPECT_EQ(verdict(whole + std::string(1, '\0')), Verdict::corrupt);
    EXPECT_EQ(verdict(" \n" + whole + " \n\t"), Verdict::good);
}

TEST_F(SnapshotStoreCorruptionTest, deepNestingIsCorruptAndNoOverflow)
{
    EXPECT_EQ(verdict(std::string(1'000'000, '[')), Verdict::corrupt);
    EXPECT_EQ(verdict(R"({"schemaVersion":1,"snapshots":[],"x":)" + std::string(1'000'000, '[')),
              Verdict::corrupt);
}

TEST_F(SnapshotStoreCorruptionTest, aPathThatStandsTwiceIsCorruptForEveryCall)
{
    const std::string entry =
        R"({"relativePath":"z","allocatedSize":0,"modifiedAt":"1969-12-31T23:59:59Z",)"
        R"("kind":"other","isDirectory":false})";
    // Side by side, apart, and in a form that only the general reader knows.
    for (const std::string& content : {with(entry, entry + "," + entry),
                                       with(R"("entries":[{)", R"("entries":[)" + entry + ",{"),
                                       " " + with(entry, entry + "," + entry)}) {
        EXPECT_EQ(verdict(content), Verdict::corrupt) << content;
        EXPECT_EQ(outcome([this] { static_cast<void>(store.lastCaptures()); }), Verdict::corrupt);
    }
}

TEST_F(SnapshotStoreCorruptionTest, entriesInAnotherOrderAreAStoreAndComeBackInOrder)
{
    const std::string entry =
        R"({"relativePath":"zz","allocatedSize":0,"kind":"other","isDirectory":false})";
    EXPECT_EQ(verdict(with(R"("entries":[{)", R"("entries":[)" + entry + ",{")), Verdict::good);
    const SnapshotEntries entries = store.snapshots("/r\xfe").front().entries;
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[3].relativePath, "zz");
    // A save writes it in the one form.
    store.save(test::snapshotOf({}));
    EXPECT_EQ(store.snapshots("/r\xfe").front().entries, entries);
    EXPECT_LT(disk.read("s.json").find(R"("z")"), disk.read("s.json").find(R"("zz")"));
}

TEST_F(SnapshotStoreCorruptionTest, aNegativeSizeIsCorrupt)
{
    for (const char* front : {"", " "}) {
        EXPECT_EQ(verdict(front + with(R"("allocatedSize":0)", R"("allocatedSize":-1)")),
                  Verdict::corrupt);
    }
}

TEST_F(SnapshotStoreCorruptionTest, sizesWhoseSumLeavesTheRangeAreCorrupt)
{
    // With the 9,007,199,254,745,089 bytes of the other two entries.
    const std::string most = "9214364837600030718";
    const std::string tooMany = "9214364837600030719";
    for (const char* front : {"", " "}) {
        const auto holding = [&](const std::string& size) {
            return front + with(R"("allocatedSize":0)", R"("allocatedSize":)" + size);
        };
        EXPECT_EQ(verdict(holding(most)), Verdict::good);
        EXPECT_EQ(verdict(holding(tooMany)), Verdict::corrupt);
    }
}

}  // namespace gruk
