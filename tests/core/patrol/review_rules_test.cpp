#include "core/patrol/review_rules.h"

#include <map>
#include <string>

#include <gtest/gtest.h>

#include "core/patrol/review_engine.h"

namespace gruk {

namespace {

TEST(ReviewRules, theNamesThatTheDesktopGivesToACopyAreKnown)
{
    const std::map<std::string, std::string> originals = {
        {"report(1).pdf", "report.pdf"},
        {"report(12)", "report"},
        {"a(1).tar.gz", "a.tar.gz"},
        {"a (1).tar.gz", "a.tar.gz"},
        {"a (copy).tar.xz", "a.tar.xz"},
        {"report (copy).pdf", "report.pdf"},
        {"report (another copy).pdf", "report.pdf"},
        {"report (3rd copy).pdf", "report.pdf"},
        {"report (21st copy).pdf", "report.pdf"},
        {"report (copy 2).pdf", "report.pdf"},
        {"Copy of report.pdf", "report.pdf"},
        {"report - Copy.pdf", "report.pdf"},
    };
    for (const auto& [copy, original] : originals) {
        EXPECT_EQ(originalOfDesktopCopyName(copy), original) << copy;
    }
}

TEST(ReviewRules, whatOnlyLooksLikeACopyIsNone)
{
    for (const char* name : {"report.pdf", "report (1).pdf", "(1).pdf", " (copy).pdf",
                             "report (copy ).pdf", "report (copy two).pdf", "report (rd copy).pdf",
                             "report (3 copy).pdf", "report(copy).pdf", "report (2024 Copy).pdf",
                             "report ().pdf", "report 1).pdf", "report (a).pdf", "Copy of ",
                             " - Copy.pdf", "photocopy.pdf", ".tar.gz", "report (1.pdf"}) {
        EXPECT_EQ(originalOfDesktopCopyName(name), std::nullopt) << name;
    }
}

std::size_t duplicatesAmong(const std::vector<std::string>& names, Bytes sizeOfLast = 4'096)
{
    std::vector<SnapshotEntry> entries;
    for (const std::string& name : names) {
        entries.push_back({name, name == names.back() ? sizeOfLast : 4'096, std::nullopt,
                           FileKind::other, false});
    }
    return ReviewEngine::evaluate(FileURL::directory("/home/a"), SnapshotEntries(entries), {}, {})
        .size();
}

TEST(ReviewRules, aCopyIsFlaggedBesideAnOriginalOfItsSizeOnly)
{
    EXPECT_EQ(duplicatesAmong({"a(1).pdf", "a.pdf"}), 1U);
    EXPECT_EQ(duplicatesAmong({"Copy of a.pdf", "a.pdf"}), 1U);
    EXPECT_EQ(duplicatesAmong({"a(1).pdf", "a.pdf"}, 8'192), 0U);
    EXPECT_EQ(duplicatesAmong({"a(1).pdf", "b.pdf"}), 0U);
}

TEST(ReviewRules, aNumberedFolderOfPicturesIsNoFolderOfCopies)
{
    std::vector<std::string> pictures;
    for (int number = 1; number <= 900; ++number) {
        pictures.push_back("img (" + std::to_string(number) + ").jpg");
        pictures.push_back("pic(" + std::to_string(number) + ").jpg");
    }
    EXPECT_EQ(duplicatesAmong(pictures), 0U);
}

}  // namespace

}  // namespace gruk
