#include "core/realm/identity_overrides.h"
#include "fuzz/fuzz_support.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto overrides = gruk::identityOverrides(gruk::fuzz::asText(data, size));
    if (!overrides) {
        return 0;
    }
    const std::string written = gruk::identityOverridesJSON(*overrides);
    const auto again = gruk::identityOverrides(written);
    GRUK_REQUIRE(again && *again == *overrides, "shields changed on the way through the file");
    GRUK_REQUIRE(gruk::identityOverridesJSON(*again) == written, "two files of the same shields");
    return 0;
}
