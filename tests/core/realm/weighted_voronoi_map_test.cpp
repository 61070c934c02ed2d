#include "core/realm/weighted_voronoi_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "core/realm/seeded_generator.h"
#include "core/realm/stable_hash.h"

namespace gruk {

namespace {

using WeightedVoronoiMap::partition;
using WeightedVoronoiMap::positions;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

std::vector<std::string> ids(int count)
{
    std::vector<std::string> list;
    for (int i = 0; i < count; ++i) {
        list.push_back("/realm " + std::to_string(i));
    }
    return list;
}

/// Seeds of different ids and weights of many sizes.
std::vector<MapSeed> randomSeeds(SeededGenerator& draw, std::size_t count)
{
    std::vector<MapSeed> seeds;
    for (std::size_t i = 0; i < count; ++i) {
        const double size = static_cast<double>(draw.next() >> (20 + draw.bounded(44)));
        seeds.push_back({"/" + std::to_string(draw.bounded(1'000'000)), std::sqrt(size + 2.0)});
    }
    return seeds;
}

template <typename T>
void shuffle(SeededGenerator& draw, std::vector<T>& list)
{
    for (std::size_t i = list.size(); i > 1; --i) {
        std::swap(list[i - 1], list[draw.bounded(i)]);
    }
}

std::size_t landOf(const std::vector<TerritoryCell>& cells, const std::string& id)
{
    return static_cast<std::size_t>(std::ranges::count(cells, id, &TerritoryCell::ownerID));
}

/// The cell that a place lies in.
std::size_t cellAt(MapPosition place, int resolution)
{
    return static_cast<std::size_t>(static_cast<int>(place.y * resolution) * resolution
                                    + static_cast<int>(place.x * resolution));
}

/// Whose each cell is, by the definition and nothing else.
std::vector<std::string> owners(const std::vector<MapSeed>& seeds, int resolution)
{
    std::vector<std::string> names;
    for (const MapSeed& seed : seeds) {
        names.push_back(seed.id);
    }
    const auto placed = positions(names);
    std::vector<std::string> grid;
    for (int y = 0; y < resolution; ++y) {
        for (int x = 0; x < resolution; ++x) {
            std::string owner = seeds.front().id;
            double best = std::numeric_limits<double>::max();
            for (const MapSeed& seed : seeds) {
                const double dx = (x + 0.5) / resolution - placed.at(seed.id).x;
                const double dy = (y + 0.5) / resolution - placed.at(seed.id).y;
                const double weight = seed.weight <= 0.001 ? 0.001 : seed.weight;
                const double distance = std::sqrt(dx * dx + dy * dy) / weight;
                if (distance < best) {
                    best = distance;
                    owner = seed.id;
                }
            }
            grid.push_back(owner);
        }
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) {
        grid[cellAt(placed.at(name), resolution)] = name;
    }
    return grid;
}

std::vector<std::string> ownersOf(const std::vector<TerritoryCell>& cells)
{
    std::vector<std::string> list;
    for (const TerritoryCell& cell : cells) {
        list.push_back(cell.ownerID);
    }
    return list;
}

}  // namespace

TEST(WeightedVoronoiMap, noIdsHaveNoPlaces)
{
    EXPECT_TRUE(positions({}).empty());
}

TEST(WeightedVoronoiMap, eachSeedStandsInTheMiddleOfASquareOfTheLatticeByItsRank)
{
    for (int count = 1; count <= 30; ++count) {
        std::vector<std::string> list = ids(count);
        const auto placed = positions(list);
        std::sort(list.begin(), list.end());
        const int side = static_cast<int>(std::ceil(std::sqrt(count)));
        for (int rank = 0; rank < count; ++rank) {
            const std::string& id = list[static_cast<std::size_t>(rank)];
            const double x = placed.at(id).x * side - rank % side;
            const double y = placed.at(id).y * side - rank / side;
            EXPECT_GT(x, 0.15 - 1e-9);
            EXPECT_LT(x, 0.85 + 1e-9);
            EXPECT_GT(y, 0.15 - 1e-9);
            EXPECT_LT(y, 0.85 + 1e-9);
            // How far from the corner of its square depends on the id alone.
            SeededGenerator generator(stableHash(id));
            EXPECT_NEAR(x, generator.unit(0.15, 0.85), 1e-9);
            EXPECT_NEAR(y, generator.unit(0.15, 0.85), 1e-9);
        }
    }
}

TEST(WeightedVoronoiMap, oneSeedStandsInTheMiddleAndOwnsAllCells)
{
    const auto place = positions({"/a"}).at("/a");
    for (const double coordinate : {place.x, place.y}) {
        EXPECT_GE(coordinate, 0.15);
        EXPECT_LE(coordinate, 0.85);
    }
    for (const double weight : {0.0, 1.0, notANumber, infinite}) {
        EXPECT_EQ(landOf(partition({{"/a", weight}}, 48), "/a"), 48U * 48U);
    }
}

TEST(WeightedVoronoiMap, twoSeedsStandInTheTopRowAndTheNearerByWeightOwnsTheLandBelow)
{
    const auto placed = positions({"/a", "/b"});
    EXPECT_LT(placed.at("/a").x, 0.5);
    EXPECT_GT(placed.at("/b").x, 0.5);
    EXPECT_LT(placed.at("/a").y, 0.5);
    EXPECT_LT(placed.at("/b").y, 0.5);

    const auto alike = partition({{"/a", 1}, {"/b", 1}}, 48);
    EXPECT_EQ(alike.at(47 * 48).ownerID, "/a");
    EXPECT_EQ(alike.at(47 * 48 + 47).ownerID, "/b");
    const auto heavier = partition({{"/a", 1}, {"/b", 9}}, 48);
    EXPECT_EQ(heavier.at(47 * 48).ownerID, "/b");
    EXPECT_LT(landOf(heavier, "/a"), landOf(alike, "/a"));
}

TEST(WeightedVoronoiMap, cellsComeRowByRow)
{
    const auto cells = partition({{"/a", 1}, {"/b", 2}}, 7);
    ASSERT_EQ(cells.size(), 49U);
    for (int i = 0; i < 49; ++i) {
        EXPECT_EQ(cells.at(static_cast<std::size_t>(i)).gridX, i % 7);
        EXPECT_EQ(cells.at(static_cast<std::size_t>(i)).gridY, i / 7);
    }
}

TEST(WeightedVoronoiMap, agreesWithTheDefinitionOnAnySeeds)
{
    SeededGenerator draw(53);
    for (int round = 0; round < 150; ++round) {
        const auto seeds = randomSeeds(draw, 1 + draw.bounded(90));
        const int resolution = 1 + static_cast<int>(draw.bounded(30));
        ASSERT_EQ(ownersOf(partition(seeds, resolution)), owners(seeds, resolution));
    }
}

TEST(WeightedVoronoiMap, aWeightOfZeroOrBelowIsTheLeastWeight)
{
    const std::vector<MapSeed> others = {{"/b", 0.002}, {"/c", 0.01}, {"/d", 0.001}};
    const auto with = [&](double weight) {
        std::vector<MapSeed> seeds = others;
        seeds.push_back({"/a", weight});
        return partition(seeds, 48);
    };
    const auto expected = with(0.001);
    for (const double weight : {0.0, -0.0, -1.0, -1e300, -infinite, 1e-9, 5e-324}) {
        EXPECT_EQ(with(weight), expected) << weight;
    }
    EXPECT_NE(with(0.0011), expected);
    EXPECT_GT(landOf(expected, "/a"), 1U);
}

TEST(WeightedVoronoiMap, theOrderOfTheSeedsDoesNotMatter)
{
    SeededGenerator draw(54);
    for (int round = 0; round < 60; ++round) {
        auto seeds = randomSeeds(draw, 1 + draw.bounded(60));
        const auto cells = partition(seeds, 24);
        shuffle(draw, seeds);
        ASSERT_EQ(partition(seeds, 24), cells);
    }
}

TEST(WeightedVoronoiMap, twoSeedsWithOneIdShareAPlaceAndEachPullsWithItsOwnWeight)
{
    EXPECT_EQ(positions({"/a", "/a", "/b"}).size(), 2U);
    // The id has the place of its last rank.
    EXPECT_GT(positions({"/a", "/a", "/b"}).at("/a").x, 0.5);

    const std::vector<MapSeed> seeds = {{"/a", 1}, {"/b", 3}, {"/a", 5}};
    const auto cells = partition(seeds, 48);
    EXPECT_EQ(ownersOf(cells), owners(seeds, 48));
    EXPECT_EQ(partition({{"/a", 5}, {"/b", 3}, {"/a", 1}}, 48), cells);
    EXPECT_GT(landOf(cells, "/a"), landOf(cells, "/b"));
    EXPECT_NE(partition({{"/a", 1}, {"/b", 3}, {"/a", 1}}, 48), cells);
}

TEST(WeightedVoronoiMap, theOnlyCellOfAMapOfOneIsStampedByTheGreatestId)
{
    const std::vector<TerritoryCell> expected = {{"/c", 0, 0}};
    EXPECT_EQ(partition({{"/c", 0.001}, {"/a", 1e9}, {"/b", 1}}, 1), expected);
}

TEST(WeightedVoronoiMap, ofTwoSeedsInOneCellTheOneWithTheGreaterIdKeepsIt)
{
    // The third of three stands alone in the lower row; the map of two by two has one cell for it
    // and one for each of the other two.
    EXPECT_EQ(ownersOf(partition({{"/a", 1}, {"/b", 1}, {"/c", 1000}}, 2)),
              (std::vector<std::string>{"/a", "/b", "/c", "/c"}));
    const auto nine = partition({{"/a", 1e9},
                                 {"/b", 1},
                                 {"/c", 1},
                                 {"/d", 1},
                                 {"/e", 1},
                                 {"/f", 1},
                                 {"/g", 1},
                                 {"/h", 1},
                                 {"/i", 1}},
                                1);
    EXPECT_EQ(nine.at(0).ownerID, "/i");
}

TEST(WeightedVoronoiMap, aSmallRealmKeepsTheCellItStandsInHoweverHeavyTheOthers)
{
    std::vector<MapSeed> seeds;
    for (const std::string& id : ids(20)) {
        seeds.push_back({id, 1e12});
    }
    seeds[7].weight = 0.001;
    const auto cells = partition(seeds, 48);
    EXPECT_EQ(landOf(cells, seeds[7].id), 1U);
    const MapPosition place = positions(ids(20)).at(seeds[7].id);
    EXPECT_EQ(cells.at(cellAt(place, 48)).ownerID, seeds[7].id);
}

TEST(WeightedVoronoiMap, aResolutionBelowOneOrNoSeedsGiveNoCells)
{
    for (const int resolution : {0, -1, -48, std::numeric_limits<int>::min()}) {
        EXPECT_TRUE(partition({{"/a", 1}}, resolution).empty());
    }
    EXPECT_TRUE(partition({}, 48).empty());
}

TEST(WeightedVoronoiMap, aWeightThatIsNotANumberOwnsTheCellItStandsInOnly)
{
    const auto behind = partition({{"/a", 1}, {"/b", notANumber}, {"/c", 1}}, 48);
    EXPECT_EQ(landOf(behind, "/b"), 1U);
    const auto before = partition({{"/b", notANumber}, {"/a", 1}, {"/c", 1}}, 48);
    EXPECT_EQ(landOf(before, "/b"), 1U);
}

TEST(WeightedVoronoiMap, withoutAnyDistanceTheFirstSeedOwnsTheMap)
{
    const auto cells = partition({{"/b", notANumber}, {"/a", notANumber}}, 48);
    EXPECT_EQ(landOf(cells, "/b"), 48U * 48U - 1);
    EXPECT_EQ(landOf(cells, "/a"), 1U);
}

TEST(WeightedVoronoiMap, anInfiniteWeightTakesWhatNoEarlierOneTook)
{
    const auto cells = partition({{"/d", 5}, {"/c", infinite}, {"/a", infinite}, {"/b", 1}}, 48);
    EXPECT_EQ(landOf(cells, "/c"), 48U * 48U - 3);
    EXPECT_EQ(landOf(cells, "/a"), 1U);
}

TEST(WeightedVoronoiMap, aRealmPullsWithTheRootOfItsBytes)
{
    RealmSummary realm;
    realm.path = "/a";
    EXPECT_EQ(WeightedVoronoiMap::seed(realm), (MapSeed{"/a", std::sqrt(2.0)}));
    realm.totalBytes = 1'000'000'000'002;
    EXPECT_EQ(WeightedVoronoiMap::seed(realm).weight, std::sqrt(1'000'000'000'004.0));
}

TEST(WeightedVoronoiMap, theGridHasEachCellByColumnAndRow)
{
    const auto cells = partition({{"/a", 1}, {"/b", 2}, {"/c", 3}}, 9);
    const OwnerGrid grid = WeightedVoronoiMap::ownerGrid(cells, 9);
    ASSERT_EQ(grid.size(), 9U);
    for (const TerritoryCell& cell : cells) {
        EXPECT_EQ(
            grid.at(static_cast<std::size_t>(cell.gridX)).at(static_cast<std::size_t>(cell.gridY)),
            cell.ownerID);
    }
    EXPECT_EQ(WeightedVoronoiMap::ownerGrid({{"/a", 1, 0}}, 2), (OwnerGrid{{"", ""}, {"/a", ""}}));
    EXPECT_TRUE(WeightedVoronoiMap::ownerGrid({}, 0).empty());
}

TEST(WeightedVoronoiMapDeathTest, aCellBeyondTheGridStopsTheProgram)
{
    EXPECT_DEATH((void)WeightedVoronoiMap::ownerGrid({{"/a", 2, 0}}, 2), "Gruk: stopped");
    EXPECT_DEATH((void)WeightedVoronoiMap::ownerGrid({{"/a", 0, -1}}, 2), "Gruk: stopped");
}

}  // namespace gruk
