#include <algorithm>

#include "fuzz/fuzz_support.h"
#include "platform/linux/mount_table.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = gruk::fuzz::asText(data, size);
    const std::vector<gruk::Mount> mounts = gruk::parseMountTable(text);
    GRUK_REQUIRE(mounts.size()
                     <= static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1,
                 "more mounts than lines");
    for (const gruk::Mount& mount : mounts) {
        GRUK_REQUIRE(mount.point.size() + mount.type.size() + mount.source.size() <= size,
                     "more than was read");
        const bool isNetwork = gruk::isNetworkType(mount.type);
        GRUK_REQUIRE(!isNetwork || !mount.type.empty(), "a network without a name");
    }
    // A table twice as long names every mount twice.
    const std::string twice = std::string(text) + "\n" + std::string(text);
    GRUK_REQUIRE(gruk::parseMountTable(twice).size() == 2 * mounts.size(), "a line lost");
    return 0;
}
