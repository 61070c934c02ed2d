#include "platform/foundation/uuid.h"

#include <random>

namespace gruk {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::size_t textLength = 36;

/// Whether the canonical text has a hyphen before the digits of the byte `index`.
constexpr bool hyphenBefore(std::size_t index)
{
    return index == 4 || index == 6 || index == 8 || index == 10;
}

/// The value of a hexadecimal digit in either case; 16 for anything else.
constexpr std::uint8_t hexValue(char c)
{
    if (c >= '0' && c <= '9') {
        return static_cast<std::uint8_t>(c - '0');
    }
    if (c >= 'A' && c <= 'F') {
        return static_cast<std::uint8_t>(c - 'A' + 10);
    }
    if (c >= 'a' && c <= 'f') {
        return static_cast<std::uint8_t>(c - 'a' + 10);
    }
    return 16;
}

}  // namespace

UUID UUID::random()
{
    std::random_device source;
    UUID uuid;
    for (std::size_t i = 0; i < uuid.bytes.size(); i += 4) {
        const auto word = static_cast<std::uint32_t>(source());
        for (std::size_t j = 0; j < 4; ++j) {
            uuid.bytes[i + j] = static_cast<std::uint8_t>(word >> (8U * j) & 0xFFU);
        }
    }
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0FU) | 0x40U);  // version 4
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3FU) | 0x80U);  // RFC 4122
    return uuid;
}

std::string UUID::text() const
{
    std::string result;
    result.reserve(textLength);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (hyphenBefore(i)) {
            result.push_back('-');
        }
        result.push_back(hexDigits[bytes[i] >> 4U]);
        result.push_back(hexDigits[bytes[i] & 0x0FU]);
    }
    return result;
}

std::optional<UUID> UUID::parse(std::string_view text)
{
    if (text.size() != textLength) {
        return std::nullopt;
    }
    UUID uuid;
    std::size_t at = 0;
    for (std::size_t i = 0; i < uuid.bytes.size(); ++i) {
        if (hyphenBefore(i) && text[at++] != '-') {
            return std::nullopt;
        }
        const std::uint8_t high = hexValue(text[at++]);
        const std::uint8_t low = hexValue(text[at++]);
        if (high > 15 || low > 15) {
            return std::nullopt;
        }
        uuid.bytes[i] = static_cast<std::uint8_t>(high << 4U | low);
    }
    return uuid;
}

}  // namespace gruk
