#include "platform/foundation/utf8.h"

#include <cstdint>
#include <cstring>

namespace gruk {

namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// What may follow a lead byte: how many bytes, and the range of the first of them. The rows of
/// the table of well-formed sequences in the Unicode standard, chapter 3.9; `length` 0 is none.
struct SequenceForm {
    std::uint8_t length;
    std::uint8_t secondLow;
    std::uint8_t secondHigh;
};

constexpr SequenceForm formOf(std::uint8_t lead)
{
    if (lead < 0x80) {
        return {1, 0, 0};
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {2, 0x80, 0xBF};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        const std::uint8_t low = lead == 0xE0 ? 0xA0 : 0x80;   // no overlong form
        const std::uint8_t high = lead == 0xED ? 0x9F : 0xBF;  // no surrogate
        return {3, low, high};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const std::uint8_t low = lead == 0xF0 ? 0x90 : 0x80;   // no overlong form
        const std::uint8_t high = lead == 0xF4 ? 0x8F : 0xBF;  // nothing above U+10FFFF
        return {4, low, high};
    }
    return {0, 0, 0};
}

/// How many of the first bytes are ASCII, in steps of eight: names mostly are.
std::size_t asciiPrefix(std::string_view bytes) noexcept
{
    std::size_t length = 0;
    while (bytes.size() - length >= sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + length, sizeof word);
        if ((word & 0x8080'8080'8080'8080U) != 0) {
            break;
        }
        length += sizeof word;
    }
    return length;
}

/// How many of the first bytes are well-formed.
std::size_t validPrefix(std::string_view bytes) noexcept
{
    std::size_t length = asciiPrefix(bytes);
    while (length < bytes.size()) {
        const std::size_t step = utf8SequenceLength(bytes.substr(length));
        if (step == 0) {
            break;
        }
        length += step;
    }
    return length;
}

}  // namespace

bool isValidUTF8(std::string_view bytes) noexcept
{
    return validPrefix(bytes) == bytes.size();
}

std::size_t utf8SequenceLength(std::string_view bytes) noexcept
{
    if (bytes.empty()) {
        return 0;
    }
    const auto at = [bytes](std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); };
    const SequenceForm form = formOf(at(0));
    if (form.length > bytes.size()) {
        return 0;
    }
    if (form.length >= 2 && (at(1) < form.secondLow || at(1) > form.secondHigh)) {
        return 0;
    }
    for (std::size_t i = 2; i < form.length; ++i) {
        if ((at(i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    return form.length;
}

std::string displayText(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t valid = validPrefix(bytes);
        text += bytes.substr(0, valid);
        bytes.remove_prefix(valid);
        if (!bytes.empty()) {
            text += replacementCharacter;
            bytes.remove_prefix(1);
        }
    }
    return text;
}

}  // namespace gruk
