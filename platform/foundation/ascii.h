#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

/// Text as bytes, for formats whose own characters are ASCII. Pure.

namespace gruk {

/// The hexadecimal digits, each at the place of its value.
inline constexpr std::string_view lowerHexDigits = "0123456789abcdef";
inline constexpr std::string_view upperHexDigits = "0123456789ABCDEF";

/// The value of a hexadecimal digit in either case; negative for anything else.
[[nodiscard]] constexpr int hexValue(char c) noexcept
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

/// `c`, as its small letter where it is a capital one.
[[nodiscard]] constexpr char lowerASCII(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

[[nodiscard]] constexpr bool isASCIIDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// Whether it is one decimal digit or more, and nothing else.
[[nodiscard]] constexpr bool isNumber(std::string_view text) noexcept
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isASCIIDigit);
}

[[nodiscard]] constexpr bool isASCII(std::string_view text) noexcept
{
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// A line of a file without the blanks at its ends, and without the carriage return that some
/// editors leave there.
[[nodiscard]] constexpr std::string_view trimmedLine(std::string_view line) noexcept
{
    constexpr std::string_view blanks = " \t\r";
    const std::size_t start = line.find_first_not_of(blanks);
    if (start == std::string_view::npos) {
        return {};
    }
    return line.substr(start, line.find_last_not_of(blanks) - start + 1);
}

}  // namespace gruk
