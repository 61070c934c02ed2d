#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace gruk {

/// How many bytes the two texts begin with in common, eight at a time. Pure; any thread.
[[nodiscard]] inline std::size_t commonPrefix(std::string_view a, std::string_view b) noexcept
{
    const std::size_t limit = std::min(a.size(), b.size());
    std::size_t length = 0;
    if constexpr (std::endian::native == std::endian::little) {
        while (limit - length >= sizeof(std::uint64_t)) {
            std::uint64_t left = 0;
            std::uint64_t right = 0;
            std::memcpy(&left, a.data() + length, sizeof left);
            std::memcpy(&right, b.data() + length, sizeof right);
            if (left != right) {
                return length + static_cast<std::size_t>(std::countr_zero(left ^ right)) / 8;
            }
            length += sizeof left;
        }
    }
    while (length < limit && a[length] == b[length]) {
        ++length;
    }
    return length;
}

}  // namespace gruk
