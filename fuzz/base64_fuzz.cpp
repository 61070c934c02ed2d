#include "fuzz/fuzz_support.h"
#include "platform/foundation/base64.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = gruk::fuzz::asText(data, size);
    if (const auto decoded = gruk::base64Decoded(bytes)) {
        GRUK_REQUIRE(gruk::base64Encoded(*decoded) == bytes, "bytes with two texts");
    }
    GRUK_REQUIRE(gruk::base64Decoded(gruk::base64Encoded(bytes)) == bytes,
                 "bytes do not come back");
    return 0;
}
