#include "core/realm/weighted_voronoi_map.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "core/realm/nearest_seed_search.h"
#include "core/realm/seeded_generator.h"
#include "core/realm/stable_hash.h"
#include "platform/foundation/require.h"

namespace gruk::WeightedVoronoiMap {

namespace {

/// Below it a realm would hold no land at all.
constexpr double leastWeight = 0.001;

std::vector<PlacedSeed> placedSeeds(const std::vector<MapSeed>& seeds)
{
    std::vector<std::string> ids;
    ids.reserve(seeds.size());
    for (const MapSeed& seed : seeds) {
        ids.push_back(seed.id);
    }
    const std::map<std::string, MapPosition> places = positions(ids);
    std::vector<PlacedSeed> placed;
    placed.reserve(seeds.size());
    for (const MapSeed& seed : seeds) {
        const MapPosition place = places.at(seed.id);
        // Not the larger of the two: a weight that is not a number stays one.
        const double weight = seed.weight <= leastWeight ? leastWeight : seed.weight;
        placed.push_back({place.x, place.y, weight});
    }
    return placed;
}

/// Gives each seed the cell it stands in, the greatest id last.
void stamp(const std::vector<MapSeed>& seeds, const std::vector<PlacedSeed>& placed, int resolution,
           std::vector<std::size_t>& owners)
{
    std::vector<std::size_t> order(seeds.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(),
              [&](std::size_t a, std::size_t b) { return seeds[a].id < seeds[b].id; });
    const auto cellAt = [resolution](double coordinate) {
        return static_cast<std::size_t>(
            std::clamp(static_cast<int>(coordinate * resolution), 0, resolution - 1));
    };
    for (const std::size_t seed : order) {
        const std::size_t row = cellAt(placed[seed].y);
        owners[row * static_cast<std::size_t>(resolution) + cellAt(placed[seed].x)] = seed;
    }
}

}  // namespace

MapSeed seed(const RealmSummary& realm)
{
    return {realm.path, std::sqrt(static_cast<double>(realm.totalBytes) + 2.0)};
}

std::map<std::string, MapPosition> positions(const std::vector<std::string>& ids)
{
    std::vector<std::string> sorted = ids;
    std::sort(sorted.begin(), sorted.end());
    const auto side =
        static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(sorted.size()))));
    std::map<std::string, MapPosition> places;
    for (std::size_t rank = 0; rank < sorted.size(); ++rank) {
        SeededGenerator generator(stableHash(sorted[rank]));
        const double jitterX = generator.unit(0.15, 0.85);
        const double jitterY = generator.unit(0.15, 0.85);
        const auto column = static_cast<double>(rank % side);
        const auto row = static_cast<double>(rank / side);
        const auto squares = static_cast<double>(side);
        places[sorted[rank]] = {(jitterX + column) / squares, (jitterY + row) / squares};
    }
    return places;
}

std::vector<TerritoryCell> partition(const std::vector<MapSeed>& seeds, int resolution)
{
    if (seeds.empty() || resolution < 1) {
        return {};
    }
    const std::vector<PlacedSeed> placed = placedSeeds(seeds);
    std::vector<std::size_t> owners = nearestSeeds(placed, resolution);
    stamp(seeds, placed, resolution, owners);

    std::vector<TerritoryCell> cells;
    cells.reserve(owners.size());
    for (int gridY = 0; gridY < resolution; ++gridY) {
        for (int gridX = 0; gridX < resolution; ++gridX) {
            cells.push_back({seeds[owners[cells.size()]].id, gridX, gridY});
        }
    }
    return cells;
}

OwnerGrid ownerGrid(const std::vector<TerritoryCell>& cells, int resolution)
{
    const auto count = static_cast<std::size_t>(std::max(resolution, 0));
    OwnerGrid grid(count, std::vector<std::string>(count));
    for (const TerritoryCell& cell : cells) {
        const auto x = static_cast<std::size_t>(cell.gridX);
        const auto y = static_cast<std::size_t>(cell.gridY);
        GRUK_REQUIRE(x < count && y < count, "a cell lies beyond the map");
        grid[x][y] = cell.ownerID;
    }
    return grid;
}

}  // namespace gruk::WeightedVoronoiMap
