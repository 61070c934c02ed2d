#pragma once

#include <string>
#include <vector>

namespace gruk {

/// Whose each cell of the map is, by column and then row: `grid[gridX][gridY]`, both from 0 at the
/// top left. The empty text is nobody.
using OwnerGrid = std::vector<std::vector<std::string>>;

}  // namespace gruk
