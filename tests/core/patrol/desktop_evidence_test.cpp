#include "core/patrol/desktop_evidence.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/patrol/finding_copy.h"
#include "core/patrol/review_engine.h"

namespace gruk {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

/// A snapshot with these files and every folder above them; "x/" is an empty folder.
SnapshotEntries entriesOf(const std::vector<std::string>& paths)
{
    std::set<std::string> folders;
    std::vector<SnapshotEntry> entries;
    for (std::string path : paths) {
        for (std::size_t at = path.find('/'); at != std::string::npos;
             at = path.find('/', at + 1)) {
            folders.insert(path.substr(0, at));
        }
        if (path.back() != '/') {
            entries.push_back({path, 4'096, std::nullopt, FileKind::other, false});
        }
    }
    for (const std::string& folder : folders) {
        entries.push_back({folder, 4'096, std::nullopt, FileKind::folder, true});
    }
    return SnapshotEntries(entries);
}

std::vector<std::string> found(const std::vector<std::string>& paths)
{
    const SnapshotEntries entries = entriesOf(paths);
    std::vector<std::string> result;
    for (const DesktopEvidence::Location& location : DesktopEvidence::locations(entries)) {
        result.push_back(entries.relativePath(location.index));
    }
    return result;
}

/// A place that a pattern names, as it may be on a disk.
std::string placeOf(const DesktopEvidence::Row& row)
{
    std::string place(row.pattern);
    for (std::size_t at = place.find('*'); at != std::string::npos; at = place.find('*')) {
        place.replace(at, 1, "some");
    }
    return place;
}

/// What has to be on the disk for a row to speak of `place`.
std::vector<std::string> withProof(const DesktopEvidence::Row& row, const std::string& place)
{
    std::vector<std::string> paths = {place + "/file"};
    const std::string name(row.proofNames.substr(0, row.proofNames.find(' ')));
    if (row.proof == DesktopEvidence::Proof::inside) {
        paths.push_back(place + "/" + name);
    } else if (row.proof == DesktopEvidence::Proof::beside) {
        const std::size_t slash = place.rfind('/');
        paths.push_back((slash == std::string::npos ? "" : place.substr(0, slash + 1)) + name);
    }
    return paths;
}

TEST(DesktopEvidence, everyRowSpeaksOfItsPlace)
{
    for (const DesktopEvidence::Row& row : DesktopEvidence::rows()) {
        const std::string place = placeOf(row);
        EXPECT_THAT(found(withProof(row, place)), ElementsAre(place)) << row.pattern;
    }
}

TEST(DesktopEvidence, whatBelongsToAHomeIsFoundAtTheTopOfARealmOnly)
{
    for (const DesktopEvidence::Row& row : DesktopEvidence::rows()) {
        const std::string place = "below/" + placeOf(row);
        if (row.place == DesktopEvidence::Place::home) {
            EXPECT_THAT(found(withProof(row, place)), IsEmpty()) << row.pattern;
        } else {
            EXPECT_THAT(found(withProof(row, place)), ElementsAre(place)) << row.pattern;
        }
    }
}

TEST(DesktopEvidence, aNameThatOthersUseTooNeedsItsProof)
{
    for (const DesktopEvidence::Row& row : DesktopEvidence::rows()) {
        if (row.proof != DesktopEvidence::Proof::none) {
            EXPECT_THAT(found({"p/" + placeOf(row) + "/file"}), IsEmpty()) << row.pattern;
        }
    }
}

TEST(DesktopEvidence, everyNameThatProvesItIsEnoughByItself)
{
    EXPECT_THAT(found({"p/target/a", "p/pom.xml"}), ElementsAre("p/target"));
    EXPECT_THAT(found({"p/build/a", "p/build.gradle.kts"}), ElementsAre("p/build"));
    EXPECT_THAT(found({"p/_build/a", "p/dune-project"}), ElementsAre("p/_build"));
}

TEST(DesktopEvidence, aFolderOfTheProvingNameProvesNothing)
{
    EXPECT_THAT(found({"p/target/a", "p/Cargo.toml/a"}), IsEmpty());
    EXPECT_THAT(found({"p/venv/pyvenv.cfg/a"}), IsEmpty());
    EXPECT_THAT(found({"p/folder/CACHEDIR.TAG/a"}), IsEmpty());
}

TEST(DesktopEvidence, onlyTheTopmostIsFound)
{
    EXPECT_THAT(found({".cache/pip/http/CACHEDIR.TAG", ".cache/pip/__pycache__/a"}),
                ElementsAre(".cache/pip"));
    EXPECT_THAT(found({"p/.tox/py/__pycache__/a", "p/src/__pycache__/a"}),
                ElementsAre("p/.tox", "p/src/__pycache__"));
    // The tag stands behind its neighbours in the order of the entries.
    EXPECT_THAT(found({"p/out/.mypy_cache/a", "p/out/CACHEDIR.TAG"}), ElementsAre("p/out"));
}

TEST(DesktopEvidence, eachChildOfTheCacheFolderStandsForItselfAndMayBeAFile)
{
    EXPECT_THAT(found({".cache/mail/a", ".cache/browser/a", ".cache/sounds.tdb"}),
                ElementsAre(".cache/browser", ".cache/mail", ".cache/sounds.tdb"));
}

TEST(DesktopEvidence, whatHoldsSettingsOrDataIsNeverFoundAsAWhole)
{
    for (const char* place :
         {".config/app", ".local/share/app", ".local/state/app", ".var/app/org.app/data",
          ".var/app/org.app/config", ".var/app/org.app", ".cache", ".config", ".local/share",
          "snap", "snap/app", "snap/app/common"}) {
        EXPECT_THAT(found({std::string(place) + "/CACHEDIR.TAG"}),
                    Not(testing::Contains(std::string(place))))
            << place;
    }
}

TEST(DesktopEvidence, whatOnlyLooksLikeItIsLeftAlone)
{
    EXPECT_THAT(found({"p/__pycache__", "p/.ccache/a", ".ccache2/a", ".config/app/cache/a",
                       ".var/app/org.app/data/cache/a", ".m2/settings.xml", "go/pkg/tool/a",
                       ".next/cached/a", "p/cache/a", "build/a", "p/targets/a", "p/Cargo.toml"}),
                IsEmpty());
}

TEST(DesktopEvidence, everyRowHasAStory)
{
    for (const DesktopEvidence::Row& row : DesktopEvidence::rows()) {
        EXPECT_THAT(std::string(row.story), Not(IsEmpty())) << row.pattern;
        EXPECT_EQ(row.story.back(), '.') << row.pattern;
        // What only its tag proves has no name by which its story could be found again.
        EXPECT_EQ(DesktopEvidence::story("/home/a/" + placeOf(row)).empty(), row.pattern == "*")
            << row.pattern;
    }
    EXPECT_EQ(DesktopEvidence::story("/home/a/.cargo/registry/src"),
              DesktopEvidence::story("/home/a/.cargo/registry/cache"));
    EXPECT_NE(DesktopEvidence::story("/home/a/.cache/mail"),
              DesktopEvidence::story("/home/a/.thumbnails"));
}

TEST(DesktopEvidence, isToldByTheReviewWithItsStory)
{
    const SnapshotEntries entries = entriesOf({".cache/mail/a", "p/node_modules/a"});
    const auto findings = ReviewEngine::evaluate(FileURL::directory("/home/a"), entries, {}, {});

    std::vector<std::string> ids;
    for (const ReviewFinding& finding : findings) {
        ids.push_back(finding.id);
        EXPECT_EQ(finding.reason, ReviewFinding::Reason::regenerableCache);
    }
    EXPECT_THAT(ids, UnorderedElementsAre("regenerableCache:.cache/mail",
                                          "regenerableCache:p/node_modules"));
    EXPECT_EQ(
        FindingCopy::whyFlagged(ReviewFinding::Reason::regenerableCache, "/home/a/.cache/mail"),
        DesktopEvidence::story("/home/a/.cache/mail"));
}

TEST(DesktopEvidence, aCacheWithinAnotherThatTheReviewKnowsIsNoneOfItsOwn)
{
    const SnapshotEntries entries =
        entriesOf({"p/node_modules/x/.parcel-cache/a", "q/.tox/node_modules/a"});
    const auto findings = ReviewEngine::evaluate(FileURL::directory("/home/a"), entries, {}, {});
    std::vector<std::string> ids;
    for (const ReviewFinding& finding : findings) {
        ids.push_back(finding.id);
    }
    EXPECT_THAT(ids,
                UnorderedElementsAre("regenerableCache:p/node_modules", "regenerableCache:q/.tox"));
}

}  // namespace

}  // namespace gruk
