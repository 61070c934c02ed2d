#pragma once

#include <cerrno>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// What a tree holds: relative path to the type, inode, mode, modification time and content of the
/// item. Two equal records mean that nothing was moved, copied, replaced or touched in between.
using TreeRecord = std::map<std::string, std::string>;

/// What one item is, without its name. Throws when it is not there.
inline std::string itemRecord(const std::string& path)
{
    struct stat facts {};
    if (::lstat(path.c_str(), &facts) != 0) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    std::string text = std::to_string(facts.st_ino) + " " + std::to_string(facts.st_mode);
    if (!S_ISDIR(facts.st_mode)) {
        text += " " + std::to_string(facts.st_mtim.tv_sec) + "."
                + std::to_string(facts.st_mtim.tv_nsec) + " " + std::to_string(facts.st_size);
    }
    if (S_ISLNK(facts.st_mode)) {
        text += " -> " + std::filesystem::read_symlink(path).string();
    }
    return text;
}

inline TreeRecord treeRecord(const std::string& root)
{
    TreeRecord record;
    for (const auto& item : std::filesystem::recursive_directory_iterator(root)) {
        const std::string path = item.path().string();
        record[path.substr(root.size() + 1)] = itemRecord(path);
    }
    return record;
}

/// A home of the test's own with the places of the desktop in it. One thread, as the environment
/// belongs to the whole process.
class TrashHouse {
public:
    [[nodiscard]] const TemporaryDirectory& directory() const { return directory_; }
    [[nodiscard]] std::string path(std::string_view relative) const
    {
        return directory_.path(relative);
    }
    [[nodiscard]] FileURL url(std::string_view relative) const { return FileURL(path(relative)); }

    /// A path in the Trash at home, which need not be there.
    [[nodiscard]] std::string trash(std::string_view relative = "") const
    {
        return directory_.path("data/Trash" + std::string(relative.empty() ? "" : "/")
                               + std::string(relative));
    }

private:
    TemporaryDirectory directory_;
    EnvironmentVariable home_{"HOME", directory_.path("home")};
    EnvironmentVariable data_{"XDG_DATA_HOME", directory_.path("data")};
    EnvironmentVariable configuration_{"XDG_CONFIG_HOME", directory_.path("config")};
};

/// Calls that leave it to the system when names and bytes reach the disk, for tests of many moves:
/// waiting for the disk is all that those would do.
inline MoveCalls unsynchronizedCalls()
{
    MoveCalls calls;
    const auto skip = [](int) { return 0; };
    calls.startWriting = skip;
    calls.synchronize = skip;
    calls.synchronizeDirectory = skip;
    calls.files.synchronize = skip;
    calls.files.synchronizeDirectory = [](const char*) { return 0; };
    return calls;
}

/// Whether anything stands there, a link that leads nowhere too.
inline bool stands(const std::string& path)
{
    struct stat facts {};
    return ::lstat(path.c_str(), &facts) == 0;
}

}  // namespace gruk::test
