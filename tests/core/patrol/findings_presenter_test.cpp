#include "core/patrol/findings_presenter.h"

#include <gtest/gtest.h>

#include <string>

namespace gruk {

namespace {

using Reason = ReviewFinding::Reason;

ReviewFinding finding(const std::string& path, Reason reason, Bytes size)
{
    ReviewFinding result;
    result.id = path;
    result.url = FileURL("/realm/" + path);
    result.reason = reason;
    result.allocatedSize = size;
    return result;
}

std::string order(const std::vector<ReviewFinding>& findings, FindingsSort sort,
                  std::optional<Reason> filter = std::nullopt)
{
    std::string ids;
    for (const ReviewFinding& found : FindingsPresenter::present(findings, sort, filter)) {
        ids += (ids.empty() ? "" : " ") + found.id;
    }
    return ids;
}

const std::vector<ReviewFinding> findings = {
    finding("x/delta", Reason::regenerableCache, 5), finding("a/Bravo", Reason::oldInstaller, 7),
    finding("charlie", Reason::oldInstaller, 9),     finding("z/alpha", Reason::rapidGrowth, 1),
    finding("echo", Reason::duplicateDownload, 7),
};

}  // namespace

TEST(FindingsPresenter, sortsHaveTheirCaseNames)
{
    EXPECT_EQ(rawString(FindingsSort::size), "size");
    EXPECT_EQ(rawString(FindingsSort::name), "name");
    EXPECT_EQ(rawString(FindingsSort::reason), "reason");
}

TEST(FindingsPresenter, withoutAReasonFilterAllFindingsAreThere)
{
    EXPECT_EQ(FindingsPresenter::present(findings, FindingsSort::size, std::nullopt).size(), 5U);
}

TEST(FindingsPresenter, aReasonThatNoneHasGivesAnEmptyList)
{
    const std::vector<ReviewFinding> installers = {findings[1], findings[2]};
    EXPECT_EQ(order(installers, FindingsSort::size, Reason::rapidGrowth), "");
}

TEST(FindingsPresenter, aReasonFilterKeepsOnlyThatReason)
{
    EXPECT_EQ(order(findings, FindingsSort::name, Reason::oldInstaller), "a/Bravo charlie");
}

TEST(FindingsPresenter, sortingBySizePutsTheLargestFirstAndKeepsTheOrderOfEquals)
{
    EXPECT_EQ(order(findings, FindingsSort::size), "charlie a/Bravo echo x/delta z/alpha");
}

TEST(FindingsPresenter, sortingByNameLooksAtTheLastComponentWithoutRegardToCase)
{
    EXPECT_EQ(order(findings, FindingsSort::name), "z/alpha a/Bravo charlie x/delta echo");
}

TEST(FindingsPresenter, namesThatDifferInCaseAloneKeepTheirOrder)
{
    const std::vector<ReviewFinding> alike = {finding("b/NAME", Reason::oldInstaller, 1),
                                              finding("a/name", Reason::oldInstaller, 2),
                                              finding("c/Name", Reason::oldInstaller, 3)};
    EXPECT_EQ(order(alike, FindingsSort::name), "b/NAME a/name c/Name");
}

TEST(FindingsPresenter, sortingByReasonPutsRapidGrowthFirstAndInstallersLargestFirst)
{
    EXPECT_EQ(order(findings, FindingsSort::reason), "z/alpha echo charlie a/Bravo x/delta");
}

}  // namespace gruk
