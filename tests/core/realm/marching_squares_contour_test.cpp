#include "core/realm/marching_squares_contour.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "tests/core/realm/random_grid.h"

namespace gruk {

namespace {

using MarchingSquaresContour::contours;
using test::cellsOf;
using test::gridOf;

/// From x, from y, to x, to y.
using Edge = std::array<double, 4>;
using Edges = std::multiset<Edge>;

Edges edgesOf(const GridLoop& loop)
{
    Edges edges;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        const GridPoint& from = loop[i];
        const GridPoint& to = loop[(i + 1) % loop.size()];
        edges.insert({from.x, from.y, to.x, to.y});
    }
    return edges;
}

Edges edgesOf(const std::vector<GridLoop>& loops)
{
    Edges edges;
    for (const GridLoop& loop : loops) {
        edges.merge(edgesOf(loop));
    }
    return edges;
}

/// The sides of each cell of `owner` where another's or nobody's begins, the owner on the right.
Edges bordersOf(const OwnerGrid& grid, const std::string& owner)
{
    const int size = static_cast<int>(grid.size());
    const auto at = [&](int x, int y) {
        return x < 0 || y < 0 || x >= size || y >= size
                   ? std::string()
                   : grid[static_cast<std::size_t>(x)][static_cast<std::size_t>(y)];
    };
    Edges edges;
    for (int x = 0; x < size; ++x) {
        for (int y = 0; y < size; ++y) {
            const double left = x;
            const double top = y;
            if (at(x, y) != owner) {
                continue;
            }
            if (at(x, y - 1) != owner) {
                edges.insert({left, top, left + 1, top});
            }
            if (at(x + 1, y) != owner) {
                edges.insert({left + 1, top, left + 1, top + 1});
            }
            if (at(x, y + 1) != owner) {
                edges.insert({left + 1, top + 1, left, top + 1});
            }
            if (at(x - 1, y) != owner) {
                edges.insert({left, top + 1, left, top});
            }
        }
    }
    return edges;
}

/// What the loops enclose, by the shoelace formula; holes count against it.
double area(const std::vector<GridLoop>& loops)
{
    double twice = 0;
    for (const Edge& edge : edgesOf(loops)) {
        twice += edge[0] * edge[3] - edge[2] * edge[1];
    }
    return twice / 2;
}

/// How many pairs of cells side by side have two owners.
std::size_t neighboursOf(const OwnerGrid& grid)
{
    const auto differ = [](const std::string& a, const std::string& b) {
        return !a.empty() && !b.empty() && a != b;
    };
    std::size_t pairs = 0;
    for (std::size_t x = 0; x < grid.size(); ++x) {
        for (std::size_t y = 0; y < grid.size(); ++y) {
            pairs += x > 0 && differ(grid[x][y], grid[x - 1][y]) ? 1 : 0;
            pairs += y > 0 && differ(grid[x][y], grid[x][y - 1]) ? 1 : 0;
        }
    }
    return pairs;
}

bool isUnit(const Edge& edge)
{
    return std::abs(edge[0] - edge[2]) + std::abs(edge[1] - edge[3]) == 1;
}

Edges reversed(const Edges& edges)
{
    Edges other;
    for (const Edge& edge : edges) {
        other.insert({edge[2], edge[3], edge[0], edge[1]});
    }
    return other;
}

/// Of the rows that the grid looks like, one letter a cell, a blank for nobody.
std::map<std::string, std::vector<GridLoop>> contoursOf(const std::vector<std::string>& rows)
{
    return contours(gridOf(rows), static_cast<int>(rows.size()));
}

}  // namespace

TEST(MarchingSquaresContour, anOwnerOfEveryCellHasOneLoopAroundTheRim)
{
    for (const int size : {1, 2, 5, 48}) {
        const auto count = static_cast<std::size_t>(size);
        const auto all = contours(OwnerGrid(count, std::vector<std::string>(count, "/a")), size);
        ASSERT_EQ(all.size(), 1U);
        const auto& loops = all.at("/a");
        ASSERT_EQ(loops.size(), 1U);
        EXPECT_EQ(loops[0].size(), 4 * count);
        for (const GridPoint& point : loops[0]) {
            EXPECT_TRUE(point.x == 0 || point.y == 0 || point.x == size || point.y == size);
        }
        EXPECT_EQ(area(loops), size * size);
    }
}

