#include <algorithm>

#include "fuzz/fuzz_support.h"
#include "platform/foundation/uuid.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = gruk::fuzz::asText(data, size);
    if (const auto uuid = gruk::UUID::parse(text)) {
        std::string upper(text);
        std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) {
            return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
        });
        GRUK_REQUIRE(uuid->text() == upper, "an identifier with two texts");
    }
    return 0;
}
