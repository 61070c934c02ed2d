#include "core/patrol/realm_insights.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "platform/foundation/text_order.h"
#include "tests/support/in_time_zone.h"
#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

using Entries = std::vector<SnapshotEntry>;
using Items = std::vector<HeavyItem>;
using RealmInsights::heavyItems;

constexpr double day = 86'400;

SnapshotEntry file(const std::string& path, Bytes size)
{
    return {path, size, std::nullopt, FileKind::other, false};
}

SnapshotEntry folder(const std::string& path, Bytes size)
{
    return {path, size, std::nullopt, FileKind::folder, true};
}

std::vector<std::string> paths(const Items& items)
{
    std::vector<std::string> result;
    for (const HeavyItem& item : items) {
        result.push_back(item.relativePath);
    }
    return result;
}

std::vector<std::string> heavyPaths(const Entries& entries, std::size_t limit)
{
    return paths(heavyItems(test::snapshotOf(entries), nullptr, limit));
}

/// The pick step by step over a sorted list.
Items naiveHeavyItems(Entries latest, Date capturedAt, const Entries* previous, std::size_t limit)
{
    std::map<std::string, Bytes> before;
    for (const SnapshotEntry& entry : previous == nullptr ? Entries{} : *previous) {
        before[entry.relativePath] = entry.allocatedSize;
    }
    std::sort(latest.begin(), latest.end(), [](const SnapshotEntry& a, const SnapshotEntry& b) {
        return a.allocatedSize != b.allocatedSize
                   ? a.allocatedSize > b.allocatedSize
                   : localizedStandardCompare(a.relativePath, b.relativePath) < 0;
    });
    Items items;
    std::vector<std::string> accepted;
    for (const SnapshotEntry& entry : latest) {
        if (items.size() >= limit) {
            break;
        }
        if (std::any_of(accepted.begin(), accepted.end(), [&](const std::string& path) {
                return entry.relativePath.starts_with(path + "/");
            })) {
            continue;
        }
        if (entry.isDirectory) {
            accepted.push_back(entry.relativePath);
        }
        HeavyItem item{entry.relativePath, entry.relativePath, entry.allocatedSize,
                       entry.isDirectory,  entry.kind,         std::nullopt,
                       std::nullopt};
        item.isNew = previous != nullptr && !before.contains(entry.relativePath);
        if (before.contains(entry.relativePath)) {
            item.byteDeltaSincePrevious = entry.allocatedSize - before.at(entry.relativePath);
        }
        if (entry.modifiedAt) {
            item.daysUntouched = calendarDays(*entry.modifiedAt, capturedAt);
        }
        items.push_back(item);
    }
    return items;
}

}  // namespace

TEST(RealmInsights, aLimitOfZeroGivesAnEmptyList)
{
    EXPECT_TRUE(heavyPaths({file("a", 1)}, 0).empty());
    EXPECT_TRUE(heavyPaths({}, 20).empty());
}