TEST(MarchingSquaresContour, aSingleCellHasOneLoopOfItsFourCornersClockwise)
{
    const auto all = contoursOf({"    ", "  A ", "    ", "    "});
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all.at("A"), (std::vector<GridLoop>{{{2, 1}, {3, 1}, {3, 2}, {2, 2}}}));
}

TEST(MarchingSquaresContour, aRegionWithAHoleHasTwoLoopsAndTheHolesOwnerTheReversedOne)
{
    const auto all = contoursOf({"AAA", "ABA", "AAA"});
    const auto& outer = all.at("A");
    const auto& inner = all.at("B");
    ASSERT_EQ(outer.size(), 2U);
    ASSERT_EQ(inner.size(), 1U);
    EXPECT_EQ(outer[0].size(), 12U);
    EXPECT_EQ(outer[1].size(), 4U);
    EXPECT_EQ(edgesOf(inner[0]), reversed(edgesOf(outer[1])));
    EXPECT_EQ(area(outer), 8);
    EXPECT_EQ(area(inner), 1);
}

TEST(MarchingSquaresContour, aHoleOfNobodysIsAHoleToo)
{
    const auto all = contoursOf({"AAA", "A A", "AAA"});
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all.at("A").size(), 2U);
}

TEST(MarchingSquaresContour, theEmptyTextHasNoBordersEvenWhereItCoversMostOfTheGrid)
{
    EXPECT_TRUE(contoursOf({"   ", "   ", "   "}).empty());
    const auto all = contoursOf({"   ", " A ", "  B"});
    EXPECT_EQ(all.size(), 2U);
    EXPECT_FALSE(all.contains(""));
}

TEST(MarchingSquaresContour, twoCellsThatTouchAtACornerHaveEightEdgesEachUsedOnce)
{
    for (const std::vector<std::string>& rows :
         {std::vector<std::string>{"A ", " A"}, {" A", "A "}}) {
        const auto all = contoursOf(rows);
        const auto& loops = all.at("A");
        const Edges edges = edgesOf(loops);
        EXPECT_EQ(edges.size(), 8U);
        EXPECT_EQ(std::set<Edge>(edges.begin(), edges.end()).size(), 8U);
        EXPECT_EQ(edges, bordersOf(gridOf(rows), "A"));
        EXPECT_TRUE((loops.size() == 1 && loops[0].size() == 8)
                    || (loops.size() == 2 && loops[0].size() == 4 && loops[1].size() == 4));
    }
}

