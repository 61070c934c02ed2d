#include "core/actions/grant_store.h"
#include "fuzz/fuzz_support.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static gruk::fuzz::MemoryFile file("grants.json");
    file.fill(gruk::fuzz::asText(data, size));
    const gruk::GrantStore store(file.url());
    // The list is read whole or not at all; every path of it must be usable.
    for (const gruk::Grant& grant : store.grants()) {
        const gruk::FileURL url(grant.path);
        GRUK_REQUIRE(url.standardized().path().starts_with('/'), "a grant of no place");
    }
    return 0;
}
