#pragma once

#include "core/realm/grid_point.h"

namespace gruk::ChaikinSmoothing {

/// The closed line with its corners cut `iterations` times (Chaikin 1974): every side gives way to
/// its middle half, so that a line of n points has 2n after each time. A line of fewer than 3
/// points, or no iterations, is returned as it is. Fixed to the bit. Pure; any thread.
[[nodiscard]] GridLoop smooth(const GridLoop& points, int iterations);

}  // namespace gruk::ChaikinSmoothing
