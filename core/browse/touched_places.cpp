#include "core/browse/touched_places.h"

namespace gruk {

namespace {

/// The path of the folder that holds an item; empty above the root.
std::string_view parentOf(std::string_view path)
{
    const std::size_t slash = path.size() < 2 ? std::string_view::npos : path.rfind('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    return slash == 0 ? path.substr(0, 1) : path.substr(0, slash);
}

}  // namespace

TouchedPlaces::TouchedPlaces(const std::vector<FileURL>& touched)
{
    for (const FileURL& url : touched) {
        const auto [place, isNew] = places_.insert(url.standardized().path());
        std::string_view above = parentOf(*place);
        // What is above one that is known is known too.
        while (isNew && !above.empty() && above_.emplace(above).second) {
            above = parentOf(above);
        }
    }
}

bool TouchedPlaces::reach(std::string_view path) const
{
    if (above_.contains(std::string(path))) {
        return true;
    }
    for (; !path.empty(); path = parentOf(path)) {
        if (places_.contains(std::string(path))) {
            return true;
        }
    }
    return false;
}

}  // namespace gruk
