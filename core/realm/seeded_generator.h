#pragma once

#include <cstdint>
#include <span>

#include "platform/foundation/require.h"

namespace gruk {

/// SplitMix64 (Steele, Lea, Flood 2014) with unbiased bounded draws. Fixed to the bit: every
/// shield and the whole map depend on it. A plain value; never shared between two uses.
class SeededGenerator {
public:
    /// The seed is the state as it is.
    explicit SeededGenerator(std::uint64_t seed) noexcept : state_(seed) {}

    /// The next 64 bits.
    std::uint64_t next() noexcept;

    /// A value below `n`, which must be above 0: multiply and shift with rejection (Lemire 2019).
    std::uint64_t bounded(std::uint64_t n);

    /// A double from `lower` to `upper`, both included, one bounded draw.
    double unit(double lower, double upper);

    /// One of a list that is not empty: one bounded draw.
    template <typename T>
    T pick(std::span<const T> list)
    {
        GRUK_REQUIRE(!list.empty(), "a draw from an empty list");
        return list[bounded(list.size())];
    }

private:
    std::uint64_t state_;
};

}  // namespace gruk
