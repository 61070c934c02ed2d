#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/realm/owner_grid.h"
#include "core/realm/realm_summary.h"

namespace gruk {

/// One realm as the map sees it.
struct MapSeed {
    /// The region's identity: the bytes of the realm's path.
    std::string id;
    /// The region's pull. At or below 0.001 counts as 0.001.
    double weight = 0;

    friend bool operator==(const MapSeed&, const MapSeed&) = default;
};

/// One square of the map and whose it is.
struct TerritoryCell {
    std::string ownerID;
    /// Column and row, from 0 at the left and the top.
    int gridX = 0;
    int gridY = 0;

    friend bool operator==(const TerritoryCell&, const TerritoryCell&) = default;
};

/// A place in the unit square, x to the right and y downwards.
struct MapPosition {
    double x = 0;
    double y = 0;

    friend bool operator==(const MapPosition&, const MapPosition&) = default;
};

/// All realms on one square, each with land by its pull: a multiplicatively weighted Voronoi
/// diagram over cells. The same seeds give the same cells to the bit, on every machine and in
/// every run: each step is one IEEE operation in the order written, none of them fused. Ids are
/// ordered by their bytes. Pure; any thread.
namespace WeightedVoronoiMap {

/// The seed of a realm: its pull is the square root of its size, so that a realm of a hundred
/// times the bytes has ten times the pull. The bytes are taken with two more, so that an empty
/// realm keeps some.
[[nodiscard]] MapSeed seed(const RealmSummary& realm);

/// Where each id stands: in the middle 70 % of its own square of a lattice, in the order of the
/// ids, moved by its own hash. A repeated id stands once, in the last of its squares.
[[nodiscard]] std::map<std::string, MapPosition> positions(const std::vector<std::string>& ids);

/// `resolution` rows of as many cells, from the top left; none without seeds or for a resolution
/// below 1.
///
/// A cell belongs to the seed whose distance from its centre divided by its weight is least, of
/// equal ones to the first in the list; then each seed takes the cell it stands in, in the order
/// of the ids. A seed whose weight is not a number is never nearer than another: it has the cell
/// it stands in only, or the whole map when it is the first and no weight is a number.
[[nodiscard]] std::vector<TerritoryCell> partition(const std::vector<MapSeed>& seeds,
                                                   int resolution);

/// The cells of a `partition` of that resolution as a grid. A cell beyond it is a programming
/// error.
[[nodiscard]] OwnerGrid ownerGrid(const std::vector<TerritoryCell>& cells, int resolution);

}  // namespace WeightedVoronoiMap
}  // namespace gruk