TEST(MarchingSquaresContour, aLoopGoesOnAlongTheEdgeOfTheCellVisitedFirst)
{
    // Columns are visited from the left: the border of the cell on the left comes back to the
    // shared corner first, and goes on around that cell.
    EXPECT_EQ(contoursOf({"A ", " A"}).at("A"), (std::vector<GridLoop>{
                                                    {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
                                                    {{1, 1}, {2, 1}, {2, 2}, {1, 2}},
                                                }));
    EXPECT_EQ(contoursOf({" A", "A "}).at("A"), (std::vector<GridLoop>{
                                                    {{0, 1}, {1, 1}, {1, 2}, {0, 2}},
                                                    {{1, 0}, {2, 0}, {2, 1}, {1, 1}},
                                                }));
    // Here it comes to the corner from the other cell, and passes it a second time.
    EXPECT_EQ(contoursOf({" A ", "  A", "AAA"}).at("A"), (std::vector<GridLoop>{
                                                             {{0, 2},
                                                              {1, 2},
                                                              {2, 2},
                                                              {2, 1},
                                                              {1, 1},
                                                              {1, 0},
                                                              {2, 0},
                                                              {2, 1},
                                                              {3, 1},
                                                              {3, 2},
                                                              {3, 3},
                                                              {2, 3},
                                                              {1, 3},
                                                              {0, 3}},
                                                         }));
}

TEST(MarchingSquaresContour, aGridOfAnotherSizeHasNoBorders)
{
    const OwnerGrid grid = gridOf({"AA", "AA"});
    for (const int size : {0, -1, 1, 3, 48}) {
        EXPECT_TRUE(contours(grid, size).empty());
    }
    EXPECT_TRUE(contours({}, 0).empty());
    EXPECT_TRUE(contours({}, 1).empty());
    EXPECT_FALSE(contours(grid, 2).empty());
}

TEST(MarchingSquaresContourDeathTest, aColumnOfAnotherLengthStopsTheProgram)
{
    EXPECT_DEATH((void)contours({{"A", "A"}, {"A"}}, 2), "Gruk: stopped");
    EXPECT_DEATH((void)contours({{"A", "A"}, {"A", "A", "A"}}, 2), "Gruk: stopped");
}

TEST(MarchingSquaresContour, everyBorderOfEveryOwnerIsUsedExactlyOnce)
{
    SeededGenerator draw(541);
    for (int round = 0; round < 300; ++round) {
        const OwnerGrid grid = test::randomGrid(draw);
        const auto all = contours(grid, static_cast<int>(grid.size()));
        const auto cells = cellsOf(grid);
        ASSERT_EQ(all.size(), cells.size());
        for (const auto& [owner, loops] : all) {
            ASSERT_TRUE(cells.contains(owner));
            ASSERT_EQ(edgesOf(loops), bordersOf(grid, owner));
        }
    }
}

TEST(MarchingSquaresContour, everyLoopClosesInUnitStepsAndHasFourPointsAtLeast)
{
    SeededGenerator draw(542);
    for (int round = 0; round < 300; ++round) {
        const OwnerGrid grid = test::randomGrid(draw);
        for (const auto& [owner, loops] : contours(grid, static_cast<int>(grid.size()))) {
            for (const GridLoop& loop : loops) {
                ASSERT_GE(loop.size(), 4U);
                ASSERT_TRUE(std::ranges::all_of(edgesOf(loop), isUnit));
            }
        }
    }
}

TEST(MarchingSquaresContour, whatTheLoopsEncloseIsTheNumberOfCells)
{
    SeededGenerator draw(543);
    for (int round = 0; round < 300; ++round) {
        const OwnerGrid grid = test::randomGrid(draw);
        const auto all = contours(grid, static_cast<int>(grid.size()));
        for (const auto& [owner, cells] : cellsOf(grid)) {
            ASSERT_EQ(area(all.at(owner)), static_cast<double>(cells));
        }
    }
}

TEST(MarchingSquaresContour, whatTwoOwnersShareStandsInBothInOppositeDirections)
{
    SeededGenerator draw(544);
    for (int round = 0; round < 200; ++round) {
        const OwnerGrid grid = test::randomGrid(draw);
        const auto all = contours(grid, static_cast<int>(grid.size()));
        std::map<Edge, std::string> ownerOf;
        for (const auto& [owner, loops] : all) {
            for (const Edge& edge : edgesOf(loops)) {
                ASSERT_TRUE(ownerOf.emplace(edge, owner).second);
            }
        }
        std::size_t shared = 0;
        for (const auto& [edge, owner] : ownerOf) {
            const auto other = ownerOf.find({edge[2], edge[3], edge[0], edge[1]});
            if (other != ownerOf.end()) {
                ASSERT_NE(other->second, owner);
                ++shared;
            }
        }
        ASSERT_EQ(shared, 2 * neighboursOf(grid));
    }
}

TEST(MarchingSquaresContour, theSameGridGivesTheSameLoops)
{
    SeededGenerator draw(545);
    for (int round = 0; round < 50; ++round) {
        const OwnerGrid grid = test::randomGrid(draw);
        const int size = static_cast<int>(grid.size());
        const auto all = contours(grid, size);
        ASSERT_EQ(contours(grid, size), all);
        // Other names for the owners, in another order, change no loop.
        OwnerGrid renamed = grid;
        for (auto& column : renamed) {
            for (std::string& owner : column) {
                owner = owner.empty() ? owner : std::string(9 - owner.size(), 'x') + owner;
            }
        }
        for (const auto& [owner, loops] : contours(renamed, size)) {
            ASSERT_EQ(all.at(owner.substr(owner.find_first_not_of('x'))), loops);
        }
    }
}

}  // namespace gruk
