#pragma once

#include <vector>

namespace gruk {

/// A vertex on the map grid, x to the right and y downwards, in cells. The corners of cells are
/// whole numbers.
struct GridPoint {
    double x = 0;
    double y = 0;

    friend bool operator==(const GridPoint&, const GridPoint&) = default;
};

/// A closed line: its last point is joined to the first, which is not repeated.
using GridLoop = std::vector<GridPoint>;

}  // namespace gruk
