#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

__extension__ using Wide = unsigned __int128;

}  // namespace

std::uint64_t SeededGenerator::next() noexcept
{
    state_ += 0x9e3779b97f4a7c15;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
    z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
    return z ^ (z >> 31);
}

std::uint64_t SeededGenerator::bounded(std::uint64_t n)
{
    GRUK_REQUIRE(n > 0, "a draw below zero");
    Wide product = Wide{next()} * n;
    // The remainder below is only needed, and only paid for, when a rejection is possible at all.
    if (static_cast<std::uint64_t>(product) < n) {
        const std::uint64_t threshold = (0 - n) % n;
        while (static_cast<std::uint64_t>(product) < threshold) {
            product = Wide{next()} * n;
        }
    }
    return static_cast<std::uint64_t>(product >> 64);
}

double SeededGenerator::unit(double lower, double upper)
{
    constexpr std::uint64_t steps = std::uint64_t{1} << 53;
    const std::uint64_t drawn = bounded(steps + 1);
    if (drawn == steps) {
        return upper;
    }
    // One rounding a step, in this order: the map's layout is fixed to the bit.
    const double fraction = static_cast<double>(drawn) * 0x1p-53;
    const double offset = fraction * (upper - lower);
    return offset + lower;
}

}  // namespace gruk
