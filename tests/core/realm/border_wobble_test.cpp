#include "core/realm/border_wobble.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <utility>

#include "core/realm/marching_squares_contour.h"
#include "tests/core/realm/random_grid.h"

namespace gruk {

namespace {

GridPoint moved(double x, double y)
{
    return BorderWobble::wobbled({{x, y}}).front();
}

/// The bits of both ends of a line.
using Line = std::array<std::uint64_t, 4>;

Line lineOf(const GridPoint& from, const GridPoint& to)
{
    return {std::bit_cast<std::uint64_t>(from.x), std::bit_cast<std::uint64_t>(from.y),
            std::bit_cast<std::uint64_t>(to.x), std::bit_cast<std::uint64_t>(to.y)};
}

}  // namespace

TEST(BorderWobble, movesEachCornerByUpToATwentiethOfACellAlongEachAxis)
{
    double farthest = 0;
    std::set<std::pair<double, double>> offsets;
    for (int x = 0; x <= 48; ++x) {
        for (int y = 0; y <= 48; ++y) {
            const GridPoint point = moved(x, y);
            const double dx = point.x - x;
            const double dy = point.y - y;
            EXPECT_LE(std::abs(dx), 0.05 + 1e-12);
            EXPECT_LE(std::abs(dy), 0.05 + 1e-12);
            farthest = std::max({farthest, std::abs(dx), std::abs(dy)});
            offsets.emplace(dx, dy);
        }
    }
    EXPECT_GT(farthest, 0.0499);
    EXPECT_EQ(offsets.size(), 49U * 49U);
}

TEST(BorderWobble, aPointMovesByWhereItIsAndNotByWhatIsBesideIt)
{
    const GridLoop loop = {{3, 4}, {4, 4}, {4, 5}, {3, 5}, {4, 4}};
    const GridLoop wobbled = BorderWobble::wobbled(loop);
    ASSERT_EQ(wobbled.size(), 5U);
    for (std::size_t i = 0; i < loop.size(); ++i) {
        EXPECT_EQ(wobbled[i], moved(loop[i].x, loop[i].y));
    }
    EXPECT_TRUE(BorderWobble::wobbled({}).empty());
}

TEST(BorderWobble, pointsInOneHundredthMoveAlike)
{
    const GridPoint corner = moved(3, 4);
    const GridPoint near = moved(3.004, 3.996);
    EXPECT_NEAR(near.x - 3.004, corner.x - 3, 1e-12);
    EXPECT_NEAR(near.y - 3.996, corner.y - 4, 1e-12);
    EXPECT_GT(std::abs((moved(3.006, 4).x - 3.006) - (corner.x - 3)), 1e-9);
}

TEST(BorderWobble, aSharedBorderIsTheSameToTheBitOnBothSides)
{
    SeededGenerator draw(546);
    for (int round = 0; round < 200; ++round) {
        const OwnerGrid grid = test::randomGrid(draw);
        // What each straight edge has become, and what its neighbour made of it.
        std::map<Line, Line> forward;
        for (const auto& [owner, loops] :
             MarchingSquaresContour::contours(grid, static_cast<int>(grid.size()))) {
            for (const GridLoop& loop : loops) {
                const GridLoop wobbled = BorderWobble::wobbled(loop);
                for (std::size_t i = 0; i < loop.size(); ++i) {
                    const std::size_t next = (i + 1) % loop.size();
                    forward[lineOf(loop[i], loop[next])] = lineOf(wobbled[i], wobbled[next]);
                }
            }
        }
        for (const auto& [edge, line] : forward) {
            const auto other = forward.find({edge[2], edge[3], edge[0], edge[1]});
            if (other != forward.end()) {
                ASSERT_EQ(other->second, (Line{line[2], line[3], line[0], line[1]}));
            }
        }
    }
}

TEST(BorderWobbleDeathTest, aPointNowhereNearTheMapStopsTheProgram)
{
    EXPECT_DEATH((void)moved(1e16, 0), "Gruk: stopped");
    EXPECT_DEATH((void)moved(0, std::nan("")), "Gruk: stopped");
}

}  // namespace gruk
