#include "platform/foundation/canonical_text.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <cstdint>

#include "platform/foundation/ascii.h"
#include "platform/foundation/require.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

const icu::Normalizer2& composer()
{
    static const icu::Normalizer2& instance = [&]() -> const icu::Normalizer2& {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Normalizer2* const found = icu::Normalizer2::getNFCInstance(status);
        GRUK_REQUIRE(U_SUCCESS(status) && found != nullptr, "ICU has no canonical composition");
        return *found;
    }();
    return instance;
}

}  // namespace

std::string canonicalForm(std::string_view text)
{
    if (isASCII(text) || !isValidUTF8(text)) {
        return std::string(text);
    }
    std::string form;
    icu::StringByteSink<std::string> sink(&form);
    UErrorCode status = U_ZERO_ERROR;
    composer().normalizeUTF8(0,
                             icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())),
                             sink, nullptr, status);
    return U_SUCCESS(status) ? form : std::string(text);
}

std::strong_ordering plainCompare(std::string_view a, std::string_view b)
{
    // The bytes of UTF-8 stand in the order of the scalar values.
    if (!isASCII(a) || !isASCII(b)) {
        if (const auto order = canonicalForm(a) <=> canonicalForm(b); order != 0) {
            return order;
        }
    }
    return a <=> b;
}

}  // namespace gruk
