#include "core/patrol/snapshot_encoder.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace gruk {
namespace {

ScanSnapshot snapshotOf(std::size_t count)
{
    std::vector<SnapshotEntry> entries;
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back({"file" + std::to_string(i), static_cast<Bytes>(i),
                           Date{1.7e9 + static_cast<double>(i) * 3'600}, FileKind::pdf, false});
    }
    return {UUID::random(), "/r", Date{1.79e9}, SnapshotEntries(entries), {}, true};
}

std::string encoded(const ScanSnapshot& snapshot)
{
    std::string text;
    SnapshotEncoder::encode(snapshot, [&](std::string_view piece) { text += piece; });
    return text;
}

TEST(SnapshotEncoder, writesTheKeysInDeclaredOrderAndCompact)
{
    ScanSnapshot snapshot = snapshotOf(0);
    snapshot.id = *UUID::parse("6F9619FF-8B86-D011-B42D-00C04FC964FF");
    snapshot.entries = SnapshotEntries{
        {"a", 4096, std::nullopt, FileKind::folder, true},
        {"a/b \"c\"\n\xff.pdf", 4096, Date{1'763'625'909.75}, FileKind::pdf, false}};
    snapshot.issues = {{"z", ScanIssue::Reason::permissionDenied}};
    EXPECT_EQ(encoded(snapshot),
              R"({"id":"6F9619FF-8B86-D011-B42D-00C04FC964FF","rootPath":"/r",)"
              R"("capturedAt":"2026-09-21T14:13:20Z","entries":[)"
              R"({"relativePath":"a","allocatedSize":4096,"kind":"folder","isDirectory":true},)"
              R"({"relativePath":"a/b \"c\"\u000a\u0000ff.pdf","allocatedSize":4096,)"
              R"("modifiedAt":"2025-11-20T08:05:09Z","kind":"pdf","isDirectory":false}],)"
              R"("issues":[{"relativePath":"z","reason":"permissionDenied"}],"isComplete":true})");
}

TEST(SnapshotEncoder, writesEmptyListsAsEmptyLists)
{
    const std::string text = encoded(snapshotOf(0));
    EXPECT_NE(text.find(R"("entries":[],"issues":[])"), std::string::npos) << text;
}

TEST(SnapshotEncoder, writesEachDayOfManyYearsAsTheDateTextHasIt)
{
    std::vector<SnapshotEntry> entries;
    for (int day = -3'000; day < 60'000; day += 97) {
        const Date date{day * 86'400.0 + day % 86'400};
        entries.push_back({"d" + std::to_string(day + 3'000), 0, date, FileKind::other, false});
    }
    const ScanSnapshot snapshot{UUID::random(), "/r", Date{0}, SnapshotEntries(entries), {}, true};
    const std::string text = encoded(snapshot);
    for (const SnapshotEntry& entry : entries) {
        const std::string expected = "\"" + entry.relativePath
                                     + R"(","allocatedSize":0,"modifiedAt":")"
                                     + iso8601::text(*entry.modifiedAt) + "\"";
        ASSERT_NE(text.find(expected), std::string::npos) << expected;
    }
}

TEST(SnapshotEncoder, handsALargeSnapshotToTheSinkOnTheCallersThread)
{
    const auto caller = std::this_thread::get_id();
    int pieces = 0;
    SnapshotEncoder::encode(snapshotOf(30'000), [&](std::string_view) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        ++pieces;
    });
    EXPECT_GT(pieces, 5);
}

TEST(SnapshotEncoder, endsWithWhatTheSinkThrowsAtAnyPiece)
{
    const ScanSnapshot snapshot = snapshotOf(30'000);
    for (int last = 0; last < 5; ++last) {
        int pieces = 0;
        EXPECT_THROW(SnapshotEncoder::encode(snapshot,
                                             [&](std::string_view) {
                                                 if (pieces++ == last) {
                                                     throw std::runtime_error("full");
                                                 }
                                             }),
                     std::runtime_error);
        EXPECT_EQ(pieces, last + 1);
    }
}

}  // namespace
}  // namespace gruk
