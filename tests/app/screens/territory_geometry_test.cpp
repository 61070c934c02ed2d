#include "app/screens/territory_geometry.h"

#include <cmath>

#include <gtest/gtest.h>

#include "core/realm/border_wobble.h"
#include "core/realm/chaikin_smoothing.h"
#include "core/realm/marching_squares_contour.h"
#include "core/realm/realm_identity.h"
#include "core/realm/seeded_generator.h"
#include "core/realm/weighted_voronoi_map.h"
#include "tests/app/theme/drawing_probe.h"

namespace gruk {

namespace {

constexpr double side = 480;
constexpr double cell = side / mapResolution;

RealmSummary realm(const std::string& name, Bytes bytes)
{
    RealmSummary summary;
    summary.path = "/realms/" + name;
    summary.displayName = name;
    summary.totalBytes = bytes;
    return summary;
}

/// Sizes over nine powers of ten.
std::vector<RealmSummary> randomRealms(SeededGenerator& draw, std::uint64_t count)
{
    std::vector<RealmSummary> realms;
    for (std::uint64_t index = 0; index < count; ++index) {
        const double bytes = std::pow(10.0, draw.unit(3, 12));
        realms.push_back(realm("realm " + std::to_string(draw.next()), static_cast<Bytes>(bytes)));
    }
    return realms;
}

OwnerGrid gridOf(const std::vector<RealmSummary>& realms)
{
    std::vector<MapSeed> seeds;
    for (const RealmSummary& each : realms) {
        seeds.push_back({each.path, std::sqrt(static_cast<double>(each.totalBytes) + 2.0)});
    }
    return WeightedVoronoiMap::ownerGrid(WeightedVoronoiMap::partition(seeds, 48), 48);
}

const std::vector<RealmSummary> three = {realm("Forest", 734'000'000'000),
                                         realm("Letters", 42'000'000'000), realm("Old disk", 0)};

}  // namespace

TEST(TerritoryMap, noRealmsHoldNoLand)
{
    EXPECT_EQ(territoryMap({}), TerritoryMap());
    EXPECT_EQ(territoryAt({}, {10, 10}, side), std::nullopt);
    EXPECT_TRUE(territoryDrawing({}, {}, side).empty());
}

TEST(TerritoryMap, withOneRealmTheMapIsAllOneRegion)
{
    const TerritoryMap map = territoryMap({realm("Forest", 0)});
    ASSERT_EQ(map.territories.size(), 1U);
    EXPECT_EQ(map.owners, std::vector<std::uint32_t>(48 * 48, 0));
    ASSERT_EQ(map.territories[0].borders.size(), 1U);
    EXPECT_NEAR(map.territories[0].anchor.x, 24, 1e-9);
    EXPECT_NEAR(map.territories[0].anchor.y, 24, 1e-9);
    const QPainterPath path = territoryPath(map.territories[0], side);
    EXPECT_TRUE(path.contains(QRectF(cell, cell, side - 2 * cell, side - 2 * cell)));
}

TEST(TerritoryMap, givesEachCellToTheSeedThatPullsItMost)
{
    SeededGenerator draw(1);
    for (const std::uint64_t count : {1U, 2U, 3U, 9U, 50U}) {
        const std::vector<RealmSummary> realms = randomRealms(draw, count);
        const TerritoryMap map = territoryMap(realms);
        const OwnerGrid grid = gridOf(realms);
        for (std::size_t x = 0; x < 48; ++x) {
            for (std::size_t y = 0; y < 48; ++y) {
                const Territory& owner = map.territories.at(map.owners.at(x * 48 + y));
                ASSERT_EQ(realms[owner.summary].path, grid[x][y]) << x << ", " << y;
            }
        }
    }
}

TEST(TerritoryMap, bordersAreTheContoursWobbledAndSmoothedThreeTimes)
{
    const TerritoryMap map = territoryMap(three);
    const auto contours = MarchingSquaresContour::contours(gridOf(three), 48);
    ASSERT_EQ(map.territories.size(), contours.size());
    for (const Territory& territory : map.territories) {
        const auto& loops = contours.at(three[territory.summary].path);
        ASSERT_EQ(territory.borders.size(), loops.size());
        for (std::size_t index = 0; index < loops.size(); ++index) {
            EXPECT_EQ(territory.borders[index],
                      ChaikinSmoothing::smooth(BorderWobble::wobbled(loops[index]), 3));
        }
    }
}

TEST(TerritoryMap, theAnchorIsTheMiddleOfTheCornersOfTheLargestBorder)
{
    const TerritoryMap map = territoryMap(three);
    // The largest realm goes around the others, so that its largest border is the map's edge.
    const Territory& forest = map.territories[0];
    ASSERT_GE(forest.borders.size(), 2U);
    EXPECT_NEAR(forest.anchor.x, 24, 0.6);
    EXPECT_NEAR(forest.anchor.y, 24, 0.6);
    // An empty realm holds the cell under its seed and no more.
    const Territory& disk = map.territories[2];
    ASSERT_EQ(disk.borders.size(), 1U);
    EXPECT_EQ(disk.anchor.x - std::floor(disk.anchor.x), 0.5);
    EXPECT_EQ(disk.anchor.y - std::floor(disk.anchor.y), 0.5);
    EXPECT_EQ(territoryAt(map, {disk.anchor.x * cell, disk.anchor.y * cell}, side), 2U);
}

TEST(TerritoryMap, theAnchorIsThatOfTheLargestLoopAlsoWhereItIsNotTheFirst)
{
    const GridLoop small = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    const GridLoop large = {{10, 10}, {16, 10}, {16, 14}, {10, 14}};
    // Goes round the other way, so that its area counts as negative before its sign is dropped.
    const GridLoop largest = {{20, 20}, {20, 30}, {30, 30}, {30, 20}};
    EXPECT_EQ(anchorOf({small}), (GridPoint{0.5, 0.5}));
    EXPECT_EQ(anchorOf({small, large}), (GridPoint{13, 12}));
    EXPECT_EQ(anchorOf({small, largest, large}), (GridPoint{25, 25}));
}

TEST(TerritoryMap, ofTwoLoopsOfOneAreaTheFirstHoldsTheAnchor)
{
    const GridLoop first = {{0, 0}, {4, 0}, {4, 1}, {0, 1}};
    const GridLoop second = {{10, 10}, {12, 10}, {12, 12}, {10, 12}};
    EXPECT_EQ(anchorOf({first, second}), (GridPoint{2, 0.5}));
    EXPECT_EQ(anchorOf({second, first}), (GridPoint{11, 11}));
}

TEST(TerritoryMap, theSameSummariesGiveTheSameMap)
{
    EXPECT_EQ(territoryMap(three), territoryMap(three));
    std::vector<RealmSummary> grown = three;
    grown[1].totalBytes *= 4;
    EXPECT_NE(territoryMap(three), territoryMap(grown));
}

TEST(TerritoryMap, twoRealmsOfOnePathAreOneTerritory)
{
    const TerritoryMap map = territoryMap({realm("Forest", 5), realm("Forest", 5)});
    ASSERT_EQ(map.territories.size(), 1U);
    EXPECT_EQ(map.territories[0].summary, 0U);
}

TEST(TerritoryMap, aPointBelongsToTheOwnerOfTheCellUnderIt)
{
    const TerritoryMap map = territoryMap(three);
    for (int x = 0; x < 48; ++x) {
        for (int y = 0; y < 48; ++y) {
            const auto owner = map.owners[static_cast<std::size_t>(x * 48 + y)];
            ASSERT_EQ(territoryAt(map, {x * cell, y * cell}, side), owner);
            ASSERT_EQ(territoryAt(map, {(x + 0.99) * cell, (y + 0.99) * cell}, side), owner);
        }
    }
    for (const QPointF& beyond : {QPointF(-0.1, 5), QPointF(5, -0.1), QPointF(side, 5),
                                  QPointF(5, side), QPointF(1e12, 1e12)}) {
        EXPECT_EQ(territoryAt(map, beyond, side), std::nullopt);
    }
    EXPECT_EQ(territoryAt(map, {0, 0}, 0), std::nullopt) << "a map of no size";
}

TEST(TerritoryDrawing, landHasThePrimaryTinctureOfTheDerivedShield)
{
    const TerritoryMap map = territoryMap(three);
    const test::Probe probe(territoryDrawing(map, three, side));
    for (std::size_t index = 0; index < three.size(); ++index) {
        const GridPoint& anchor = map.territories[index].anchor;
        const Role role = roleOf(RealmIdentity::derive(three[index].path).primary);
        EXPECT_EQ(probe.coloursAt({anchor.x * cell, anchor.y * cell}),
                  (std::vector<test::Colour>{{role, 1.0}}))
            << three[index].displayName;
    }
}

TEST(TerritoryDrawing, aHoleInARegionStaysOpen)
{
    const TerritoryMap map = territoryMap(three);
    const QPainterPath forest = territoryPath(map.territories[0], side);
    EXPECT_EQ(forest.fillRule(), Qt::OddEvenFill);
    const GridPoint& disk = map.territories[2].anchor;
    EXPECT_FALSE(forest.contains(QPointF(disk.x * cell, disk.y * cell)));
    EXPECT_TRUE(forest.contains(QPointF((disk.x + 1) * cell, disk.y * cell)));
}

TEST(TerritoryDrawing, bordersAreInkAtTwoFifthsRoundAndOneAndAHalfWide)
{
    const Drawing drawing = territoryDrawing(territoryMap(three), three, side);
    int borders = 0;
    bool isAfterLand = false;
    for (const DrawingStep& step : drawing) {
        if (step.stroke) {
            ++borders;
            isAfterLand = true;
            EXPECT_EQ(step.role, Role::ink);
            EXPECT_EQ(step.opacity, 0.4);
            EXPECT_EQ(step.stroke->width, 1.5);
            EXPECT_EQ(step.stroke->cap, Qt::RoundCap);
            EXPECT_EQ(step.stroke->join, Qt::RoundJoin);
            EXPECT_EQ(step.stroke->miterLimit, 10);
        } else {
            EXPECT_FALSE(isAfterLand) << "no land covers a border";
        }
    }
    EXPECT_EQ(borders, 3);
}

TEST(TerritoryDrawing, noSeaShinesThroughWhereLandsMeet)
{
    SeededGenerator draw(3);
    const std::vector<RealmSummary> realms = randomRealms(draw, 20);
    const test::Probe probe(territoryDrawing(territoryMap(realms), realms, side));
    for (int x = 1; x < 48; ++x) {
        for (int y = 1; y < 48; ++y) {
            ASSERT_FALSE(probe.coloursAt({x * cell, y * cell}).empty()) << x << ", " << y;
        }
    }
}

TEST(TerritoryNeighbour, liesInTheDirectionAskedFor)
{
    SeededGenerator draw(4);
    const TerritoryMap map = territoryMap(randomRealms(draw, 30));
    for (std::size_t from = 0; from < map.territories.size(); ++from) {
        const GridPoint& start = map.territories[from].anchor;
        if (const auto left = neighbour(map, from, MapDirection::left)) {
            EXPECT_LT(map.territories[*left].anchor.x, start.x);
        }
        if (const auto right = neighbour(map, from, MapDirection::right)) {
            EXPECT_GT(map.territories[*right].anchor.x, start.x);
        }
        if (const auto up = neighbour(map, from, MapDirection::up)) {
            EXPECT_LT(map.territories[*up].anchor.y, start.y);
        }
        if (const auto down = neighbour(map, from, MapDirection::down)) {
            EXPECT_GT(map.territories[*down].anchor.y, start.y);
        }
    }
}

TEST(TerritoryNeighbour, isTheNearestOneThatLiesMoreAheadThanAside)
{
    SeededGenerator draw(5);
    const TerritoryMap map = territoryMap(randomRealms(draw, 40));
    int found = 0;
    for (std::size_t from = 0; from < map.territories.size(); ++from) {
        const GridPoint& start = map.territories[from].anchor;
        const auto right = neighbour(map, from, MapDirection::right);
        const auto distance = [&](std::size_t to) {
            const GridPoint& end = map.territories[to].anchor;
            return std::hypot(end.x - start.x, end.y - start.y);
        };
        for (std::size_t to = 0; to < map.territories.size(); ++to) {
            const GridPoint& end = map.territories[to].anchor;
            if (end.x > start.x && std::abs(end.y - start.y) <= end.x - start.x) {
                ASSERT_TRUE(right);
                EXPECT_LE(distance(*right), distance(to));
                ++found;
            }
        }
    }
    EXPECT_GT(found, 100);
}

}  // namespace gruk
