#include "core/actions/hoard_name.h"

#include <cstddef>

namespace gruk {

std::string hoardName(std::string_view folderName, std::string_view day)
{
    std::string name(folderName);
    name += hoardMark;
    name += day;
    return name;
}

std::string uniqueName(const std::string& name, const std::set<std::string>& taken)
{
    std::string candidate = name;
    for (std::size_t number = 2; taken.contains(candidate); ++number) {
        candidate = name + " (" + std::to_string(number) + ")";
    }
    return candidate;
}

}  // namespace gruk
