#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace gruk {

/// A 128-bit identifier. A plain value; any thread.
struct UUID {
    std::array<std::uint8_t, 16> bytes{};

    /// A new random one (version 4, RFC 4122) from the system's random source.
    static UUID random();

    /// The canonical text: 32 upper-case hexadecimal digits as 8-4-4-4-12.
    [[nodiscard]] std::string text() const;

    /// Reads the canonical text, in either case; none for anything else.
    static std::optional<UUID> parse(std::string_view text);

    friend auto operator<=>(const UUID&, const UUID&) = default;
};

}  // namespace gruk
