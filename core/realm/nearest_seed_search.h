#pragma once

#include <cstddef>
#include <vector>

namespace gruk {

/// A seed in its place in the unit square.
struct PlacedSeed {
    double x = 0;
    double y = 0;
    /// At least 0.001, or not a number.
    double weight = 0;
};

/// For each of `resolution` times `resolution` cells, row by row, the position in `seeds` (which
/// holds one at least) of the seed that is nearest to the cell's centre, by distance divided by
/// weight; of equal distances the first, and the first of all where no distance can be measured.
///
/// The answer is to the bit that of a plain loop over cells and seeds. It is found by halving the
/// square and leaving behind, at each step, the seeds that are too far from all of a part to win
/// any cell of it. Pure; any thread.
[[nodiscard]] std::vector<std::size_t> nearestSeeds(const std::vector<PlacedSeed>& seeds,
                                                    int resolution);

}  // namespace gruk
