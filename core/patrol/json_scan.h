#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/checked_arithmetic.h"

/// The small steps of reading JSON in the form that Gruk writes. Each begins at `at` and returns
/// the place behind what it read, or null when something else stands there. All rely on zeros
/// behind the end of the text (`ByteWindow`), at which every one of them stops. Pure.

namespace gruk::jsonscan {

/// Moves over exactly `literal`.
template <std::size_t size>
[[nodiscard]] inline const char* literal(const char* at, const char (&text)[size])
{
    return std::memcmp(at, text, size - 1) == 0 ? at + (size - 1) : nullptr;
}

/// A JSON string's text as it stands between its quotes.
struct RawString {
    std::string_view text;
    bool hasEscape = false;
    bool hasNonASCII = false;
};

/// Reads up to the closing quote and moves over it. Only the ends of escapes are looked at here;
/// `meaning` has the rest.
[[nodiscard]] const char* string(const char* at, RawString& result);

/// What the string means; none when an escape is broken, a surrogate stands alone, or its bytes
/// are not UTF-8.
[[nodiscard]] std::optional<std::string> meaning(const RawString& raw);

/// The path that the string stands for, byte for byte; none if it stands for none. A view of the
/// text itself where that is what it means, else of `room`.
[[nodiscard]] std::optional<std::string_view> pathMeaning(const RawString& raw, std::string& room);

/// A whole number in the 64-bit range as JSON writes it: no "+", no needless zero, no fraction.
[[nodiscard]] inline const char* integer(const char* at, Bytes& value)
{
    const char* digits = at + (*at == '-' ? 1 : 0);
    const bool hasNeedlessZero = digits[0] == '0' && digits[1] >= '0' && digits[1] <= '9';
    if (*digits < '0' || *digits > '9' || hasNeedlessZero) {
        return nullptr;
    }
    // The longest number has 19 digits and a sign; the padding has room for the look ahead.
    const auto result = std::from_chars(at, at + 21, value);
    return result.ec == std::errc() ? result.ptr : nullptr;
}

}  // namespace gruk::jsonscan
