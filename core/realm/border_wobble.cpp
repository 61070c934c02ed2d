#include "core/realm/border_wobble.h"

#include <cmath>
#include <cstdint>

#include "core/realm/seeded_generator.h"
#include "platform/foundation/require.h"

namespace gruk::BorderWobble {

namespace {

/// 100 times the coordinate, halves away from zero.
std::uint64_t hundredths(double coordinate)
{
    GRUK_REQUIRE(std::abs(coordinate) <= 1e15, "a point of a border is nowhere near the map");
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::round(100 * coordinate)));
}

}  // namespace

GridLoop wobbled(const GridLoop& loop)
{
    constexpr double farthest = 0.05;
    GridLoop moved;
    moved.reserve(loop.size());
    for (const GridPoint& point : loop) {
        SeededGenerator generator(hundredths(point.x) * 1'000'003 + hundredths(point.y));
        const double dx = generator.unit(-farthest, farthest);
        const double dy = generator.unit(-farthest, farthest);
        moved.push_back({point.x + dx, point.y + dy});
    }
    return moved;
}

}  // namespace gruk::BorderWobble
