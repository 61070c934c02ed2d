#include "platform/linux/file_event_folders.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <unordered_set>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "platform/linux/errno_error.h"
#include "platform/linux/statx_facts.h"

namespace gruk {

namespace {

bool isDotOrDotDot(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

}  // namespace

FileEventFolders::FileEventFolders(const FileURL& root) : root_(root), chain_(root)
{
    struct stat facts {};
    if (::fstat(rootDescriptor(), &facts) != 0) {
        throwErrno(errno, "examine", root_.path());
    }
    device_ = facts.st_dev;
    lastInode_ = facts.st_ino;
}

int FileEventFolders::rootDescriptor()
{
    return chain_->open(0, {});
}

void FileEventFolders::setRoot(int watch)
{
    rootWatch_ = watch;
    folders_[watch] = {0, 0, lastInode_, {}};
}

int FileEventFolders::openRoot()
{
    if (!chain_) {
        chain_.emplace(root_);
    }
    chainWatches_.assign(1, rootWatch_);
    const int descriptor = chain_->open(0, {});
    if (!isFolder(descriptor, rootWatch_)) {
        chainWatches_.back() = -1;
        return -1;
    }
    return descriptor;
}

int FileEventFolders::open(int watch)
{
    const auto way = wayTo(watch);
    if (!way) {
        return -1;
    }
    int descriptor = openRoot();
    for (std::size_t depth = 1; depth <= way->size() && descriptor >= 0; ++depth) {
        const int next = (*way)[way->size() - depth];
        descriptor = chain_->open(depth, folders_.at(next).name);
        chainWatches_.push_back(next);
        if (!isFolder(descriptor, next)) {
            chainWatches_.back() = -1;
            return -1;
        }
    }
    return descriptor;
}

int FileEventFolders::openChild(int parent, const std::string& name)
{
    auto at = std::find(chainWatches_.begin(), chainWatches_.end(), parent);
    if (at == chainWatches_.end()) {
        const int descriptor = open(parent);
        // It was not listed just now, which would have told what is mounted on it.
        if (descriptor < 0 || !isFolderHere(descriptor, name.c_str())) {
            return -1;
        }
        at = chainWatches_.end() - 1;
    }
    const auto depth = static_cast<std::size_t>(at - chainWatches_.begin()) + 1;
    chainWatches_.resize(depth);
    const int descriptor = chain_->open(depth, name);
    chainWatches_.push_back(-1);
    struct stat facts {};
    if (::fstat(descriptor, &facts) != 0 || facts.st_dev != device_) {
        return -1;
    }
    lastInode_ = facts.st_ino;
    return descriptor;
}

std::pair<FileEventFolders::Folder&, bool> FileEventFolders::place(int watch, int parent,
                                                                   const std::string& name)
{
    chainWatches_.back() = watch;
    const auto [place, isNew] = folders_.try_emplace(watch);
    Folder& folder = place->second;
    folder.parent = parent;
    folder.inode = lastInode_;
    folder.name = name;
    return {folder, isNew};
}

std::optional<std::vector<std::string>> FileEventFolders::childrenOf(int directory) const
{
    // A copy, which the listing closes.
    const int copy = ::fcntl(directory, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(copy < 0 ? nullptr : ::fdopendir(copy),
                                                      ::closedir);
    if (!listing) {
        if (copy >= 0) {
            ::close(copy);
        }
        return std::nullopt;
    }
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(listing.get())) {
        const bool mayBeFolder = entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN;
        if (mayBeFolder && !isDotOrDotDot(entry->d_name)
            && isFolderHere(directory, entry->d_name)) {
            names.emplace_back(entry->d_name);
        }
    }
    return names;
}

std::vector<int> FileEventFolders::watchesAt(const std::vector<std::string>& names) const
{
    std::vector<int> level = {rootWatch_};
    for (const std::string& name : names) {
        std::vector<int> next;
        for (const auto& [watch, folder] : folders_) {
            if (folder.name == name
                && std::find(level.begin(), level.end(), folder.parent) != level.end()) {
                next.push_back(watch);
            }
        }
        level = std::move(next);
    }
    return level;
}

std::vector<int> FileEventFolders::watchesOf(ino_t inode) const
{
    std::vector<int> watches;
    for (const auto& [watch, folder] : folders_) {
        if (folder.inode == inode) {
            watches.push_back(watch);
        }
    }
    return watches;
}

std::vector<int> FileEventFolders::takeWithSubtrees(const std::vector<int>& watches)
{
    std::unordered_set<int> taken(watches.begin(), watches.end());
    for (std::size_t before = 0; before != taken.size();) {
        before = taken.size();
        for (const auto& [watch, folder] : folders_) {
            if (taken.contains(folder.parent)) {
                taken.insert(watch);
            }
        }
    }
    std::vector<int> result;
    for (const int watch : taken) {
        if (folders_.erase(watch) > 0) {
            result.push_back(watch);
        }
    }
    return result;
}

std::vector<int> FileEventFolders::notListedSince(std::uint32_t walk) const
{
    std::vector<int> watches;
    for (const auto& [watch, folder] : folders_) {
        if (folder.walk < walk) {
            watches.push_back(watch);
        }
    }
    return watches;
}

void FileEventFolders::closeAll()
{
    chain_.reset();
    chainWatches_.clear();
}

/// Whether what is open is the directory that was watched.
bool FileEventFolders::isFolder(int descriptor, int watch) const
{
    struct stat facts {};
    return ::fstat(descriptor, &facts) == 0 && facts.st_dev == device_
           && facts.st_ino == folders_.at(watch).inode;
}

/// Whether the item is a directory on the root's device, found out without touching what may be
/// mounted there.
bool FileEventFolders::isFolderHere(int directory, const char* name) const
{
    struct statx answer {};
    if (::statx(directory, name, statxFlags, STATX_TYPE, &answer) != 0) {
        return false;
    }
    return S_ISDIR(answer.stx_mode)
           && makedev(answer.stx_dev_major, answer.stx_dev_minor) == device_;
}

/// The watches from that one up to below the root. None when the way is broken: one of them was
/// dropped, or has moved and not been found again yet.
std::optional<std::vector<int>> FileEventFolders::wayTo(int watch) const
{
    std::vector<int> way;
    while (watch != rootWatch_) {
        const auto folder = folders_.find(watch);
        if (folder == folders_.end() || way.size() > folders_.size()) {
            return std::nullopt;
        }
        way.push_back(watch);
        watch = folder->second.parent;
    }
    return way;
}

}  // namespace gruk
