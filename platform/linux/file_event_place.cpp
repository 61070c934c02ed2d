#include "platform/linux/file_event_place.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/mount_table.h"

namespace gruk {

namespace {

/// What takes a directory away from its place. Added to what is watched already: a directory may
/// stand above the root and, mounted there, in it.
constexpr std::uint32_t aboveMask = IN_MOVE_SELF | IN_DELETE_SELF | IN_ONLYDIR | IN_MASK_ADD;

std::string placeOf(int descriptor)
{
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::string path(PATH_MAX, '\0');
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    if (length <= 0 || path.front() != '/') {
        return {};
    }
    path.resize(static_cast<std::size_t>(length));
    return path;
}

std::vector<std::string> namesIn(std::string_view relativePath)
{
    std::vector<std::string> names;
    while (!relativePath.empty()) {
        const std::string_view name = relativePath.substr(0, relativePath.find('/'));
        names.emplace_back(name);
        relativePath.remove_prefix(std::min(name.size() + 1, relativePath.size()));
    }
    return names;
}

}  // namespace

FileEventPlace::FileEventPlace(const FileURL& root, int descriptor, int queue)
    : path_(root.path()), realPath_(placeOf(descriptor))
{
    struct stat facts {};
    if (::fstat(descriptor, &facts) == 0) {
        device_ = facts.st_dev;
        inode_ = facts.st_ino;
    }
    watchAbove(queue);
    mounts_ = mountsBelow();
}

bool FileEventPlace::stands() const
{
    struct stat facts {};
    return ::fstatat(AT_FDCWD, path_.c_str(), &facts, AT_NO_AUTOMOUNT) == 0
           && facts.st_dev == device_ && facts.st_ino == inode_;
}

std::vector<std::vector<std::string>> FileEventPlace::takeUncovered()
{
    std::vector<std::vector<std::string>> uncovered;
    std::set<std::string> now = mountsBelow();
    for (const std::string& former : mounts_) {
        if (!now.contains(former)) {
            uncovered.push_back(namesIn(former));
        }
    }
    mounts_ = std::move(now);
    return uncovered;
}

void FileEventPlace::watchAbove(int queue)
{
    FileURL place(realPath_);
    while (place.path() != "/") {
        place = place.deletingLastPathComponent();
        const int watch = ::inotify_add_watch(queue, place.path().c_str(), aboveMask);
        if (watch >= 0) {
            above_.insert(watch);
        }
    }
}

/// The paths from the root to what is mounted below it.
std::set<std::string> FileEventPlace::mountsBelow() const
{
    std::set<std::string> below;
    if (realPath_.empty()) {
        return below;
    }
    const std::size_t rootLength = realPath_ == "/" ? 1 : realPath_.size() + 1;
    for (const Mount& mount : mountTable()) {
        if (mount.point.size() > rootLength && pathIsAtOrBelow(mount.point, realPath_)) {
            below.insert(mount.point.substr(rootLength));
        }
    }
    return below;
}

}  // namespace gruk
