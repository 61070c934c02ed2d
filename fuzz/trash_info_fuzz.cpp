#include "fuzz/fuzz_support.h"
#include "platform/linux/trash_info.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = gruk::fuzz::asText(data, size);
    if (const auto info = gruk::parseTrashInfo(text)) {
        GRUK_REQUIRE(!info->path.empty(), "an info file of no place");
        const auto again = gruk::parseTrashInfo(gruk::trashInfoText(*info));
        GRUK_REQUIRE(again == info, "what was written reads otherwise");
    }
    // A name in the Trash is a name, and fits.
    const std::string_view name = text.substr(0, text.find_first_of(std::string_view("/\0", 2)));
    if (!name.empty() && name != "." && name != ".." && name.size() <= 255) {
        const std::string inTrash = gruk::trashName(name, size % 2 == 0 ? "" : "17", 133);
        GRUK_REQUIRE(!inTrash.empty() && inTrash != "." && inTrash != "..", "no name");
        GRUK_REQUIRE(inTrash.size() <= 133, "a name that is too long");
        GRUK_REQUIRE(inTrash.find('/') == std::string::npos, "a name that is a path");
    }
    return 0;
}
