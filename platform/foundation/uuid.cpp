#include "platform/foundation/uuid.h"

#include <random>

#include "platform/foundation/ascii.h"

namespace gruk {

namespace {

constexpr std::size_t textLength = 36;

/// Whether the canonical text has a hyphen before the digits of the byte `index`.
constexpr bool hyphenBefore(std::size_t index)
{
    return index == 4 || index == 6 || index == 8 || index == 10;
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
        result.push_back(upperHexDigits[bytes[i] >> 4U]);
        result.push_back(upperHexDigits[bytes[i] & 0x0FU]);
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
        const int high = hexValue(text[at++]);
        const int low = hexValue(text[at++]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        uuid.bytes[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    return uuid;
}

}  // namespace gruk
