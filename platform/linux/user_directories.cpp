#include "platform/linux/user_directories.h"

#include <algorithm>
#include <string>

namespace gruk {

namespace {

void skipBlanks(std::string_view& text)
{
    while (text.starts_with(' ') || text.starts_with('\t')) {
        text.remove_prefix(1);
    }
}

bool skip(std::string_view& text, std::string_view expected)
{
    skipBlanks(text);
    if (!text.starts_with(expected)) {
        return false;
    }
    text.remove_prefix(expected.size());
    return true;
}

/// The text up to the closing quote, with "\" taken off what it stands before.
std::string unquoted(std::string_view text)
{
    std::string value;
    for (std::size_t i = 0; i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
        }
        value += text[i];
    }
    return value;
}

/// The place that one line of the user's directories file gives for `key`, such as
/// `XDG_DESKTOP_DIR="$HOME/Desktop"`; none for any other line.
std::optional<FileURL> directoryOfLine(std::string_view line, std::string_view key,
                                       const FileURL& home)
{
    if (!skip(line, key) || !skip(line, "=") || !skip(line, "\"")) {
        return std::nullopt;
    }
    constexpr std::string_view homeMark = "$HOME";
    const bool isBelowHome = line.starts_with(homeMark);
    if (isBelowHome) {
        line.remove_prefix(homeMark.size());
    }
    const std::string path = unquoted(line);
    if (isBelowHome && (path.empty() || path[0] == '/')) {
        return home.appending(path, FileURL::Names::directory);
    }
    if (isBelowHome || path.empty() || path[0] != '/') {
        return std::nullopt;
    }
    return FileURL::directory(path);
}

}  // namespace

std::optional<FileURL> userDirectoryNamed(std::string_view key, std::string_view text,
                                          const FileURL& home)
{
    std::optional<FileURL> named;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (auto directory = directoryOfLine(line, key, home)) {
            named = std::move(directory);
        }
    }
    return named;
}

}  // namespace gruk
