#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "platform/foundation/file_url.h"
#include "platform/linux/directory_chain.h"

namespace gruk {

/// The watched directories of one tree, each known by its watch, and where each was last seen.
///
/// A path only leads to a directory again: what is found there is compared with what was watched,
/// so that another one in its place is never taken for it. Directories stay open from the first
/// that is opened until `closeAll`. One thread.
class FileEventFolders {
public:
    struct Folder {
        /// The watch of the directory that it is in; 0 for the root.
        int parent = 0;
        /// The last walk that listed it.
        std::uint32_t walk = 0;
        ino_t inode = 0;
        std::string name;
    };

    /// Opens `root`, which may be a link to a directory; throws `FileError`.
    explicit FileEventFolders(const FileURL& root);

    /// The root just opened; until `setRoot` only.
    [[nodiscard]] int rootDescriptor();
    /// Takes the root's watch; with it the device that all directories are on is settled.
    void setRoot(int watch);

    [[nodiscard]] int rootWatch() const { return rootWatch_; }
    [[nodiscard]] std::size_t size() const { return folders_.size(); }
    [[nodiscard]] bool contains(int watch) const { return folders_.contains(watch); }
    void erase(int watch) { folders_.erase(watch); }

    /// Each returns an open directory that stays this object's, or -1 when it is not where it was
    /// last seen or not on the root's device; or throws `FileError`.
    int openRoot();
    int open(int watch);
    int openChild(int parent, const std::string& name);

    [[nodiscard]] dev_t device() const { return device_; }
    /// Of what `openChild` opened last; at first, of the root.
    [[nodiscard]] ino_t lastInode() const { return lastInode_; }

    /// Takes the watch of what `openChild` opened last, and that it is there now. Returns it, and
    /// whether it is new. The reference is good until the next change.
    std::pair<Folder&, bool> place(int watch, int parent, const std::string& name);
    [[nodiscard]] Folder& at(int watch) { return folders_.at(watch); }

    /// The directories that are in an open one, without the links, and without touching what is
    /// mounted in it. None when the system is out of descriptors.
    [[nodiscard]] std::optional<std::vector<std::string>> childrenOf(int directory) const;

    /// The watches of the directories that were last seen at the end of these names, from the root
    /// down: several where what is mounted there hides another one.
    [[nodiscard]] std::vector<int> watchesAt(const std::vector<std::string>& names) const;
    [[nodiscard]] std::vector<int> watchesOf(ino_t inode) const;

    /// Forgets these directories and all below them; returns the watches of all.
    std::vector<int> takeWithSubtrees(const std::vector<int>& watches);
    /// Those that no walk since that one has listed.
    [[nodiscard]] std::vector<int> notListedSince(std::uint32_t walk) const;

    /// Closes what is open, so that the volume can be unmounted.
    void closeAll();

private:
    [[nodiscard]] bool isFolder(int descriptor, int watch) const;
    [[nodiscard]] bool isFolderHere(int directory, const char* name) const;
    [[nodiscard]] std::optional<std::vector<int>> wayTo(int watch) const;

    FileURL root_;
    int rootWatch_ = 0;
    dev_t device_ = 0;
    ino_t lastInode_ = 0;
    std::unordered_map<int, Folder> folders_;
    /// The way to the directory opened last, and the watches along it; -1 while it has none yet.
    std::optional<DirectoryChain> chain_;
    std::vector<int> chainWatches_;
};

}  // namespace gruk
