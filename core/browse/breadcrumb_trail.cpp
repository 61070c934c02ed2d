#include "core/browse/breadcrumb_trail.h"

#include <algorithm>
#include <string>

namespace gruk::BreadcrumbTrail {

std::vector<FileURL> trail(const std::optional<FileURL>& root,
                           const std::optional<FileURL>& current)
{
    if (!root || !current) {
        return {};
    }
    const std::string top = root->standardized().path();
    const std::string bottom = current->standardized().path();
    if (!pathIsAtOrBelow(bottom, top)) {
        return {};
    }
    std::vector<FileURL> result = {FileURL::directory(top)};
    // The root directory's own "/" is where its children's names begin.
    std::size_t end = top == "/" ? 0 : top.size();
    while (end + 1 < bottom.size()) {
        end = std::min(bottom.find('/', end + 1), bottom.size());
        result.push_back(FileURL::directory(bottom.substr(0, end)));
    }
    return result;
}

}  // namespace gruk::BreadcrumbTrail
