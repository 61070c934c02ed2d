#include "platform/foundation/text_search.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/foundation/ascii.h"
#include "platform/foundation/require.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

icu::UnicodeString normalized(const icu::Normalizer2* form, UErrorCode& status,
                              const icu::UnicodeString& text)
{
    icu::UnicodeString result;
    form->normalize(text, result, status);
    return result;
}

/// Whether the text goes on at `at` with a mark that belongs to the letter before it.
bool goesOnWithAMark(std::string_view text, std::size_t at)
{
    if (at >= text.size() || static_cast<unsigned char>(text[at]) < 0x80) {
        return false;
    }
    const std::string_view next = text.substr(at, utf8SequenceLength(text.substr(at)));
    const UChar32 character =
        icu::UnicodeString::fromUTF8({next.data(), static_cast<std::int32_t>(next.size())})
            .char32At(0);
    return (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
}

}  // namespace

std::string searchKey(std::string_view text)
{
    std::string key;
    if (isASCII(text)) {
        key.resize(text.size());
        std::transform(text.begin(), text.end(), key.begin(), lowerASCII);
        return key;
    }
    GRUK_REQUIRE(text.size() < std::numeric_limits<std::int32_t>::max() / 4, "a text too long");
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* apart = icu::Normalizer2::getNFDInstance(status);
    const icu::Normalizer2* together = icu::Normalizer2::getNFCInstance(status);
    GRUK_REQUIRE(U_SUCCESS(status), "ICU has no normalisation; its data is not installed");
    // Apart first: an accent can hide a letter from the folding.
    icu::UnicodeString folded =
        normalized(apart, status, icu::UnicodeString::fromUTF8(displayText(text)));
    folded.foldCase();
    normalized(together, status, folded).toUTF8String(key);
    GRUK_REQUIRE(U_SUCCESS(status), "ICU could not normalise a text");
    return key;
}

bool searchKeyContains(std::string_view key, std::string_view partKey)
{
    if (partKey.empty()) {
        return true;
    }
    for (std::size_t at = key.find(partKey); at != std::string_view::npos;
         at = key.find(partKey, at + 1)) {
        if (!goesOnWithAMark(key, at + partKey.size())) {
            return true;
        }
    }
    return false;
}

bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part)
{
    return searchKeyContains(searchKey(text), searchKey(part));
}

}  // namespace gruk
