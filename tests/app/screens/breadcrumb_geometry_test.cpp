#include "app/screens/breadcrumb_geometry.h"

#include <numeric>

#include <gtest/gtest.h>

namespace gruk {

namespace {

constexpr CrumbMeasures measures = {10, 20, 24};

/// Which crumbs have a place.
std::vector<std::size_t> shown(const CrumbLayout& layout)
{
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < layout.crumbs.size(); ++i) {
        if (layout.crumbs[i].width > 0) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

int end(const CrumbLayout& layout)
{
    return layout.crumbs.back().left + layout.crumbs.back().width;
}

using Indexes = std::vector<std::size_t>;

}  // namespace

TEST(BreadcrumbGeometry, whatFitsStandsInALineWithASeparatorBetweenTwo)
{
    const CrumbLayout layout = layOutCrumbs({40, 50, 60}, 170, measures);
    EXPECT_EQ(layout.crumbs, (std::vector<CrumbLayout::Crumb>{{0, 40}, {50, 50}, {110, 60}}));
    EXPECT_EQ(layout.separators, (std::vector<int>{40, 100}));
    EXPECT_TRUE(layout.folds.empty());
}

TEST(BreadcrumbGeometry, theMiddleFoldsAndTheFirstAndTheLastStay)
{
    const CrumbLayout layout = layOutCrumbs({100, 100, 100, 100, 100}, 360, measures);
    EXPECT_EQ(shown(layout), (Indexes{0, 3, 4}));
    ASSERT_EQ(layout.folds.size(), 1U);
    EXPECT_EQ(layout.folds.front(), (CrumbLayout::Fold{110, 1, 3}));
    EXPECT_EQ(layout.crumbs[3].left, 140);
    EXPECT_EQ(end(layout), 350);
    EXPECT_EQ(layout.separators, (std::vector<int>{100, 130, 240}));
}

TEST(BreadcrumbGeometry, theCrumbWithTheFocusIsNeverFolded)
{
    const std::vector<int> widths(12, 100);
    for (std::size_t kept = 0; kept < widths.size(); ++kept) {
        const CrumbLayout layout = layOutCrumbs(widths, 420, measures, kept);
        EXPECT_GT(layout.crumbs[kept].width, 0) << kept;
        EXPECT_GT(layout.crumbs.front().width, 0);
        EXPECT_GT(layout.crumbs.back().width, 0);
        EXPECT_LE(end(layout), 420);
    }
    EXPECT_EQ(layOutCrumbs(widths, 420, measures, 5).folds.size(), 2U);
}

TEST(BreadcrumbGeometry, everyCrumbIsShownOrInOneFold)
{
    const std::vector<int> widths = {80, 200, 30, 90, 240, 60, 120, 45, 150};
    for (int available = 0; available < 1'100; available += 7) {
        const CrumbLayout layout = layOutCrumbs(widths, available, measures, 3);
        std::vector<int> times(widths.size(), 0);
        for (const std::size_t i : shown(layout)) {
            ++times[i];
        }
        for (const CrumbLayout::Fold& fold : layout.folds) {
            for (std::size_t i = fold.first; i < fold.end; ++i) {
                ++times[i];
            }
        }
        EXPECT_EQ(times, std::vector<int>(widths.size(), 1)) << available;
    }
}

TEST(BreadcrumbGeometry, theWidestGiveWayWhereEvenTheFewAreTooWide)
{
    const CrumbLayout layout = layOutCrumbs({30, 240, 240}, 180, measures);
    EXPECT_EQ(shown(layout), (Indexes{0, 2}));
    EXPECT_EQ(layout.crumbs[0].width, 30);
    EXPECT_EQ(end(layout), 180);
}

TEST(BreadcrumbGeometry, noCrumbBecomesNarrowerThanItsSmallestTarget)
{
    const CrumbLayout layout = layOutCrumbs({200, 200}, 0, measures);
    EXPECT_EQ(layout.crumbs[0].width, measures.narrowest);
    EXPECT_EQ(layout.crumbs[1].width, measures.narrowest);
}

TEST(BreadcrumbGeometry, noCrumbsNeedNoPlace)
{
    const CrumbLayout layout = layOutCrumbs({}, 100, measures, 3);
    EXPECT_TRUE(layout.crumbs.empty());
    EXPECT_TRUE(layout.folds.empty());
    EXPECT_TRUE(layout.separators.empty());
}

}  // namespace gruk
