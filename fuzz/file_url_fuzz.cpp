#include "fuzz/fuzz_support.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = gruk::fuzz::asText(data, size);
    if (const auto url = gruk::FileURL::fromFileURLText(text)) {
        GRUK_REQUIRE(gruk::FileURL::fromFileURLText(url->fileURLText()) == url,
                     "the text of a place leads elsewhere");
    }
    const gruk::FileURL path(text);
    GRUK_REQUIRE(gruk::FileURL::fromFileURLText(path.fileURLText()) == path,
                 "the text of a path leads elsewhere");
    const gruk::FileURL standard = path.standardized();
    GRUK_REQUIRE(standard.standardized() == standard, "standardised is not standard");
    return 0;
}
