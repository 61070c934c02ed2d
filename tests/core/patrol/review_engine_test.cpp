#include "core/patrol/review_engine.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

using Reason = ReviewFinding::Reason;
using Deltas = std::vector<SnapshotDelta>;
using Findings = std::vector<ReviewFinding>;

constexpr double day = 86'400;
const FileURL root = FileURL::directory("/realm");
const Date now{1'760'000'000};

SnapshotEntry file(const char* path, Bytes size = 0, FileKind kind = FileKind::other)
{
    return {path, size, std::nullopt, kind, false};
}

SnapshotEntry folder(const char* path, Bytes size = 0)
{
    return {path, size, std::nullopt, FileKind::folder, true};
}

SnapshotEntry installer(const char* path, double ageInSeconds)
{
    return {path, 1, Date{now.secondsSince1970 - ageInSeconds}, FileKind::installer, false};
}

SnapshotDelta growth(const char* path, Bytes from, Bytes to)
{
    return {path, SnapshotDelta::Change::grown, from, to};
}

Findings evaluate(const std::vector<SnapshotEntry>& entries, const Deltas& deltas = {})
{
    return ReviewEngine::evaluate(root, SnapshotEntries(entries), deltas, now);
}

/// The ids of the findings, in order.
std::vector<std::string> ids(const Findings& findings)
{
    std::vector<std::string> result;
    for (const ReviewFinding& finding : findings) {
        result.push_back(finding.id);
    }
    return result;
}

using Ids = std::vector<std::string>;

}  // namespace

TEST(ReviewEngine, withNoDeltasAndNoMatchingNamesTheResultIsEmpty)
{
    EXPECT_EQ(evaluate({}), Findings{});
    EXPECT_EQ(evaluate({folder("a", 5), file("a/b", 5)}), Findings{});
}

TEST(ReviewEngine, oneFileThatGrewByOneByteAloneInThePatrolIsAFinding)
{
    ReviewFinding expected;
    expected.id = "rapidGrowth:a/b";
    expected.url = FileURL("/realm/a/b");
    expected.allocatedSize = 8;
    expected.byteDelta = 1;
    expected.reason = Reason::rapidGrowth;
    expected.explanation = "This item grew by 0 KB since the previous patrol.";
    expected.confidence = 0.9;
    EXPECT_EQ(evaluate({folder("a", 8), file("a/b", 8)}, {growth("a/b", 7, 8)}),
              Findings{expected});
}

TEST(ReviewEngine, aFileThatGrewByFiveGBAmongAHundredQualifiesByTheAbsoluteCondition)
{
    constexpr Bytes gigabyte = 1'000'000'000;
    const auto findings = evaluate({file("a", 5 * gigabyte), file("b", 95 * gigabyte)},
                                   {growth("a", 0, 5 * gigabyte), growth("b", 0, 95 * gigabyte)});
    EXPECT_EQ(ids(findings), (Ids{"rapidGrowth:b", "rapidGrowth:a"}));
    EXPECT_EQ(findings[1].explanation, "This item grew by 5 GB since the previous patrol.");
}

TEST(ReviewEngine, exactlyAGigabyteAndExactlyAFifthQualify)
{
    constexpr Bytes gigabyte = 1'000'000'000;
    const Bytes most = 100 * gigabyte;
    EXPECT_EQ(ids(evaluate({file("a", gigabyte), file("z", most)},
                           {growth("z", 0, most), growth("a", 0, gigabyte)})),
              (Ids{"rapidGrowth:z", "rapidGrowth:a"}));
    EXPECT_EQ(ids(evaluate({file("a", gigabyte - 1), file("z", most)},
                           {growth("z", 0, most), growth("a", 0, gigabyte - 1)})),
              Ids{"rapidGrowth:z"});
    EXPECT_EQ(
        ids(evaluate({file("a", 20), file("z", 80)}, {growth("z", 0, 80), growth("a", 0, 20)})),
        (Ids{"rapidGrowth:z", "rapidGrowth:a"}));
    EXPECT_EQ(
        ids(evaluate({file("a", 19), file("z", 81)}, {growth("z", 0, 81), growth("a", 0, 19)})),
        Ids{"rapidGrowth:z"});
}

TEST(ReviewEngine, aDirectoryThatGrewYieldsNoFindingItsFilesMay)
{
    EXPECT_EQ(ids(evaluate({folder("a", 100), file("a/b", 100)},
                           {growth("a", 0, 100), growth("a/b", 0, 100)})),
              Ids{"rapidGrowth:a/b"});
}

TEST(ReviewEngine, directoriesDoNotDiluteTheSharesOfTheirFiles)
{
    Deltas deltas;
    std::vector<SnapshotEntry> entries;
    std::string path;
    for (int i = 0; i < 10; ++i) {
        path += i == 0 ? "d" : "/d";
        entries.push_back(folder(path.c_str(), 10));
        deltas.push_back(growth(path.c_str(), 0, 10));
    }
    path += "/file";
    entries.push_back(file(path.c_str(), 10));
    deltas.push_back(growth(path.c_str(), 0, 10));
    EXPECT_EQ(ids(evaluate(entries, deltas)), Ids{"rapidGrowth:" + path});
}

