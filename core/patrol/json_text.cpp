#include "core/patrol/json_text.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "platform/foundation/json_path.h"

namespace gruk {

namespace {

constexpr std::uint64_t repeated(std::uint64_t byte)
{
    return byte * 0x0101'0101'0101'0101ULL;
}

/// The high bit of each byte of `word` that is zero (and maybe of bytes above such a one).
constexpr std::uint64_t zeroBytes(std::uint64_t word)
{
    return (word - repeated(0x01)) & ~word & repeated(0x80);
}

/// Whether one of eight bytes is below 0x20, above 0x7f, a quote or a backslash. The well-known
/// tests of a word's bytes at once, as collected in Anderson, "Bit Twiddling Hacks".
constexpr bool hasSpecialByte(std::uint64_t word)
{
    const std::uint64_t below = (word - repeated(0x20)) & ~word & repeated(0x80);
    const std::uint64_t quote = zeroBytes(word ^ repeated('"'));
    const std::uint64_t backslash = zeroBytes(word ^ repeated('\\'));
    return ((word & repeated(0x80)) | below | quote | backslash) != 0;
}

bool isSpecial(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte > 0x7f || c == '"' || c == '\\';
}

}  // namespace

void appendJSONEscaped(std::string& out, std::string_view text)
{
    static constexpr std::string_view digits = "0123456789abcdef";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20) {
            out += "\\u00";
            out += digits[byte >> 4U];
            out += digits[byte & 15U];
        } else {
            out += c;
        }
    }
}

void appendJSONPath(std::string& out, std::string_view path)
{
    if (isPlainJSONText(path)) {
        out += path;
    } else {
        appendJSONEscaped(out, jsonPathText(path));
    }
}

bool isPlainJSONText(std::string_view bytes) noexcept
{
    const char* at = bytes.data();
    const char* end = at + bytes.size();
    for (; end - at >= 8; at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, sizeof word);
        if (hasSpecialByte(word)) {
            return false;
        }
    }
    for (; at != end; ++at) {
        if (isSpecial(*at)) {
            return false;
        }
    }
    return true;
}

}  // namespace gruk
