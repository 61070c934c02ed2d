#include "core/patrol/review_rules.h"

#include <algorithm>

namespace gruk {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Where the extension's "." stands: the last one, unless it begins the name. A "." at the very
/// end has nothing behind it that could be an extension.
std::size_t extensionStart(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 || dot + 1 == name.size() ? name.size() : dot;
}

/// Whether `rest` begins with exactly that component. The first letter is asked first: this runs
/// for each folder above each entry.
bool beginsWith(std::string_view rest, std::string_view component)
{
    return !rest.empty() && rest.front() == component.front() && rest.starts_with(component)
           && (rest.size() == component.size() || rest[component.size()] == '/');
}

/// The locations of a home folder, which match at the top of a realm.
bool isCacheOfAHome(std::string_view path)
{
    return path.starts_with("Library/Caches/")
           || path.starts_with("Library/Developer/Xcode/DerivedData/") || path == ".gradle/caches"
           || path.starts_with(".gradle/caches/");
}

bool matches(std::string_view path)
{
    if (!path.empty() && (path.front() == 'L' || path.front() == '.') && isCacheOfAHome(path)) {
        return true;
    }
    for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
         slash = path.find('/', slash + 1)) {
        const std::string_view rest = path.substr(slash + 1);
        if (beginsWith(rest, "node_modules") || beginsWith(rest, ".build")) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<std::string> originalOfDuplicateName(std::string_view name)
{
    const std::size_t dot = extensionStart(name);
    const std::string_view stem = name.substr(0, dot);
    if (stem.empty() || stem.back() != ')') {
        return std::nullopt;
    }
    std::size_t at = stem.size() - 1;
    while (at > 0 && isDigit(stem[at - 1])) {
        --at;
    }
    // What must stand before the digits: " (".
    if (at + 1 == stem.size() || at < 2 || stem[at - 1] != '(' || stem[at - 2] != ' ') {
        return std::nullopt;
    }
    return std::string(stem.substr(0, at - 2)).append(name.substr(dot));
}

bool isRegenerableCache(std::string_view relativePath)
{
    if (relativePath.find('\\') == std::string_view::npos) {
        return matches(relativePath);
    }
    std::string normalized(relativePath);
    std::replace(normalized.begin(), normalized.end(), '\\', '/');
    return matches(normalized);
}

}  // namespace gruk
