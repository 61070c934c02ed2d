#include "core/patrol/unreviewed_places.h"

#include <gtest/gtest.h>

#include "core/patrol/review_engine.h"
#include "platform/foundation/text_order.h"
#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

using Entries = std::vector<SnapshotEntry>;
using Deltas = std::vector<SnapshotDelta>;
using Change = SnapshotDelta::Change;
using Paths = std::vector<std::string>;

constexpr double day = 86'400;
const Date now{1'760'000'000};

SnapshotEntry folder(const char* path, Bytes size = 0)
{
    return {path, size, std::nullopt, FileKind::folder, true};
}

/// A finding wherever it is reviewed.
SnapshotEntry oldInstaller(const char* path)
{
    return {path, 1, Date{now.secondsSince1970 - 40 * day}, FileKind::installer, false};
}

UnreviewedPlaces ownAt(const char* path)
{
    return {OwnFolders({FileURL::directory(path)}), {}};
}

/// The relative paths of what is found.
Paths found(const char* root, const Entries& entries, const UnreviewedPlaces& places = {},
            const Deltas& deltas = {})
{
    Paths paths;
    for (const ReviewFinding& finding : ReviewEngine::evaluate(
             FileURL::directory(root), SnapshotEntries(entries), deltas, now, places)) {
        paths.push_back(finding.id.substr(finding.id.find(':') + 1));
    }
    return paths;
}

Paths pathsOf(const Deltas& deltas)
{
    Paths paths;
    for (const SnapshotDelta& delta : deltas) {
        paths.push_back(delta.relativePath);
    }
    return paths;
}

Paths changes(const char* root, const Deltas& deltas, const UnreviewedPlaces& places = {})
{
    return pathsOf(UnreviewedPaths(places, FileURL::directory(root)).withoutOwnChanges(deltas));
}

}  // namespace

TEST(UnreviewedPlaces, nothingAtOrBelowGruksOwnFoldersIsAFindingByAnyRule)
{
    const Entries entries = {folder(".local"),
                             folder(".local/share"),
                             folder(".local/share/Gruk"),
                             oldInstaller(".local/share/Gruk/x.dmg"),
                             folder(".local/share/Gruk/node_modules"),
                             {".local/share/Gruk/a", 5, now, FileKind::other, false},
                             {".local/share/Gruk/a (1)", 5, now, FileKind::other, false},
                             {".local/share/Gruk/snapshots.json", 9, now, FileKind::other, false},
                             oldInstaller(".local/share/Gruk2/x.dmg")};
    const Deltas deltas = {{".local/share/Gruk/snapshots.json", Change::grown, 1, 9}};
    EXPECT_EQ(found("/home/anna", entries, ownAt("/home/anna/.local/share/Gruk"), deltas),
              Paths{".local/share/Gruk2/x.dmg"});
    EXPECT_EQ(found("/home/anna", entries, {}, deltas).size(), 5U);
}

TEST(UnreviewedPlaces, aRealmThatLiesInOneOfThemHasNoFindings)
{
    const Entries entries = {oldInstaller("x.dmg"), oldInstaller("a/x.dmg")};
    EXPECT_EQ(found("/data/Gruk/old", entries, ownAt("/data/Gruk")), Paths{});
    EXPECT_EQ(found("/data/Gruk", entries, ownAt("/data/Gruk")), Paths{});
    EXPECT_EQ(found("/data/Gruk2", entries, ownAt("/data/Gruk")).size(), 2U);
    EXPECT_EQ(found("/media/disk/.Trash-1000/files/box", entries), Paths{});
    EXPECT_EQ(found("/media/disk/.Trash/1000", entries), Paths{});
    EXPECT_EQ(found("/home/anna/.local/share/Trash/files", entries), Paths{});
}

TEST(UnreviewedPlaces, theRootDirectoryAsARealmKnowsThemToo)
{
    EXPECT_EQ(found("/",
                    {oldInstaller("data/Gruk/x.dmg"), oldInstaller("x.dmg"),
                     oldInstaller(".Trash-1000/files/x.dmg")},
                    ownAt("/data/Gruk")),
              Paths{"x.dmg"});
}

