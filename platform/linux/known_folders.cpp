#include "platform/files/known_folders.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "platform/files/atomic_file.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// The place that an environment variable names; none unless it is an absolute path.
std::optional<FileURL> environmentDirectory(const char* variable)
{
    const char* value = std::getenv(variable);
    if (value == nullptr || value[0] != '/') {
        return std::nullopt;
    }
    return FileURL::directory(value);
}

std::optional<FileURL> accountHome()
{
    struct passwd entry {};
    struct passwd* found = nullptr;
    std::vector<char> buffer(16'384);
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0
        || found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/') {
        return std::nullopt;
    }
    return FileURL::directory(found->pw_dir);
}

std::optional<FileURL> knownHome()
{
    std::optional<FileURL> home = environmentDirectory("HOME");
    return home ? home : accountHome();
}

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

/// What the user's directories file names for `key`; a later line outdoes an earlier one.
std::optional<FileURL> userDirectory(std::string_view key, const FileURL& home)
{
    std::string content;
    try {
        content = readFile(configurationDirectory().appending("user-dirs.dirs"));
    } catch (const FileError&) {
        return std::nullopt;
    }
    std::optional<FileURL> named;
    for (std::string_view rest = content; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (auto directory = directoryOfLine(line, key, home)) {
            named = std::move(directory);
        }
    }
    return named;
}

FileURL folderInHome(std::string_view name)
{
    return homeDirectory().appending(name, FileURL::Names::directory);
}

}  // namespace

FileURL homeDirectory()
{
    return knownHome().value_or(FileURL());
}

std::optional<FileURL> applicationSupportDirectory()
{
    if (auto named = environmentDirectory("XDG_DATA_HOME")) {
        return named;
    }
    const std::optional<FileURL> home = knownHome();
    if (!home) {
        return std::nullopt;
    }
    return home->appending(".local/share", FileURL::Names::directory);
}

FileURL configurationDirectory()
{
    return environmentDirectory("XDG_CONFIG_HOME").value_or(folderInHome(".config"));
}

FileURL temporaryDirectory()
{
    return environmentDirectory("TMPDIR").value_or(FileURL::directory("/tmp"));
}

FileURL desktopDirectory()
{
    return userDirectory("XDG_DESKTOP_DIR", homeDirectory()).value_or(folderInHome("Desktop"));
}

std::optional<FileURL> downloadsDirectory()
{
    const FileURL home = homeDirectory();
    std::optional<FileURL> named = userDirectory("XDG_DOWNLOAD_DIR", home);
    if (!named) {
        return folderInHome("Downloads");
    }
    if (named->standardized().path() == home.standardized().path()) {
        return std::nullopt;
    }
    return named;
}

}  // namespace gruk
