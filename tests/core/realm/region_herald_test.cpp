#include "core/realm/region_herald.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "core/patrol/byte_format.h"
#include "core/patrol/snapshot_delta_engine.h"
#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

using Change = SnapshotDelta::Change;

SnapshotDelta added(const std::string& path, Bytes size)
{
    return {path, Change::added, 0, size};
}

ScanSnapshot snapshotOf(const std::vector<std::string>& folders,
                        const std::vector<std::string>& files = {})
{
    std::vector<SnapshotEntry> entries;
    for (const std::string& path : folders) {
        entries.push_back({path, 1, std::nullopt, FileKind::folder, true});
    }
    for (const std::string& path : files) {
        entries.push_back({path, 1, std::nullopt, FileKind::other, false});
    }
    return test::snapshotOf(entries);
}

std::vector<std::string> announced(const std::vector<SnapshotDelta>& deltas,
                                   const ScanSnapshot& snapshot)
{
    std::vector<std::string> paths;
    for (const DiscoveredRegion& region : RegionHerald::discoveries(deltas, snapshot)) {
        paths.push_back(region.relativePath);
    }
    return paths;
}

using Paths = std::vector<std::string>;

}  // namespace

TEST(RegionHerald, aNewFolderAtTheTopIsAnnouncedWithItsSizeAtTheLatestPatrol)
{
    const std::vector<DiscoveredRegion> expected = {{"Photos", 2'100}};
    EXPECT_EQ(RegionHerald::discoveries({added("Photos", 2'100)}, snapshotOf({"Photos"})),
              expected);
}

TEST(RegionHerald, noDeltasAnnounceNothing)
{
    EXPECT_EQ(announced({}, snapshotOf({"Photos"})), Paths{});
}

TEST(RegionHerald, aNewFileAtTheTopThatIsLargerThanEveryFolderIsNotAnnounced)
{
    EXPECT_EQ(
        announced({added("film.mkv", 9'000), added("a", 10)}, snapshotOf({"a"}, {"film.mkv"})),
        Paths{"a"});
}

TEST(RegionHerald, aFolderThatGrewShrankOrWentIsNotAnnouncedHoweverMuch)
{
    const ScanSnapshot snapshot = snapshotOf({"a", "b", "c"});
    EXPECT_EQ(announced({{"a", Change::grown, 1, 1'000'000'000},
                         {"b", Change::shrunk, 1'000'000'000, 1},
                         {"c", Change::removed, 1'000'000'000, 0}},
                        snapshot),
              Paths{});
}

TEST(RegionHerald, aNewFolderInsideAnotherIsNotAnnounced)
{
    EXPECT_EQ(announced({added("a", 10), added("a/b", 10)}, snapshotOf({"a", "a/b"})), Paths{"a"});
    EXPECT_EQ(announced({added("lone/b", 10)}, snapshotOf({"lone/b"})), Paths{});
}

TEST(RegionHerald, ofFourNewFoldersTheThreeLargestAreAnnounced)
{
    EXPECT_EQ(announced({added("a", 3), added("b", 1), added("c", 4), added("d", 2)},
                        snapshotOf({"a", "b", "c", "d"})),
              (Paths{"c", "a", "d"}));
}

TEST(RegionHerald, aNewFolderOfNoSizeIsAnnouncedIfThereAreNotThreeLarger)
{
    EXPECT_EQ(announced({added("a", 0), added("b", 1), added("c", 2)}, snapshotOf({"a", "b", "c"})),
              (Paths{"c", "b", "a"}));
    EXPECT_EQ(announced({added("a", 0), added("b", 1), added("c", 2), added("d", 3)},
                        snapshotOf({"a", "b", "c", "d"})),
              (Paths{"d", "c", "b"}));
}

TEST(RegionHerald, whatTheSnapshotDoesNotKnowAsAFolderIsDropped)
{
    EXPECT_EQ(announced({added("gone", 5), added("file", 4), added("", 3)},
                        snapshotOf({"gone too", "other/gone"}, {"file"})),
              Paths{});
}

TEST(RegionHerald, regionsOfEqualSizeKeepTheOrderOfTheDeltas)
{
    EXPECT_EQ(announced({added("c", 5), added("a", 5), added("d", 9), added("b", 5)},
                        snapshotOf({"a", "b", "c", "d"})),
              (Paths{"d", "c", "a"}));

    std::vector<SnapshotDelta> many;
    Paths names;
    for (int i = 0; i < 100; ++i) {
        names.push_back(std::to_string(i * 37 % 100));
        many.push_back(added(names.back(), 5));
    }
    EXPECT_EQ(announced(many, snapshotOf(names)), Paths(names.begin(), names.begin() + 3));
}

TEST(RegionHerald, agreesWithTheDefinitionOnAnySnapshot)
{
    SeededGenerator draw(55);
    std::size_t found = 0;
    for (int round = 0; round < 1'000; ++round) {
        const auto before = test::randomEntries(draw, draw.bounded(20));
        const auto after = test::laterEntries(draw, before);
        const ScanSnapshot latest = test::snapshotOf(after);
        std::vector<SnapshotDelta> deltas;
        std::set<std::string> folders;
        for (const SnapshotEntry& entry : after) {
            deltas.push_back({entry.relativePath, static_cast<Change>(draw.bounded(4)),
                              static_cast<Bytes>(draw.bounded(5)),
                              static_cast<Bytes>(draw.bounded(5))});
            if (entry.isDirectory) {
                folders.insert(entry.relativePath);
            }
        }
        std::vector<DiscoveredRegion> expected;
        for (const Bytes size : {4, 3, 2, 1, 0}) {
            for (const SnapshotDelta& delta : deltas) {
                if (delta.change == Change::added && delta.currentBytes == size
                    && delta.relativePath.find('/') == std::string::npos
                    && folders.contains(delta.relativePath) && expected.size() < 3) {
                    expected.push_back({delta.relativePath, size});
                }
            }
        }
        found += expected.size();
        ASSERT_EQ(RegionHerald::discoveries(deltas, latest), expected);
    }
    EXPECT_GT(found, 100U);
}

TEST(RegionHerald, announcesEachRegionInOneSentence)
{
    EXPECT_EQ(RegionHerald::announcement({"Photos", 2'100'000'000}, "2.1 GB"),
              "New region discovered, m'lord: Photos (2.1 GB).");
    EXPECT_EQ(RegionHerald::announcement({"a", 0}, ByteFormat::string(0)),
              "New region discovered, m'lord: a (0 KB).");
}

TEST(RegionHerald, quotesANameThatIsNotASCIIAsItStands)
{
    EXPECT_EQ(RegionHerald::announcement({"\u6587\u6863 e\u0301\xff", 1}, "1 KB"),
              "New region discovered, m'lord: \u6587\u6863 e\u0301\xff (1 KB).");
}

}  // namespace gruk
