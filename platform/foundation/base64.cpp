#include "platform/foundation/base64.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace gruk {

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

constexpr std::uint8_t noDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> makeDigitValues()
{
    std::array<std::uint8_t, 256> values{};
    values.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        values[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return values;
}

constexpr std::array<std::uint8_t, 256> digitValues = makeDigitValues();

std::uint32_t byteAt(std::string_view bytes, std::size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
}

/// The values of `count` digits as one number of 6 * `count` bits; none if one is no digit.
std::optional<std::uint32_t> digitsAt(std::string_view text, std::size_t index, std::size_t count)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t digit = digitValues[byteAt(text, index + i)];
        if (digit == noDigit) {
            return std::nullopt;
        }
        value = value << 6U | digit;
    }
    return value;
}

/// Appends the `count` highest bytes of a number of 24 bits.
void appendBytes(std::string& bytes, std::uint32_t group, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        bytes.push_back(static_cast<char>(group >> (16U - 8U * i) & 0xFFU));
    }
}

}  // namespace

std::string base64Encoded(std::string_view bytes)
{
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j) {
            group = group << 8U | (j < count ? byteAt(bytes, i + j) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text.push_back(j <= count ? alphabet[group >> (18U - 6U * j) & 0x3FU] : '=');
        }
    }
    return text;
}

std::optional<std::string> base64Decoded(std::string_view text)
{
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    std::size_t padding = 0;
    while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') {
        ++padding;
    }
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    const std::size_t wholeEnd = padding == 0 ? text.size() : text.size() - 4;
    for (std::size_t i = 0; i < wholeEnd; i += 4) {
        const auto group = digitsAt(text, i, 4);
        if (!group) {
            return std::nullopt;
        }
        appendBytes(bytes, *group, 3);
    }
    if (padding > 0) {
        const auto digits = digitsAt(text, wholeEnd, 4 - padding);
        if (!digits) {
            return std::nullopt;
        }
        const std::uint32_t group = *digits << (6U * padding);
        // Two texts must not read as the same bytes.
        if ((group & (padding == 1 ? 0xFFU : 0xFFFFU)) != 0) {
            return std::nullopt;
        }
        appendBytes(bytes, group, 3 - padding);
    }
    return bytes;
}

}  // namespace gruk
