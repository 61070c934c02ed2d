#include "fuzz/fuzz_support.h"
#include "platform/foundation/errors.h"
#include "platform/settings/bookmarks.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        const gruk::FileURL place = gruk::resolveBookmark(gruk::fuzz::asText(data, size));
        GRUK_REQUIRE(place.namesDirectory(), "a bookmark of no directory");
    } catch (const gruk::FileError&) {
        // Not a bookmark, or of a directory that is not here.
        return 0;
    }
    return 0;
}