TEST(ReviewEngine, aNewFileCountsAsGrowthFromZeroBytes)
{
    const auto findings =
        evaluate({file("new", 4096)}, {{"new", SnapshotDelta::Change::added, 0, 4096}});
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].byteDelta, 4096);
}

TEST(ReviewEngine, aRemovedPathTakesNoPartInTheGrowth)
{
    const Deltas deltas = {growth("here", 0, 10),
                           {"gone", SnapshotDelta::Change::removed, 1'000, 0},
                           growth("nowhere", 0, 1'000'000)};
    EXPECT_EQ(ids(evaluate({file("here", 10)}, deltas)), Ids{"rapidGrowth:here"});
}

TEST(ReviewEngine, shrinkingFilesDoNotLowerTheGrowthOfOthers)
{
    EXPECT_EQ(ids(evaluate({file("a", 19), file("b", 81), file("c", 0)},
                           {growth("b", 0, 81), growth("a", 0, 19), growth("c", 50, 0)})),
              Ids{"rapidGrowth:b"});
}

TEST(ReviewEngine, aSecondDownloadBesideAFileOfTheSameSizeIsFlaggedAndNotTheSibling)
{
    ReviewFinding expected;
    expected.id = "duplicateDownload:d/report (1).pdf";
    expected.url = FileURL("/realm/d/report (1).pdf");
    expected.allocatedSize = 4'096;
    expected.reason = Reason::duplicateDownload;
    expected.explanation =
        "A same-size sibling named report.pdf exists beside this numbered duplicate.";
    expected.confidence = 0.95;
    EXPECT_EQ(evaluate({folder("d"), file("d/report (1).pdf", 4'096), file("d/report.pdf", 4'096)}),
              Findings{expected});
    EXPECT_EQ(evaluate({file("report (1).pdf", 4'096), file("report.pdf", 8'192)}), Findings{});
}

TEST(ReviewEngine, namesWithoutAnExtensionMatchTheSameWay)
{
    EXPECT_EQ(ids(evaluate({file("report (1)", 5), file("report", 5)})),
              Ids{"duplicateDownload:report (1)"});
}

TEST(ReviewEngine, onlyTheLastNumberIsRemovedAndItStandsBeforeTheLastExtension)
{
    EXPECT_EQ(ids(evaluate({file("a (1) (2).txt"), file("a (1).txt")})),
              Ids{"duplicateDownload:a (1) (2).txt"});
    EXPECT_EQ(evaluate({file("a (1) (2).txt"), file("a.txt")}), Findings{});
    EXPECT_EQ(ids(evaluate({file("a.tar (12).gz"), file("a.tar.gz")})),
              Ids{"duplicateDownload:a.tar (12).gz"});
}

TEST(ReviewEngine, theSiblingMustBeAFileInTheSameDirectory)
{
    EXPECT_EQ(evaluate({file("a/x (1).txt"), file("b/x.txt"), file("x.txt")}), Findings{});
    EXPECT_EQ(evaluate({file("x (1)"), folder("x")}), Findings{});
    EXPECT_EQ(evaluate({folder("x (1)"), file("x")}), Findings{});
}

TEST(ReviewEngine, namesThatOnlyLookLikeADuplicateAreNone)
{
    for (const char* name : {"x ()", "x (a)", "x (1", "x 1)", "x (1) ", "x (-1)", "x (1.0)",
                             "x\t(1)", "(1)", " (1)", "x ( 1)", "x (\u0661)"}) {
        EXPECT_EQ(evaluate({file(name), file("x"), file("x ")}), Findings{}) << name;
    }
    EXPECT_EQ(evaluate({folder("a"), file("a/ (1)")}), Findings{});
}

TEST(ReviewEngine, aDotFileHasNoExtensionOfItsOwn)
{
    EXPECT_EQ(ids(evaluate({file(".x (1)"), file(".x")})), Ids{"duplicateDownload:.x (1)"});
    EXPECT_EQ(ids(evaluate({file(" (1).txt"), file(".txt")})), Ids{"duplicateDownload: (1).txt"});
}

TEST(ReviewEngine, aDiskImageOf29DaysYieldsNothingAndOneOfExactly30Does)
{
    EXPECT_EQ(evaluate({installer("x.dmg", 29 * day)}), Findings{});
    EXPECT_EQ(evaluate({installer("x.dmg", 30 * day - 1)}), Findings{});
    ReviewFinding expected;
    expected.id = "oldInstaller:x.dmg";
    expected.url = FileURL("/realm/x.dmg");
    expected.allocatedSize = 1;
    expected.reason = Reason::oldInstaller;
    expected.explanation = "This installer has not changed in more than 30 days. Review it if the "
                           "app is already installed.";
    expected.confidence = 0.85;
    EXPECT_EQ(evaluate({installer("x.dmg", 30 * day)}), Findings{expected});
}

TEST(ReviewEngine, anInstallerWithNoModificationDateYieldsNothing)
{
    EXPECT_EQ(evaluate({file("x.dmg", 1, FileKind::installer)}), Findings{});
}

TEST(ReviewEngine, aDirectoryOfAnInstallersKindYieldsNothing)
{
    SnapshotEntry directory = installer("x.pkg", 99 * day);
    directory.isDirectory = true;
    EXPECT_EQ(evaluate({directory}), Findings{});
}

TEST(ReviewEngine, aNodeModulesFolderYieldsOneFinding)
{
    ReviewFinding expected;
    expected.id = "regenerableCache:proj/node_modules";
    expected.url = FileURL::directory("/realm/proj/node_modules");
    expected.allocatedSize = 7;
    expected.reason = Reason::regenerableCache;
    expected.explanation =
        "This is in a known cache or build location and can usually be regenerated by its app.";
    expected.confidence = 0.75;
    EXPECT_EQ(evaluate({folder("proj", 7), folder("proj/node_modules", 7),
                        folder("proj/node_modules/x", 7), file("proj/node_modules/x/y.js", 7),
                        file("proj/node_modules2")}),
              Findings{expected});
}

TEST(ReviewEngine, theKnownLocationsAreAnchoredAsWritten)
{
    const char* const candidates[] = {"Library/Caches/x",   "Library/Developer/Xcode/DerivedData/x",
                                      ".gradle/caches",     ".gradle/caches/x",
                                      "a/node_modules/x",   "a/node_modules",
                                      "a/.build/x",         "a/b/.build",
                                      "Library\\Caches\\x", "a\\node_modules"};
    for (const char* path : candidates) {
        EXPECT_EQ(ids(evaluate({file(path)})), Ids{std::string("regenerableCache:") + path});
        EXPECT_EQ(evaluate({folder(path)}).size(), 1U) << path;
    }
    for (const char* path :
         {"Library/Caches", "a/Library/Caches/x", "Library/Developer/Xcode/DerivedData",
          "a/.gradle/caches", ".gradle/caches2", ".gradle", "node_modules", "node_modules/x",
          ".build", ".build/x", "a/node_modules2", "a/x.build", "library/caches/x"}) {
        EXPECT_EQ(evaluate({file(path)}), Findings{}) << path;
    }
}

TEST(ReviewEngine, eachChildOfTheCachesFolderIsAFindingOfItsOwn)
{
    EXPECT_EQ(ids(evaluate({folder("Library"), folder("Library/Caches"), folder("Library/Caches/b"),
                            file("Library/Caches/b/x"), file("Library/Caches/a")})),
              (Ids{"regenerableCache:Library/Caches/a", "regenerableCache:Library/Caches/b"}));
}

TEST(ReviewEngine, aCacheFileThatAlsoGrewFastYieldsOnlyTheGrowth)
{
    EXPECT_EQ(ids(evaluate({file("Library/Caches/big.bin", 9)},
                           {growth("Library/Caches/big.bin", 0, 9)})),
              Ids{"rapidGrowth:Library/Caches/big.bin"});
}

TEST(ReviewEngine, theMostConfidentRuleSpeaks)
{
    SnapshotEntry all = installer("a/.build/x (1).dmg", 40 * day);
    SnapshotEntry sibling = installer("a/.build/x.dmg", 1);
    const Deltas deltas = {growth("a/.build/x (1).dmg", 0, 1)};
    EXPECT_EQ(ids(evaluate({all, sibling}, deltas)).front(),
              "duplicateDownload:a/.build/x (1).dmg");
    EXPECT_EQ(ids(evaluate({all}, deltas)), Ids{"rapidGrowth:a/.build/x (1).dmg"});
    EXPECT_EQ(ids(evaluate({all})), Ids{"oldInstaller:a/.build/x (1).dmg"});
    all.modifiedAt = now;
    EXPECT_EQ(ids(evaluate({all})), Ids{"regenerableCache:a/.build/x (1).dmg"});
}

TEST(ReviewEngine, theLargestComesFirstThenTheMostConfident)
{
    EXPECT_EQ(
        ids(evaluate(
            {file("a/.build", 10), file("x (1)", 10), file("x", 10), file("z/.build", 11)})),
        (Ids{"regenerableCache:z/.build", "duplicateDownload:x (1)", "regenerableCache:a/.build"}));
}

TEST(ReviewEngine, twoFindingsOfEqualSizeAndConfidenceSortByPath)
{
    EXPECT_EQ(
        ids(evaluate({file("d10/.build"), file("d2/.build"), file("B/.build"), file("a/.build")})),
        (Ids{"regenerableCache:a/.build", "regenerableCache:B/.build", "regenerableCache:d2/.build",
             "regenerableCache:d10/.build"}));
}

}  // namespace gruk
