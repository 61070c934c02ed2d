#pragma once

#include <map>
#include <string>
#include <vector>

#include "core/realm/grid_point.h"
#include "core/realm/owner_grid.h"

namespace gruk::MarchingSquaresContour {

/// The borders of each owner in `grid`, as loops along the edges of its cells, one point for every
/// corner passed. An owner lies to the right of its border: outer loops run clockwise, the loops
/// around its holes the other way. What two owners share stands in both, in opposite directions.
/// The edge of the grid is a border; the empty text owns nothing and has none.
///
/// Every edge stands in exactly one loop. A loop begins at its owner's first edge that is in none
/// yet, in the order of columns, then rows, then the top, right, bottom and left of a cell; where
/// two cells of an owner touch at a corner only it goes on along the edge that is first in that
/// order. So the same grid always gives the same loops.
///
/// Empty when `size` is below 1 or is not the number of columns; a column of another length is a
/// programming error. Linear in cells and edges. Pure; any thread.
[[nodiscard]] std::map<std::string, std::vector<GridLoop>> contours(const OwnerGrid& grid,
                                                                    int size);

}  // namespace gruk::MarchingSquaresContour
