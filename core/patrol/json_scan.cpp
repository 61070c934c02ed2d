#include "core/patrol/json_scan.h"

#include <algorithm>

#include "platform/foundation/json_path.h"
#include "platform/foundation/utf8.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace gruk::jsonscan {

namespace {

/// The first byte from `at` on that is a quote, a backslash or a control character (the zeros
/// behind the text are); notes whether a byte above ASCII stands before it.
const char* findSpecial(const char* at, bool& hasNonASCII)
{
#ifdef __SSE2__
    for (;; at += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i quotes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('"'));
        const __m128i slashes = _mm_cmpeq_epi8(bytes, _mm_set1_epi8('\\'));
        // Below 0x20 as unsigned bytes: the smaller of it and 0x1f is itself.
        const __m128i controls = _mm_cmpeq_epi8(_mm_min_epu8(bytes, _mm_set1_epi8(0x1f)), bytes);
        const int special =
            _mm_movemask_epi8(_mm_or_si128(_mm_or_si128(quotes, slashes), controls));
        const int high = _mm_movemask_epi8(bytes);
        if (special != 0) {
            const int place = __builtin_ctz(static_cast<unsigned>(special));
            hasNonASCII = hasNonASCII || (high & ((1 << place) - 1)) != 0;
            return at + place;
        }
        hasNonASCII = hasNonASCII || high != 0;
    }
#else
    for (;; ++at) {
        const auto byte = static_cast<unsigned char>(*at);
        if (byte < 0x20 || byte == '"' || byte == '\\') {
            return at;
        }
        hasNonASCII = hasNonASCII || byte > 0x7f;
    }
#endif
}

/// The value of four hexadecimal digits; none when one is not.
std::optional<unsigned> fourDigits(std::string_view text)
{
    unsigned value = 0;
    if (text.size() < 4) {
        return std::nullopt;
    }
    const auto result = std::from_chars(text.data(), text.data() + 4, value, 16);
    if (result.ec != std::errc() || result.ptr != text.data() + 4) {
        return std::nullopt;
    }
    return value;
}

void appendUTF8(std::string& out, unsigned c)
{
    const auto byte = [](unsigned value) { return static_cast<char>(value); };
    if (c < 0x80) {
        out += byte(c);
    } else if (c < 0x800) {
        out += byte(0xc0 | (c >> 6U));
        out += byte(0x80 | (c & 0x3fU));
    } else if (c < 0x10000) {
        out += byte(0xe0 | (c >> 12U));
        out += byte(0x80 | ((c >> 6U) & 0x3fU));
        out += byte(0x80 | (c & 0x3fU));
    } else {
        out += byte(0xf0 | (c >> 18U));
        out += byte(0x80 | ((c >> 12U) & 0x3fU));
        out += byte(0x80 | ((c >> 6U) & 0x3fU));
        out += byte(0x80 | (c & 0x3fU));
    }
}

/// Appends what "\uXXXX" at the start of `rest` means, a pair of surrogates together; returns how
/// long it is, 0 when it is broken.
std::size_t appendCodeUnit(std::string_view rest, std::string& out)
{
    const auto first = fourDigits(rest.substr(2));
    if (!first) {
        return 0;
    }
    if (*first < 0xd800 || *first > 0xdfff) {
        appendUTF8(out, *first);
        return 6;
    }
    if (*first > 0xdbff || rest.substr(6, 2) != "\\u") {
        return 0;
    }
    const auto second = fourDigits(rest.substr(8));
    if (!second || *second < 0xdc00 || *second > 0xdfff) {
        return 0;
    }
    appendUTF8(out, 0x10000 + ((*first - 0xd800) << 10U) + (*second - 0xdc00));
    return 12;
}

/// Appends what the escape at the start of `rest` means; returns its length, 0 when it is broken.
std::size_t appendEscape(std::string_view rest, std::string& out)
{
    static constexpr std::string_view letters = "\"\\/bfnrt";
    static constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    if (rest.size() < 2) {
        return 0;
    }
    if (rest[1] == 'u') {
        return appendCodeUnit(rest, out);
    }
    const std::size_t place = letters.find(rest[1]);
    if (place == std::string_view::npos) {
        return 0;
    }
    out += meanings[place];
    return 2;
}

}  // namespace

const char* string(const char* at, RawString& result)
{
    const char* const start = at;
    bool hasNonASCII = false;
    bool hasEscape = false;
    for (;;) {
        at = findSpecial(at, hasNonASCII);
        if (*at == '"') {
            break;
        }
        if (*at != '\\' || at[1] == '\0') {
            return nullptr;
        }
        hasEscape = true;
        at += 2;
    }
    result.text = {start, static_cast<std::size_t>(at - start)};
    result.hasEscape = hasEscape;
    result.hasNonASCII = hasNonASCII;
    return at + 1;
}

std::optional<std::string> meaning(const RawString& raw)
{
    if (raw.hasNonASCII && !isValidUTF8(raw.text)) {
        return std::nullopt;
    }
    std::string out;
    out.reserve(raw.text.size());
    for (std::size_t at = 0; at < raw.text.size();) {
        const std::size_t escape = std::min(raw.text.find('\\', at), raw.text.size());
        out += raw.text.substr(at, escape - at);
        at = escape;
        if (at < raw.text.size()) {
            const std::size_t length = appendEscape(raw.text.substr(at), out);
            if (length == 0) {
                return std::nullopt;
            }
            at += length;
        }
    }
    return out;
}

std::optional<std::string_view> pathMeaning(const RawString& raw, std::string& room)
{
    if (!raw.hasEscape) {
        // Bytes that are not UTF-8 stand escaped, so that here the text is the path.
        const bool isText = !raw.hasNonASCII || isValidUTF8(raw.text);
        return isText ? std::optional(raw.text) : std::nullopt;
    }
    const auto text = meaning(raw);
    auto path = text ? pathFromJSONText(*text) : std::nullopt;
    if (!path) {
        return std::nullopt;
    }
    room = std::move(*path);
    return room;
}

}  // namespace gruk::jsonscan
