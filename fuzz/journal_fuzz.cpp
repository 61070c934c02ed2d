#include "core/actions/stash_journal.h"
#include "fuzz/fuzz_support.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A folder is taken for a Hoard by its journal; what reads as one must come back the same.
    const auto journal = gruk::decodedStashJournal(gruk::fuzz::asText(data, size));
    if (journal) {
        const auto again = gruk::decodedStashJournal(gruk::encodedStashJournal(*journal));
        GRUK_REQUIRE(again, "a journal that was read cannot be written");
        GRUK_REQUIRE(again->hoardFolder == journal->hoardFolder && again->items == journal->items,
                     "a journal does not come back");
    }
    return 0;
}
