#pragma once

#include "core/realm/grid_point.h"

/// The unsteady hand that draws the borders. Fixed to the bit; pure; any thread.
namespace gruk::BorderWobble {

/// `loop` with each point moved by up to 0.05 along each axis. How far depends on where the point
/// is and on nothing else, so that the two regions on either side of a border move it alike and
/// no gap opens. Points are told apart to a hundredth. A coordinate beyond ±10^15 is a programming
/// error.
[[nodiscard]] GridLoop wobbled(const GridLoop& loop);

}  // namespace gruk::BorderWobble
