#pragma once

#include <cstdint>
#include <limits>

#include "platform/foundation/require.h"

/// Arithmetic on byte totals. A total that leaves the signed 64-bit range is a programming error
/// and stops the program: a wrapped total would be shown as a fact.

namespace gruk {

/// Signed 64-bit byte counts of allocated space, the unit of every size in Gruk.
using Bytes = std::int64_t;

[[nodiscard]] inline Bytes checkedAdd(Bytes a, Bytes b)
{
    Bytes sum = 0;
    GRUK_REQUIRE(!__builtin_add_overflow(a, b, &sum), "a sum of bytes left the 64-bit range");
    return sum;
}

/// For sums of figures that anybody may claim, and that may be as large as they like: one that
/// would leave the range stays at its end.
[[nodiscard]] inline Bytes saturatingAdd(Bytes a, Bytes b)
{
    Bytes sum = 0;
    if (!__builtin_add_overflow(a, b, &sum)) {
        return sum;
    }
    return b < 0 ? std::numeric_limits<Bytes>::min() : std::numeric_limits<Bytes>::max();
}

[[nodiscard]] inline Bytes checkedSubtract(Bytes a, Bytes b)
{
    Bytes difference = 0;
    GRUK_REQUIRE(!__builtin_sub_overflow(a, b, &difference),
                 "a difference of bytes left the 64-bit range");
    return difference;
}

/// The magnitude of `value`; stops the program for the one value that has none.
[[nodiscard]] inline Bytes checkedMagnitude(Bytes value)
{
    return value < 0 ? checkedSubtract(0, value) : value;
}

}  // namespace gruk
