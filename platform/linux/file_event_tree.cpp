#include "platform/linux/file_event_tree.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <sys/inotify.h>
#include <sys/stat.h>

#include "platform/linux/errno_error.h"

namespace gruk {

namespace {

/// A file that grows while it stays open is told by IN_MODIFY alone. What has no name any more is
/// not in the tree.
constexpr std::uint32_t watchMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY
                                    | IN_CLOSE_WRITE | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF
                                    | IN_ONLYDIR | IN_EXCL_UNLINK;
/// What ends the root.
constexpr std::uint32_t endMask = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;

}  // namespace

WatchCalls WatchCalls::live()
{
    return {[](int queue, int directory) {
                std::array<char, 32> path{};
                std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", directory);
                const int watch = ::inotify_add_watch(queue, path.data(), watchMask);
                return watch < 0 ? -errno : watch;
            },
            [](int queue, int watch) { ::inotify_rm_watch(queue, watch); }};
}

FileEventTree::FileEventTree(const FileURL& root, int queue, WatchCalls calls, UnheardItems unheard)
    : rootPath_(root.path()), queue_(queue), calls_(std::move(calls)), folders_(root),
      ownItems_(std::move(unheard))
{
    // The clock that the kernel stamps directories with.
    ::clock_gettime(CLOCK_REALTIME_COARSE, &begun_);
    const int watch = calls_.add(queue_, folders_.rootDescriptor());
    if (watch < 0) {
        throwErrno(-watch, "watch", rootPath_);
    }
    isUnheard_ = ownItems_.isFolder(folders_.device(), folders_.lastInode());
    place_.emplace(root, folders_.rootDescriptor(), queue_);
    folders_.setRoot(watch);
    folders_.closeAll();
    pending_.push_back({0, {}, Relisting::tree});
}

bool FileEventTree::handle(const FileEventRecord& record)
{
    if ((record.mask & IN_Q_OVERFLOW) != 0) {
        walkAgain();
        return complain(Shortfall::queue);
    }
    if (place_->isAbove(record.watch) && (record.mask & endMask) != 0) {
        if (!place_->stands()) {
            return goes();
        }
        if ((record.mask & IN_IGNORED) != 0) {
            place_->erase(record.watch);
        }
    }
    if (!folders_.contains(record.watch)) {
        // Still under way when its watch was ended.
        return false;
    }
    if (record.watch == folders_.rootWatch() && (record.mask & endMask) != 0) {
        return goes();
    }
    if ((record.mask & IN_IGNORED) != 0) {
        folders_.erase(record.watch);
        return false;
    }
    if (isUnheard_ || ownItems_.cause(record)) {
        return false;
    }
    if ((record.mask & IN_MOVE_SELF) != 0) {
        moved_.push_back(record.watch);
    }
    if ((record.mask & IN_ISDIR) != 0) {
        noteFolder(record);
    }
    return true;
}

/// Takes in which directory a record is about.
void FileEventTree::noteFolder(const FileEventRecord& record)
{
    if (record.name.empty()) {
        // Of the others it is told by the directory that they are in.
        if (record.watch == folders_.rootWatch() && (record.mask & IN_ATTRIB) != 0) {
            pending_.push_back({0, {}, Relisting::itself});
        }
    } else if ((record.mask & IN_MOVED_TO) != 0) {
        ++walk_;
        pending_.push_back({record.watch, std::string(record.name), Relisting::tree});
    } else if ((record.mask & IN_ATTRIB) != 0) {
        // One whose permissions change may be opened from now on, or what is in it.
        pending_.push_back({record.watch, std::string(record.name), Relisting::itself});
    } else if ((record.mask & IN_CREATE) != 0) {
        pending_.push_back({record.watch, std::string(record.name), Relisting::nothing});
    }
}

bool FileEventTree::mountsChanged()
{
    if (!place_->stands()) {
        return goes();
    }
    for (std::vector<std::string>& names : place_->takeUncovered()) {
        const std::string name = std::move(names.back());
        names.pop_back();
        for (const int parent : folders_.watchesAt(names)) {
            ++walk_;
            pending_.push_back({parent, name, Relisting::tree});
        }
    }
    // What comes to light is a change when it is taken in.
    return false;
}

bool FileEventTree::goes()
{
    isGone_ = true;
    return true;
}

bool FileEventTree::work(std::size_t count)
{
    bool isChange = false;
    for (std::size_t i = 0; i < count && !pending_.empty(); ++i) {
        const Item item = std::move(pending_.back());
        pending_.pop_back();
        isChange = takeIn(item) || isChange;
    }
    if (pending_.empty()) {
        finishWork();
    }
    return isChange;
}

std::optional<std::string> FileEventTree::takeComplaint()
{
    if (complaint_.empty()) {
        return std::nullopt;
    }
    return std::exchange(complaint_, {});
}

/// Records were lost, and with them which directories came and went.
void FileEventTree::walkAgain()
{
    ++walk_;
    dropsBefore_ = walk_;
    pending_.assign(1, {0, {}, Relisting::tree});
}

/// Watches and lists one directory. Not finding it is no failure: then it has moved on or gone,
/// and that is told by a record of its own.
bool FileEventTree::takeIn(const Item& item)
{
    if (isUnheard_) {
        return false;
    }
    try {
        const int directory =
            item.parent == 0 ? folders_.openRoot() : folders_.openChild(item.parent, item.name);
        return directory >= 0 && takeInOpened(directory, item);
    } catch (const FileError& error) {
        const std::error_code code = error.code();
        const bool isShort = code == std::errc::too_many_files_open
                             || code == std::errc::too_many_files_open_in_system
                             || code == std::errc::not_enough_memory;
        return isShort && complain(Shortfall::descriptors);
    }
}

bool FileEventTree::takeInOpened(int directory, const Item& item)
{
    if (item.parent != 0 && ownItems_.isFolder(folders_.device(), folders_.lastInode())) {
        // It may have been watched at another place before.
        drop(folders_.watchesOf(folders_.lastInode()));
        return false;
    }
    int watch = folders_.rootWatch();
    bool isNew = false;
    if (item.parent != 0) {
        watch = calls_.add(queue_, directory);
        if (watch < 0) {
            return watchFailed(-watch);
        }
        if (watch == folders_.rootWatch()) {
            // The root once more, mounted inside itself.
            return false;
        }
        isNew = folders_.place(watch, item.parent, item.name).second;
    }
    FileEventFolders::Folder& folder = folders_.at(watch);
    const bool isWalked = isNew || item.relisting == Relisting::tree;
    if (isWalked ? !isNew && folder.walk == walk_ : item.relisting == Relisting::nothing) {
        return false;
    }
    if (isWalked) {
        folder.walk = walk_;
    }
    const auto children = folders_.childrenOf(directory);
    if (!children) {
        return complain(Shortfall::descriptors);
    }
    for (const std::string& name : *children) {
        pending_.push_back({watch, name, isWalked ? Relisting::tree : Relisting::nothing});
    }
    return isFirstWalk_ ? wasChangedSinceTheBeginning(directory) : isNew;
}

bool FileEventTree::watchFailed(int error)
{
    if (error != ENOSPC && error != ENOMEM) {
        return false;
    }
    // None of the others would fare better; and what is not reached now is not known to be gone.
    pending_.clear();
    dropsBefore_.reset();
    return complain(Shortfall::watches);
}

/// Whether something was made in the directory, or removed, before its watch stood.
bool FileEventTree::wasChangedSinceTheBeginning(int directory) const
{
    struct stat facts {};
    if (::fstat(directory, &facts) != 0) {
        return true;
    }
    return std::pair(facts.st_ctim.tv_sec, facts.st_ctim.tv_nsec)
           >= std::pair(begun_.tv_sec, begun_.tv_nsec);
}

void FileEventTree::finishWork()
{
    if (!moved_.empty()) {
        drop(movedAway());
    }
    if (const auto walk = std::exchange(dropsBefore_, std::nullopt)) {
        drop(folders_.notListedSince(*walk));
    }
    isFirstWalk_ = false;
    folders_.closeAll();
}

/// Those of the directories that moved which are not in the tree any more.
std::vector<int> FileEventTree::movedAway()
{
    std::vector<int> away;
    for (const int watch : std::exchange(moved_, {})) {
        bool isHere = false;
        try {
            isHere = folders_.open(watch) >= 0;
        } catch (const FileError&) {
            // Not there, then.
            isHere = false;
        }
        if (!isHere) {
            away.push_back(watch);
        }
    }
    return away;
}

void FileEventTree::drop(const std::vector<int>& watches)
{
    if (watches.empty()) {
        return;
    }
    for (const int watch : folders_.takeWithSubtrees(watches)) {
        calls_.remove(queue_, watch);
    }
}

/// Always a change: nobody knows what is missed.
bool FileEventTree::complain(Shortfall shortfall)
{
    if (std::find(told_.begin(), told_.end(), shortfall) != told_.end()) {
        return true;
    }
    told_.push_back(shortfall);
    switch (shortfall) {
    case Shortfall::watches:
        complaint_ += "The system has no more watches; changes in some folders below " + rootPath_
                      + " will not be noticed (fs.inotify.max_user_watches).";
        break;
    case Shortfall::queue:
        complaint_ += "Changes below " + rootPath_
                      + " came faster than they could be read; all of it counts as changed.";
        break;
    case Shortfall::descriptors:
        complaint_ += "Too much is open to look into some folders below " + rootPath_
                      + "; changes in them will not be noticed.";
        break;
    }
    return true;
}

}  // namespace gruk
