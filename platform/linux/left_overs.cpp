#include "platform/linux/left_overs.h"

#include <algorithm>
#include <cerrno>
#include <random>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "platform/foundation/ascii.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/directory_stream.h"
#include "platform/linux/try_lock.h"

namespace gruk {

namespace {

constexpr std::string_view suffix = ".gruk-new";
constexpr std::size_t randomDigits = 8;
constexpr std::size_t longestName = 255;

std::string prefixFor(std::string_view name)
{
    constexpr std::size_t room = longestName - 2 - randomDigits - suffix.size();
    return "." + std::string(name.substr(0, room)) + ".";
}

bool isTemporaryNameFor(std::string_view prefix, std::string_view candidate)
{
    return candidate.size() == prefix.size() + randomDigits + suffix.size()
           && candidate.starts_with(prefix) && isTemporaryName(candidate);
}

void removeUnlessInUse(const std::string& path, const FileCalls& calls)
{
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat facts {};
    if (!file.isOpen() || ::fstat(file.number(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return;
    }
    if (tryLock(file.number()) == 0) {
        calls.remove(path.c_str());
    }
}

}  // namespace

std::string temporaryName(std::string_view name)
{
    std::random_device source;
    const unsigned number = source();
    std::string result = prefixFor(name);
    for (std::size_t i = 0; i < randomDigits; ++i) {
        result += lowerHexDigits[number >> (4 * i) & 0xFU];
    }
    result += suffix;
    return result;
}

bool isTemporaryName(std::string_view name)
{
    constexpr std::size_t endSize = 1 + randomDigits + suffix.size();
    if (name.size() <= 1 + endSize || !name.starts_with('.') || !name.ends_with(suffix)) {
        return false;
    }
    const std::string_view end = name.substr(name.size() - endSize);
    return end.starts_with('.')
           && end.substr(1, randomDigits).find_first_not_of(lowerHexDigits)
                  == std::string_view::npos;
}

Lock lockTemporaryFile(int descriptor)
{
    if (tryLock(descriptor) == -EWOULDBLOCK) {
        return Lock::lost;
    }
    // Whoever clears left-overs may have come between making the file and locking it.
    struct stat facts {};
    const bool isGone = ::fstat(descriptor, &facts) == 0 && facts.st_nlink == 0;
    return isGone ? Lock::lost : Lock::held;
}

void removeLeftOvers(const std::string& directory, std::string_view name, const FileCalls& calls)
{
    const DirectoryStream listing = streamOf(AT_FDCWD, directory.c_str());
    if (!listing) {
        return;
    }
    const std::string prefix = prefixFor(name);
    while (const dirent* item = ::readdir(listing.get())) {
        if (isTemporaryNameFor(prefix, item->d_name)) {
            removeUnlessInUse(directory + "/" + item->d_name, calls);
        }
    }
}

}  // namespace gruk
