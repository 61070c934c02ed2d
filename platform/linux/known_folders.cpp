#include "platform/files/known_folders.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "platform/files/atomic_file.h"
#include "platform/foundation/errors.h"
#include "platform/linux/user_directories.h"

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

/// What the user's directories file names for `key`.
std::optional<FileURL> userDirectory(std::string_view key, const FileURL& home)
{
    try {
        const std::string content = readFile(configurationDirectory().appending("user-dirs.dirs"));
        return userDirectoryNamed(key, content, home);
    } catch (const FileError&) {
        return std::nullopt;
    }
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

std::optional<FileURL> applicationsDirectory()
{
    constexpr const char* path = "/usr/share/applications";
    std::error_code error;
    return std::filesystem::is_directory(path, error) ? std::optional(FileURL::directory(path))
                                                      : std::nullopt;
}

}  // namespace gruk
