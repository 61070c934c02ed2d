#include "core/patrol/finding_copy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

namespace gruk {

namespace {

using Reason = ReviewFinding::Reason;

constexpr const char* installerStory =
    "A disk image or installer nobody's touched in over 30 days. The app it installed is already "
    "on your computer — the installer's done its job.";
constexpr const char* cargoStory =
    "Created by Cargo (Rust) or Maven (Java) — holds this project's compiled build output, and a "
    "fresh `cargo build` or `mvn package` rebuilds it from source.";

const char* const knownNames[] = {"node_modules", ".venv",       "venv",    "Pods",   "DerivedData",
                                  ".git",         "__pycache__", "target",  "build",  "dist",
                                  ".next",        "vendor",      ".gradle", ".cargo", ".tox"};

}  // namespace

TEST(FindingCopy, aFindingNamedTargetReadsTheCargoSentenceWhateverItsReason)
{
    for (const Reason reason : ReviewFinding::allReasons) {
        EXPECT_EQ(FindingCopy::whyFlagged(reason, "/realm/project/target"), cargoStory);
    }
}

TEST(FindingCopy, nameMatchingIsExact)
{
    for (const char* name : {"Target", "node_modules2", "target.dmg", "xtarget", "target "}) {
        EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, std::string("/realm/") + name),
                  installerStory)
            << name;
    }
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, "/realm/target/x.dmg"), installerStory);
}

TEST(FindingCopy, everyKnownNameHasAStoryOfItsOwn)
{
    std::set<std::string_view> stories;
    for (const char* name : knownNames) {
        stories.insert(FindingCopy::whyFlagged(Reason::rapidGrowth, std::string("/r/") + name));
    }
    EXPECT_EQ(stories.size(), 15U);
    EXPECT_FALSE(stories.contains(FindingCopy::whyFlagged(Reason::rapidGrowth, "/r/x")));
}

TEST(FindingCopy, aNameAloneOrWithATrailingSlashIsALastComponentToo)
{
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, "target"), cargoStory);
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, "/realm/target/"), cargoStory);
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, "/"), installerStory);
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, ""), installerStory);
}

TEST(FindingCopy, everyReasonHasItsSentence)
{
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::rapidGrowth, "/r/x"),
              "This grew fast between patrols. On its own that's not a problem — just worth a look "
              "while it's fresh in mind.");
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::duplicateDownload, "/r/x"),
              "Two files in the same folder, matching in size down to the byte, with "
              "near-identical names. That's what a duplicate download looks like.");
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::oldInstaller, "/r/x"), installerStory);
    EXPECT_EQ(FindingCopy::whyFlagged(Reason::regenerableCache, "/r/x"),
              "A cache or build folder the Gruk recognises. Whatever made it will rebuild what it "
              "needs next time it runs — clearing it just costs a little time on the next launch.");
}

TEST(FindingCopy, confidenceOfExactlyFourFifthsIsSolid)
{
    constexpr const char* solid = "The facts here are solid. The decision is still yours.";
    constexpr const char* good =
        "Good evidence, not certainty — worth a glance before anything moves.";
    EXPECT_EQ(FindingCopy::confidenceNote(0.8), solid);
    EXPECT_EQ(FindingCopy::confidenceNote(0.95), solid);
    EXPECT_EQ(FindingCopy::confidenceNote(0.79), good);
    EXPECT_EQ(FindingCopy::confidenceNote(std::nextafter(0.8, 0.0)), good);
}

}  // namespace gruk
