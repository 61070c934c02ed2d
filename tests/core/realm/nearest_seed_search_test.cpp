#include "core/realm/nearest_seed_search.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

/// The plain loop over cells and seeds.
std::vector<std::size_t> plainlyNearest(const std::vector<PlacedSeed>& seeds, int resolution)
{
    std::vector<std::size_t> owners;
    for (int row = 0; row < resolution; ++row) {
        for (int column = 0; column < resolution; ++column) {
            std::size_t owner = 0;
            double least = std::numeric_limits<double>::max();
            for (std::size_t i = 0; i < seeds.size(); ++i) {
                const double dx = (column + 0.5) / resolution - seeds[i].x;
                const double dy = (row + 0.5) / resolution - seeds[i].y;
                const double distance = std::sqrt(dx * dx + dy * dy) / seeds[i].weight;
                if (distance < least) {
                    owner = i;
                    least = distance;
                }
            }
            owners.push_back(owner);
        }
    }
    return owners;
}

/// A place from few, so that many are the same, in the middle of a cell, or mirror each other; or
/// from all.
double coordinate(SeededGenerator& draw)
{
    return draw.bounded(2) == 0 ? static_cast<double>(draw.bounded(17)) / 16 : draw.unit(0.0, 1.0);
}

double weight(SeededGenerator& draw, std::uint64_t kind)
{
    constexpr std::array odd = {0.001,
                                1.0,
                                1e300,
                                std::numeric_limits<double>::max(),
                                std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()};
    switch (kind) {
    case 0:
        return 1;
    case 1:
        return static_cast<double>(1 + draw.bounded(3));
    case 2:
        return std::exp(draw.unit(-6.9, 30));
    case 3:
        return std::exp(draw.unit(690, 709));
    default:
        return odd.at(draw.bounded(odd.size()));
    }
}

}  // namespace

TEST(NearestSeeds, ofTwoEquallyFarTheFirstOwnsTheCell)
{
    const PlacedSeed left{0.25, 0.5, 1};
    const PlacedSeed right{0.75, 0.5, 1};
    EXPECT_EQ(nearestSeeds({left, right}, 1), std::vector<std::size_t>{0});
    EXPECT_EQ(nearestSeeds({right, left}, 1), std::vector<std::size_t>{0});
    // The column in the middle lies between the two, also where many parts are looked at.
    const auto owners = nearestSeeds({right, left}, 47);
    for (std::size_t row = 0; row < 47; ++row) {
        EXPECT_EQ(owners.at(row * 47 + 22), 1U);
        EXPECT_EQ(owners.at(row * 47 + 23), 0U);
        EXPECT_EQ(owners.at(row * 47 + 24), 0U);
    }
}

TEST(NearestSeeds, agreesWithThePlainLoopOnAnySeeds)
{
    SeededGenerator draw(5'300);
    for (int round = 0; round < 2'000; ++round) {
        const std::uint64_t kind = draw.bounded(5);
        std::vector<PlacedSeed> seeds;
        for (std::uint64_t count = 1 + draw.bounded(40); count > 0; --count) {
            seeds.push_back({coordinate(draw), coordinate(draw), weight(draw, kind)});
        }
        const int resolution = 1 + static_cast<int>(draw.bounded(20));
        ASSERT_EQ(nearestSeeds(seeds, resolution), plainlyNearest(seeds, resolution))
            << "round " << round;
    }
}

TEST(NearestSeeds, agreesWithThePlainLoopWhereOneIsAsNearAsAnotherAtTheEdgeOfItsReach)
{
    // Two seeds on either side of a cell, in line with the middle of a part that has the cell in
    // its corner: nothing but roundings is between the reach of the one and that of the other.
    SeededGenerator draw(531);
    for (int round = 0; round < 5'000; ++round) {
        const int resolution = 4 + static_cast<int>(draw.bounded(45));
        const double x =
            (static_cast<double>(draw.bounded(2)) * (resolution / 2) + 0.5) / resolution;
        const double y =
            (static_cast<double>(draw.bounded(2)) * (resolution / 2) + 0.5) / resolution;
        const double away = draw.unit(0, 0.2);
        const std::vector<PlacedSeed> seeds = {{x - away, y - away, 1}, {x + away, y + away, 1}};
        ASSERT_EQ(nearestSeeds(seeds, resolution), plainlyNearest(seeds, resolution));
    }
}

TEST(NearestSeeds, agreesWithThePlainLoopOnAFullMap)
{
    SeededGenerator draw(48);
    for (std::uint64_t kind = 0; kind < 5; ++kind) {
        std::vector<PlacedSeed> seeds;
        for (int i = 0; i < 1'000; ++i) {
            seeds.push_back({draw.unit(0, 1), draw.unit(0, 1), weight(draw, kind)});
        }
        ASSERT_EQ(nearestSeeds(seeds, 48), plainlyNearest(seeds, 48)) << "kind " << kind;
    }
}

}  // namespace gruk
