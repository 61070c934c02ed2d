#include "fuzz/fuzz_support.h"
#include "platform/foundation/date.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = gruk::fuzz::asText(data, size);
    if (const auto date = gruk::iso8601::parse(text)) {
        GRUK_REQUIRE(gruk::iso8601::text(*date) == text, "a date with two texts");
    }
    return 0;
}
