#include "core/actions/realm_rules.h"
#include "fuzz/fuzz_support.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto rules = gruk::RealmRules::decoded(gruk::fuzz::asText(data, size));
    if (rules) {
        GRUK_REQUIRE(gruk::RealmRules::decoded(gruk::RealmRules::encoded(*rules)) == rules,
                     "rules do not come back");
        GRUK_REQUIRE(gruk::RealmRules::folderOverrides(*rules).size() <= rules->size(),
                     "more folders than rules");
    }
    return 0;
}
