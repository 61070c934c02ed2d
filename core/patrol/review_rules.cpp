#include "core/patrol/review_rules.h"

#include <algorithm>

#include "platform/foundation/ascii.h"

namespace gruk {

namespace {

/// Where the extension's "." stands: the last one, unless it begins the name. A "." at the very
/// end has nothing behind it that could be an extension.
std::size_t extensionStart(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 || dot + 1 == name.size() ? name.size() : dot;
}

/// The same, but ".tar" before it belongs to the extension.
std::size_t wholeExtensionStart(std::string_view name)
{
    constexpr std::string_view tar = ".tar";
    const std::size_t dot = extensionStart(name);
    const std::string_view stem = name.substr(0, dot);
    return dot < name.size() && stem.size() > tar.size() && stem.ends_with(tar) ? dot - tar.size()
                                                                                : dot;
}

/// Whether that, in brackets behind a name, says that it is a copy: "copy", "another copy",
/// "3rd copy", "copy 2".
bool saysCopy(std::string_view note)
{
    constexpr std::string_view copy = "copy";
    if (note == copy || note == "another copy") {
        return true;
    }
    if (note.starts_with("copy ")) {
        return isNumber(note.substr(copy.size() + 1));
    }
    constexpr std::string_view ending = " copy";
    constexpr std::size_t ordinalLetters = 2;
    if (!note.ends_with(ending)) {
        return false;
    }
    const std::string_view ordinal = note.substr(0, note.size() - ending.size());
    return ordinal.size() > ordinalLetters
           && isNumber(ordinal.substr(0, ordinal.size() - ordinalLetters))
           && (ordinal.ends_with("st") || ordinal.ends_with("nd") || ordinal.ends_with("rd")
               || ordinal.ends_with("th"));
}

/// The stem that "stem(1)", "stem (1)" and "stem (copy)" were made from.
std::optional<std::string_view> originalOfNotedStem(std::string_view stem)
{
    const std::size_t open = stem.rfind('(');
    if (open == std::string_view::npos || open == 0 || stem.back() != ')') {
        return std::nullopt;
    }
    const std::string_view note = stem.substr(open + 1, stem.size() - open - 2);
    const bool hasBlank = stem[open - 1] == ' ';
    if (!isNumber(note) && !(hasBlank && saysCopy(note))) {
        return std::nullopt;
    }
    const std::string_view original = stem.substr(0, hasBlank ? open - 1 : open);
    return original.empty() ? std::nullopt : std::optional(original);
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
    while (at > 0 && isASCIIDigit(stem[at - 1])) {
        --at;
    }
    // What must stand before the digits: " (".
    if (at + 1 == stem.size() || at < 2 || stem[at - 1] != '(' || stem[at - 2] != ' ') {
        return std::nullopt;
    }
    return std::string(stem.substr(0, at - 2)).append(name.substr(dot));
}

std::optional<std::string> originalOfDesktopCopyName(std::string_view name)
{
    constexpr std::string_view before = "Copy of ";
    constexpr std::string_view behind = " - Copy";
    if (name.starts_with(before) && name.size() > before.size()) {
        return std::string(name.substr(before.size()));
    }
    const std::size_t dot = wholeExtensionStart(name);
    const std::string_view stem = name.substr(0, dot);
    if (stem.ends_with(behind) && stem.size() > behind.size()) {
        return std::string(stem.substr(0, stem.size() - behind.size())).append(name.substr(dot));
    }
    if (stem.empty() || originalOfDuplicateName(name)) {
        return std::nullopt;
    }
    if (const auto original = originalOfNotedStem(stem)) {
        return std::string(*original).append(name.substr(dot));
    }
    return std::nullopt;
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
