#include "fuzz/fuzz_support.h"
#include "platform/linux/user_directories.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = gruk::fuzz::asText(data, size);
    const gruk::FileURL home = gruk::FileURL::directory("/home/somebody");
    for (const char* key : {"XDG_DESKTOP_DIR", "XDG_DOWNLOAD_DIR"}) {
        const auto named = gruk::userDirectoryNamed(key, text, home);
        if (!named) {
            continue;
        }
        GRUK_REQUIRE(named->namesDirectory() && named->path().starts_with('/'), "no place");
        // The last line decides, whatever stands before it.
        const auto again =
            gruk::userDirectoryNamed(key, "XDG_DESKTOP_DIR=\"/a\"\n" + std::string(text), home);
        GRUK_REQUIRE(again == named, "an earlier line counts");
    }
    return 0;
}
