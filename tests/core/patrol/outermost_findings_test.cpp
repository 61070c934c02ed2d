#include "core/patrol/outermost_findings.h"

#include <gtest/gtest.h>

#include "core/patrol/patrol_copy.h"

namespace gruk {

namespace {

using Findings = std::vector<ReviewFinding>;
using Reason = ReviewFinding::Reason;

ReviewFinding finding(const char* path, Bytes size, FileURL::Names names = FileURL::Names::item,
                      Reason reason = Reason::rapidGrowth)
{
    ReviewFinding result;
    result.id = path;
    result.url = FileURL(path, names);
    result.allocatedSize = size;
    result.reason = reason;
    return result;
}

ReviewFinding cache(const char* path, Bytes size)
{
    return finding(path, size, FileURL::Names::directory, Reason::regenerableCache);
}

ReviewFinding duplicate(const char* path)
{
    return finding(path, 5, FileURL::Names::item, Reason::duplicateDownload);
}

}  // namespace

TEST(OutermostFindings, aFindingInAFolderThatIsOneTooIsLeftOut)
{
    const Findings all = {finding("/r/p/node_modules/x/big", 9), cache("/r/p/node_modules", 10),
                          finding("/r/p/node_modules2", 3), finding("/r/p", 2)};
    EXPECT_EQ(OutermostFindings::among(all), (Findings{all[1], all[2], all[3]}));
    EXPECT_EQ(OutermostFindings::among(Findings{}), Findings{});
}

TEST(OutermostFindings, whatCanBeTakenBackCountsItOnce)
{
    const Findings all = {cache("/r/p/.build", 1'000'000), finding("/r/p/.build/x", 900'000)};
    EXPECT_EQ(PatrolCopy::summary(OutermostFindings::among(all), 0, true),
              "The Gruk found 1 MB you can take back today. You don't need to organise anything.");
}

TEST(OutermostFindings, ofASelectionOnlyWhatIsSelectedCountsAsTheFolderAbove)
{
    const Findings all = {cache("/r/c", 10), finding("/r/c/x", 9), finding("/r/d", 1)};
    FindingsSelection selection;
    selection.ids = {"/r/c/x", "/r/d"};
    EXPECT_EQ(OutermostFindings::among(selection, all), selection);
    selection.ids.insert("/r/c");
    EXPECT_EQ(OutermostFindings::among(selection, all).selectedBytes(all), 11);
    // It is the sum that counts them once; each is ticked all the same.
    EXPECT_EQ(selection.ids.size(), 3U);
}

TEST(OutermostFindings, aDuplicateAndItsOriginalAreBothCopiesOfOneFile)
{
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(
                  {duplicate("/r/x (1).pdf"), finding("/r/x.pdf", 5)}),
              1U);
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(
                  {duplicate("/r/x (1).pdf"), duplicate("/r/x (2).pdf")}),
              0U);
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(
                  {duplicate("/r/x (1).pdf"), finding("/r/d/x.pdf", 5)}),
              0U);
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(
                  {finding("/r/x (1).pdf", 5), finding("/r/x.pdf", 5)}),
              0U);
}

TEST(OutermostFindings, anOriginalThatGoesWithItsFolderIsACopyToo)
{
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(
                  {duplicate("/r/p/node_modules/x (1).js"), cache("/r/p/node_modules", 9)}),
              1U);
}

TEST(OutermostFindings, ofACopyOfACopyTheFirstOfAllMayStay)
{
    const Findings copies = {duplicate("/r/x (1) (2).pdf"), duplicate("/r/x (1).pdf")};
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(copies), 0U);
    EXPECT_EQ(
        OutermostFindings::filesWithoutACopyLeft({copies[0], copies[1], finding("/r/x.pdf", 5)}),
        1U);
}

TEST(OutermostFindings, threeCopiesOfOneFileAreOneFile)
{
    EXPECT_EQ(OutermostFindings::filesWithoutACopyLeft(
                  {duplicate("/r/x (1)"), duplicate("/r/x (2)"), finding("/r/x", 5)}),
              1U);
}

TEST(OutermostFindings, whatLiesInAFolderThatWentIsOutsideNoMore)
{
    const Findings all = {finding("/r/c/x", 9), cache("/r/c", 10), finding("/r/cd", 1)};
    EXPECT_EQ(OutermostFindings::outside(all, {FileURL("/r/c")}), (Findings{all[1], all[2]}));
    EXPECT_EQ(OutermostFindings::outside(all, {}), all);
}

}  // namespace gruk
