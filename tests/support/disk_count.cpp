#include "tests/support/disk_count.h"

#include <cerrno>
#include <functional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace gruk::test {

namespace {

[[noreturn]] void fail(const char* name)
{
    throw std::system_error(errno, std::generic_category(), name);
}

/// Calls `each` for all that lies below a folder, however long the paths are.
void forEachBelow(int parent, const char* name, const std::function<void(const struct stat&)>& each)
{
    const int folder = ::openat(parent, name, O_DIRECTORY | O_NOFOLLOW | O_NOATIME | O_CLOEXEC);
    DIR* listing = folder < 0 ? nullptr : ::fdopendir(folder);
    if (listing == nullptr) {
        fail(name);
    }
    while (const dirent* child = ::readdir(listing)) {
        const std::string_view childName = child->d_name;
        if (childName == "." || childName == "..") {
            continue;
        }
        struct stat facts = {};
        if (::fstatat(folder, child->d_name, &facts, AT_SYMLINK_NOFOLLOW) != 0) {
            fail(child->d_name);
        }
        each(facts);
        if (S_ISDIR(facts.st_mode)) {
            forEachBelow(folder, child->d_name, each);
        }
    }
    ::closedir(listing);
}

}  // namespace

std::int64_t allocatedBytes(const std::string& folder)
{
    constexpr std::int64_t blockSize = 512;
    std::int64_t bytes = 0;
    std::set<std::pair<dev_t, ino_t>> seen;
    forEachBelow(AT_FDCWD, folder.c_str(), [&](const struct stat& facts) {
        const bool counts = !S_ISDIR(facts.st_mode) && !S_ISLNK(facts.st_mode);
        if (counts && seen.emplace(facts.st_dev, facts.st_ino).second) {
            bytes += facts.st_blocks * blockSize;
        }
    });
    return bytes;
}

int fileCount(const std::string& folder)
{
    int count = 0;
    forEachBelow(AT_FDCWD, folder.c_str(),
                 [&](const struct stat& facts) { count += S_ISDIR(facts.st_mode) ? 0 : 1; });
    return count;
}

}  // namespace gruk::test