TEST(RealmInsights, aLargeFolderHidesItsFilesWhichMakesRoomForOthers)
{
    Entries entries = {folder("big", 1'000)};
    for (int i = 0; i < 100; ++i) {
        entries.push_back(file("big/" + std::to_string(i), 10));
    }
    for (int i = 0; i < 5; ++i) {
        entries.push_back(file("small " + std::to_string(i), 5 - i));
    }
    EXPECT_EQ(heavyPaths(entries, 4),
              (std::vector<std::string>{"big", "small 0", "small 1", "small 2"}));
    EXPECT_EQ(heavyPaths(entries, 20).size(), 6U);
}

TEST(RealmInsights, aFolderStandsBeforeAFileOfTheSameSizeInsideItAndHidesIt)
{
    EXPECT_EQ(heavyPaths({folder("a", 10), file("a/x", 10)}, 20), std::vector<std::string>{"a"});
}

TEST(RealmInsights, aNameThatOnlyBeginsAlikeIsNotHidden)
{
    EXPECT_EQ(heavyPaths({folder("a", 10), file("a/x", 9), file("ab", 8), file("a b", 7)}, 20),
              (std::vector<std::string>{"a", "ab", "a b"}));
}

TEST(RealmInsights, tiesStandInTheOrderOfAFileBrowser)
{
    EXPECT_EQ(heavyPaths({file("f10", 1), file("f2", 1), file("B", 1), file("a", 1)}, 3),
              (std::vector<std::string>{"a", "B", "f2"}));
}

TEST(RealmInsights, withoutAPreviousSnapshotThereIsNoDelta)
{
    const Items items = heavyItems(test::snapshotOf({file("a", 7)}), nullptr, 20);
    const HeavyItem expected{"a", "a", 7, false, FileKind::other, std::nullopt, std::nullopt};
    EXPECT_EQ(items, Items{expected});
}

TEST(RealmInsights, theDeltaIsAgainstTheSamePathBefore)
{
    const ScanSnapshot previous = test::snapshotOf({file("a", 10), file("b", 5), file("gone", 9)});
    const Items items =
        heavyItems(test::snapshotOf({file("a", 7), file("b", 5), file("new", 3)}), &previous, 20);
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[0].byteDeltaSincePrevious, -3);
    EXPECT_EQ(items[1].byteDeltaSincePrevious, 0);
    EXPECT_EQ(items[2].byteDeltaSincePrevious, std::nullopt);
    EXPECT_FALSE(items[0].isNew || items[1].isNew);
    EXPECT_TRUE(items[2].isNew);
}

TEST(RealmInsights, daysUntouchedAreWholeDaysUpToTheSnapshot)
{
    const double captured = test::snapshotOf({}).capturedAt.secondsSince1970;
    const std::pair<double, std::int64_t> rows[] = {
        {0, 0}, {10 * day, 10}, {10 * day + 60, 10}, {10 * day - 60, 9}, {400 * day, 400}};
    for (const auto& [age, days] : rows) {
        SnapshotEntry entry = file("a", 1);
        entry.modifiedAt = Date{captured - age};
        EXPECT_EQ(heavyItems(test::snapshotOf({entry}), nullptr, 1).front().daysUntouched, days)
            << age;
    }
}

TEST(RealmInsights, aFileModifiedAfterTheSnapshotHasANegativeNumberOfDays)
{
    SnapshotEntry entry = file("a", 1);
    entry.modifiedAt = Date{test::snapshotOf({}).capturedAt.secondsSince1970 + 3 * day + 60};
    EXPECT_EQ(heavyItems(test::snapshotOf({entry}), nullptr, 1).front().daysUntouched, -3);
}

TEST(RealmInsights, agreesWithAStepByStepPickOnRandomSnapshots)
{
    std::size_t picked = 0;
    for (std::uint64_t seed = 0; seed < 1'000; ++seed) {
        SeededGenerator draw(seed);
        const Entries before = test::randomEntries(draw, draw.bounded(60));
        const Entries entries = test::laterEntries(draw, before);
        const ScanSnapshot latest = test::snapshotOf(entries);
        const ScanSnapshot previous = test::snapshotOf(before);
        const std::size_t limit = draw.bounded(25);
        const bool hasPrevious = draw.bounded(4) != 0;
        const Items expected =
            naiveHeavyItems(entries, latest.capturedAt, hasPrevious ? &before : nullptr, limit);
        ASSERT_EQ(heavyItems(latest, hasPrevious ? &previous : nullptr, limit), expected)
            << "seed " << seed;
        picked += expected.size();
    }
    EXPECT_GT(picked, 3'000U);
}

TEST(RealmInsights, whereTheWalkBeforeCouldNotSeeNothingIsNew)
{
    const ScanSnapshot previous = test::snapshotOf({folder("a", 0), file("c", 1)},
                                                   {{"a", ScanIssue::Reason::permissionDenied},
                                                    {"b", ScanIssue::Reason::differentFilesystem}});
    const Items items =
        heavyItems(test::snapshotOf({file("a/x", 9), folder("b", 8), file("b2", 7), file("c", 6)}),
                   &previous, 20);
    ASSERT_EQ(paths(items), (std::vector<std::string>{"a/x", "b", "b2", "c"}));
    EXPECT_FALSE(items[0].isNew);
    EXPECT_FALSE(items[1].isNew);
    EXPECT_TRUE(items[2].isNew);
    EXPECT_FALSE(items[3].isNew);
}

TEST(RealmInsights, daysUntouchedAreDaysOfTheCalendarAlsoWhenClocksChange)
{
    const test::InTimeZone zone("Europe/Berlin");
    const auto daysUntouched = [](const char* modified, const char* captured) {
        SnapshotEntry entry = file("a", 1);
        entry.modifiedAt = iso8601::parse(modified);
        ScanSnapshot snapshot = test::snapshotOf({entry});
        snapshot.capturedAt = *iso8601::parse(captured);
        return heavyItems(snapshot, nullptr, 1).front().daysUntouched;
    };
    // Noon to noon over the night that is an hour short, and over the one that is an hour long.
    EXPECT_EQ(daysUntouched("2026-03-28T11:00:00Z", "2026-03-29T10:00:00Z"), 1);
    EXPECT_EQ(daysUntouched("2026-10-24T10:00:00Z", "2026-10-25T10:00:00Z"), 0);
}

}  // namespace gruk
