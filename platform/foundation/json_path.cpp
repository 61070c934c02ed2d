#include "platform/foundation/json_path.h"

#include <cstddef>
#include <utility>

#include "platform/foundation/ascii.h"
#include "platform/foundation/require.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

/// The byte from 80 on that two lower-case digits at the start of `text` stand for.
std::optional<char> escapedByte(std::string_view text)
{
    if (text.size() < 2) {
        return std::nullopt;
    }
    const std::size_t high = lowerHexDigits.find(text[0]);
    const std::size_t low = lowerHexDigits.find(text[1]);
    if (high == std::string_view::npos || low == std::string_view::npos || high < 8) {
        return std::nullopt;
    }
    return static_cast<char>(high << 4 | low);
}

}  // namespace

std::string jsonPathText(std::string_view bytes)
{
    GRUK_REQUIRE(bytes.find('\0') == std::string_view::npos, "a path holds a NUL");
    if (isValidUTF8(bytes)) {
        return std::string(bytes);
    }
    std::string text;
    text.reserve(bytes.size() + 16);
    while (!bytes.empty()) {
        std::size_t length = utf8SequenceLength(bytes);
        if (length > 0) {
            text.append(bytes.substr(0, length));
        } else {
            const auto byte = static_cast<unsigned char>(bytes.front());
            text += '\0';
            text += lowerHexDigits[byte >> 4];
            text += lowerHexDigits[byte & 15U];
            length = 1;
        }
        bytes.remove_prefix(length);
    }
    return text;
}

std::optional<std::string> pathFromJSONText(std::string_view text)
{
    std::size_t escape = text.find('\0');
    if (escape == std::string_view::npos) {
        return isValidUTF8(text) ? std::optional(std::string(text)) : std::nullopt;
    }
    std::string bytes;
    bytes.reserve(text.size());
    std::string_view rest = text;
    for (; escape != std::string_view::npos; escape = rest.find('\0')) {
        bytes.append(rest.substr(0, escape));
        rest.remove_prefix(escape + 1);
        const std::optional<char> byte = escapedByte(rest);
        if (!byte) {
            return std::nullopt;
        }
        bytes += *byte;
        rest.remove_prefix(2);
    }
    bytes.append(rest);
    // Only the one text that stands for these bytes is theirs.
    return jsonPathText(bytes) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace gruk
