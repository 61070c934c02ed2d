#include "tests/support/disk_count.h"

#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace gruk::test {

namespace fs = std::filesystem;

std::int64_t allocatedBytes(const std::string& folder)
{
    constexpr std::int64_t blockSize = 512;
    std::int64_t bytes = 0;
    std::set<std::pair<dev_t, ino_t>> seen;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        struct stat facts = {};
        if (::lstat(entry.path().c_str(), &facts) != 0) {
            throw std::system_error(errno, std::generic_category(), entry.path().string());
        }
        if (!S_ISDIR(facts.st_mode) && seen.emplace(facts.st_dev, facts.st_ino).second) {
            bytes += facts.st_blocks * blockSize;
        }
    }
    return bytes;
}

int fileCount(const std::string& folder)
{
    int count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        count += entry.is_directory() ? 0 : 1;
    }
    return count;
}

}  // namespace gruk::test
