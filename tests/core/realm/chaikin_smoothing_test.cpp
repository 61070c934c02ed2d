#include "core/realm/chaikin_smoothing.h"

#include <gtest/gtest.h>

#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

GridLoop randomLoop(SeededGenerator& draw, std::size_t count)
{
    GridLoop loop;
    for (std::size_t i = 0; i < count; ++i) {
        const double x = draw.unit(0, 48);
        loop.push_back({x, draw.unit(0, 48)});
    }
    return loop;
}

}  // namespace

TEST(ChaikinSmoothing, noIterationsReturnTheInput)
{
    SeededGenerator draw(1);
    const GridLoop loop = randomLoop(draw, 9);
    EXPECT_EQ(ChaikinSmoothing::smooth(loop, 0), loop);
    EXPECT_EQ(ChaikinSmoothing::smooth(loop, -3), loop);
}

TEST(ChaikinSmoothing, threePointsBecomeSix)
{
    EXPECT_EQ(ChaikinSmoothing::smooth({{0, 0}, {4, 0}, {0, 4}}, 1),
              (GridLoop{{1, 0}, {3, 0}, {3, 1}, {1, 3}, {0, 3}, {0, 1}}));
}

TEST(ChaikinSmoothing, twoPointsOrFewerAreReturnedUnchanged)
{
    SeededGenerator draw(2);
    for (const std::size_t count : {0U, 1U, 2U}) {
        const GridLoop loop = randomLoop(draw, count);
        for (const int iterations : {-1, 0, 1, 3, 30}) {
            EXPECT_EQ(ChaikinSmoothing::smooth(loop, iterations), loop);
        }
    }
}

TEST(ChaikinSmoothing, theLastNewPointLiesOnTheClosingSegment)
{
    SeededGenerator draw(3);
    for (int round = 0; round < 100; ++round) {
        const GridLoop loop = randomLoop(draw, 3 + draw.bounded(20));
        const GridPoint last = ChaikinSmoothing::smooth(loop, 1).back();
        const GridPoint& a = loop.back();
        const GridPoint& b = loop.front();
        EXPECT_NEAR(last.x, a.x + 0.75 * (b.x - a.x), 1e-12);
        EXPECT_NEAR(last.y, a.y + 0.75 * (b.y - a.y), 1e-12);
    }
}

TEST(ChaikinSmoothing, threeIterationsAreOneThreeTimesAndEightTimesThePoints)
{
    SeededGenerator draw(4);
    const GridLoop loop = randomLoop(draw, 50);
    GridLoop expected = loop;
    for (int i = 0; i < 3; ++i) {
        expected = ChaikinSmoothing::smooth(expected, 1);
    }
    EXPECT_EQ(ChaikinSmoothing::smooth(loop, 3), expected);
    EXPECT_EQ(expected.size(), 400U);
}

}  // namespace gruk
