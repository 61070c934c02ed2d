#include "core/patrol/file_entry.h"

#include <algorithm>
#include <array>

namespace gruk {

namespace {

constexpr std::array<std::string_view, 5> badgeNames = {"sparse", "cloned", "evicted",
                                                        "regenerable", "restricted"};

}  // namespace

std::string_view rawString(FileBadge badge)
{
    return badgeNames.at(static_cast<std::size_t>(badge));
}

std::optional<FileBadge> fileBadge(std::string_view rawString)
{
    const auto found = std::find(badgeNames.begin(), badgeNames.end(), rawString);
    if (found == badgeNames.end()) {
        return std::nullopt;
    }
    return static_cast<FileBadge>(found - badgeNames.begin());
}

}  // namespace gruk