TEST(UnreviewedPlaces, growthOfGruksOwnIsNoPartOfTheGrowthThatOthersHaveTheirShareOf)
{
    const Entries entries = {{"Gruk", 900, now, FileKind::folder, true},
                             {"Gruk/store", 900, now, FileKind::other, false},
                             {"mine", 100, now, FileKind::other, false}};
    const Deltas deltas = {{"Gruk/store", Change::added, 0, 900}, {"mine", Change::added, 0, 100}};
    EXPECT_EQ(found("/r", entries, ownAt("/r/Gruk"), deltas), Paths{"mine"});
}

TEST(UnreviewedPlaces, nothingAtOrBelowATrashIsAFindingWhereverTheRealmBegins)
{
    EXPECT_EQ(found("/home/anna", {oldInstaller(".local/share/Trash/files/x.dmg"),
                                   oldInstaller(".local/share/Trash2/x.dmg")}),
              Paths{".local/share/Trash2/x.dmg"});
    EXPECT_EQ(found("/home", {oldInstaller("berta/.local/share/Trash/files/x.dmg")}), Paths{});
    EXPECT_EQ(found("/home/anna/.local", {oldInstaller("share/Trash/files/x.dmg")}), Paths{});
    EXPECT_EQ(found("/home/anna/.local/share", {oldInstaller("Trash/files/x.dmg")}), Paths{});
    EXPECT_EQ(
        found("/media/disk", {folder(".Trash-1000"), folder(".Trash-1000/files"),
                              oldInstaller(".Trash-1000/files/x.dmg"), folder(".Trash"),
                              folder(".Trash/1000"), oldInstaller(".Trash/1000/files/x.dmg")}),
        Paths{});
    EXPECT_EQ(found("/media", {folder("disk"), folder("disk/.Trash"), folder("disk/.Trash/1000"),
                               folder("disk/.Trash/1000/files"),
                               oldInstaller("disk/.Trash/1000/files/x.dmg")}),
              Paths{});
    EXPECT_EQ(found("/media/disk/.Trash", {folder("1000"), oldInstaller("1000/files/x.dmg")}),
              Paths{});
}

TEST(UnreviewedPlaces, whatIsOnlyCalledLikeATrashIsReviewed)
{
    for (const char* path : {"Trash/x.dmg", "share/Trash/x.dmg", ".Trash/x.dmg", ".Trash-/x.dmg",
                             ".Trash-me/x.dmg", ".Trash/mine/x.dmg", "1000/x.dmg",
                             "a.Trash/1000/x.dmg", ".Trash-10a/x.dmg", "1000.dmg"}) {
        EXPECT_EQ(found("/r", {oldInstaller(path)}), Paths{path});
    }
}

TEST(UnreviewedPlaces, aTrashAtHomeIsKnownByItsPlaceAlso)
{
    UnreviewedPlaces places;
    places.trashes = {FileURL::directory("/elsewhere/data/Trash")};
    EXPECT_EQ(found("/elsewhere", {oldInstaller("data/Trash/files/x.dmg")}, places), Paths{});
    EXPECT_EQ(found("/elsewhere/data/Trash", {oldInstaller("files/x.dmg")}, places), Paths{});
    EXPECT_EQ(found("/elsewhere", {oldInstaller("data/Trash/files/x.dmg")}).size(), 1U);
}

TEST(UnreviewedPlaces, gruksJournalsAreNoFindings)
{
    const Entries entries = {{".gruk-organise.json", 5, now, FileKind::other, false},
                             {"Hoard", 5, now, FileKind::folder, true},
                             {"Hoard/.gruk-stash.json", 5, now, FileKind::other, false}};
    const Deltas deltas = {{".gruk-organise.json", Change::added, 0, 5},
                           {"Hoard/.gruk-stash.json", Change::added, 0, 5}};
    EXPECT_EQ(found("/r", entries, {}, deltas), Paths{});
}

TEST(UnreviewedPlaces, aCacheThatHoldsGruksOwnFolderIsNotOffered)
{
    const Entries entries = {folder("a"),          folder("a/.build"), folder("a/.build/Gruk"),
                             folder("a/.build/x"), folder("b"),        folder("b/.build")};
    EXPECT_EQ(found("/r", entries, ownAt("/r/a/.build/Gruk")), Paths{"b/.build"});
}

