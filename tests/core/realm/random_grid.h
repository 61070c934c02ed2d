#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/realm/seeded_generator.h"
#include "core/realm/weighted_voronoi_map.h"

namespace gruk::test {

/// The grid that looks like `rows`, one letter a cell and a blank for nobody.
[[nodiscard]] inline OwnerGrid gridOf(const std::vector<std::string>& rows)
{
    OwnerGrid grid(rows.size(), std::vector<std::string>(rows.size()));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        for (std::size_t x = 0; x < rows.size(); ++x) {
            grid[x][y] = rows[y].at(x) == ' ' ? "" : std::string(1, rows[y][x]);
        }
    }
    return grid;
}

/// A grid of up to 12 by 12: noise of few owners, so that cells meet at corners and enclose each
/// other, with more or less of nobody's land; or a map of many realms.
[[nodiscard]] inline OwnerGrid randomGrid(SeededGenerator& draw)
{
    const int size = 1 + static_cast<int>(draw.bounded(12));
    const auto count = static_cast<std::size_t>(size);
    const std::uint64_t owners = 1 + draw.bounded(5);
    if (draw.bounded(3) == 0) {
        std::vector<MapSeed> seeds;
        for (std::uint64_t i = 0; i < 3 * owners; ++i) {
            seeds.push_back({"/" + std::to_string(draw.bounded(1'000'000)), draw.unit(1, 9)});
        }
        return WeightedVoronoiMap::ownerGrid(WeightedVoronoiMap::partition(seeds, size), size);
    }
    const std::uint64_t empty = draw.bounded(4);
    OwnerGrid grid(count, std::vector<std::string>(count));
    for (auto& column : grid) {
        for (std::string& owner : column) {
            const std::uint64_t drawn = draw.bounded(owners + empty);
            owner = drawn < owners ? "/" + std::to_string(drawn) : "";
        }
    }
    return grid;
}

/// How many cells each owner has; nobody has none.
[[nodiscard]] inline std::map<std::string, std::size_t> cellsOf(const OwnerGrid& grid)
{
    std::map<std::string, std::size_t> cells;
    for (const auto& column : grid) {
        for (const std::string& owner : column) {
            ++cells[owner];
        }
    }
    cells.erase("");
    return cells;
}

}  // namespace gruk::test
