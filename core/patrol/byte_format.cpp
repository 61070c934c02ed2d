#include "core/patrol/byte_format.h"

#include <array>
#include <cstdint>
#include <string_view>

#include "core/patrol/count_format.h"

namespace gruk::ByteFormat {

namespace {

struct Unit {
    std::uint64_t bytes;
    int digitsAfterPoint;
    std::string_view name;
};

constexpr std::array<Unit, 3> units = {{
    {1'000, 0, " KB"},
    {1'000'000, 1, " MB"},
    {1'000'000'000, 2, " GB"},
}};

constexpr std::uint64_t powerOfTen(int exponent)
{
    return exponent == 0 ? 1 : 10 * powerOfTen(exponent - 1);
}

/// `magnitude` in units of the last digit shown, half away from zero.
std::uint64_t rounded(std::uint64_t magnitude, const Unit& unit)
{
    const std::uint64_t step = unit.bytes / powerOfTen(unit.digitsAfterPoint);
    return magnitude / step + (magnitude % step >= step / 2 ? 1 : 0);
}

std::string text(std::uint64_t magnitude)
{
    std::size_t at = 0;
    // What rounds up to 1000 of a unit is 1 of the next.
    while (at + 1 < units.size()
           && rounded(magnitude, units.at(at))
                  >= 1'000 * powerOfTen(units.at(at).digitsAfterPoint)) {
        ++at;
    }
    const Unit& unit = units.at(at);
    std::uint64_t digits = rounded(magnitude, unit);
    int after = unit.digitsAfterPoint;
    while (after > 0 && digits % 10 == 0) {
        digits /= 10;
        --after;
    }
    std::string result = CountFormat::string(digits / powerOfTen(after));
    if (after > 0) {
        const std::string fraction = std::to_string(digits % powerOfTen(after));
        result += '.';
        result.append(static_cast<std::size_t>(after) - fraction.size(), '0');
        result += fraction;
    }
    return result.append(unit.name);
}

/// Of the lowest number too, which has no positive counterpart of its own type.
std::uint64_t magnitudeOf(Bytes bytes)
{
    const auto value = static_cast<std::uint64_t>(bytes);
    return bytes < 0 ? 0 - value : value;
}

}  // namespace

std::string string(Bytes bytes)
{
    const std::string magnitude = text(magnitudeOf(bytes));
    return bytes < 0 ? "-" + magnitude : magnitude;
}

std::string signedString(Bytes bytes)
{
    if (bytes == 0) {
        return "0 KB";
    }
    return (bytes < 0 ? "\u2212" : "+") + text(magnitudeOf(bytes));
}

}  // namespace gruk::ByteFormat