TEST(UnreviewedPlaces, theBytesOfATrashStayInTheTotals)
{
    const SnapshotEntries entries{{".Trash-1000", 7, now, FileKind::folder, true},
                                  {".Trash-1000/files", 7, now, FileKind::folder, true},
                                  {"a", 5, now, FileKind::other, false}};
    EXPECT_EQ(entries.totalBytes(), 12);
    const Deltas deltas = {{".Trash-1000", Change::grown, 0, 7}};
    EXPECT_EQ(changes("/r", deltas), Paths{".Trash-1000"});
}

TEST(UnreviewedPlaces, gruksOwnIsNoChangeNorIsAFolderThatChangedByNothingElse)
{
    const Deltas deltas = {{".local", Change::grown, 100, 108},
                           {".local/share", Change::grown, 90, 98},
                           {".local/share/Gruk", Change::grown, 1, 9},
                           {".local/share/Gruk/snapshots.json", Change::grown, 1, 9},
                           {"Documents", Change::shrunk, 5, 4}};
    EXPECT_EQ(changes("/home/anna", deltas, ownAt("/home/anna/.local/share/Gruk")),
              Paths{"Documents"});
    EXPECT_EQ(changes("/home/anna", deltas).size(), 5U);
    EXPECT_EQ(
        changes("/home/anna/.local/share/Gruk", deltas, ownAt("/home/anna/.local/share/Gruk")),
        Paths{});
}

TEST(UnreviewedPlaces, aFolderThatAlsoChangedByItselfKeepsItsWholeChange)
{
    const Deltas deltas = {{"data", Change::grown, 10, 30},
                           {"data/Gruk", Change::grown, 1, 9},
                           {"data/mine", Change::grown, 1, 13}};
    EXPECT_EQ(
        UnreviewedPaths(ownAt("/r/data/Gruk"), FileURL::directory("/r")).withoutOwnChanges(deltas),
        (Deltas{deltas[0], deltas[2]}));
}

TEST(UnreviewedPlaces, aJournalThatCameIsNoChange)
{
    EXPECT_EQ(changes("/r", {{".gruk-organise.json", Change::added, 0, 4'096},
                             {"Hoard", Change::added, 0, 4'100},
                             {"Hoard/.gruk-stash.json", Change::added, 0, 4'096},
                             {"Hoard/a", Change::added, 0, 4},
                             {"Old Hoard", Change::shrunk, 4'096, 0},
                             {"Old Hoard/.gruk-stash.json", Change::removed, 4'096, 0}}),
              (Paths{"Hoard", "Hoard/a"}));
}

TEST(UnreviewedPlaces, theRunsOfASnapshotAgreeWithAskingEachPath)
{
    UnreviewedPlaces places;
    std::size_t covered = 0;
    for (std::uint64_t seed = 0; seed < 500; ++seed) {
        SeededGenerator draw(seed);
        Entries list = test::randomEntries(draw, 60);
        for (const char* name : {".Trash-5", ".Trash/7", "x/.Trash/8", ".local/share/Trash",
                                 ".gruk-stash.json", "a/b/.local/share/Trash/b"}) {
            if (draw.bounded(2) == 0) {
                const std::string path = std::string(name) + "/" + std::to_string(draw.bounded(9));
                list.push_back({path, 0, std::nullopt, FileKind::other, false});
            }
        }
        places.ownFolders = OwnFolders(
            {FileURL::directory("/r/" + list.at(draw.bounded(list.size())).relativePath)});
        const SnapshotEntries entries(list);
        const UnreviewedPaths paths(places, FileURL::directory("/r"));
        std::vector<bool> isCovered(entries.size());
        for (const UnreviewedPaths::Run& run : paths.runs(entries)) {
            for (auto index = run.begin; index < run.end; ++index) {
                isCovered.at(index) = true;
                ++covered;
            }
        }
        for (PathCursor at(entries); !at.isAtEnd(); at.advance()) {
            ASSERT_EQ(isCovered.at(at.index()), paths.contains(at.path()))
                << "seed " << seed << " " << at.path();
        }
    }
    EXPECT_GT(covered, 1'000U);
}

}  // namespace gruk
