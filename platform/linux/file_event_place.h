#pragma once

#include <set>
#include <string>
#include <vector>

#include <sys/types.h>

#include "platform/foundation/file_url.h"

namespace gruk {

/// The place of a watched root: whether the root still stands there, and what comes to light below
/// it when a volume goes. Neither is told by the watches of the tree itself: a directory hears
/// nothing of a rename farther up, and nothing of what is mounted on it. One thread.
class FileEventPlace {
public:
    /// Of the open directory `descriptor`, which was reached as `root`. Watches the directories
    /// above it; one that may not be watched is left out.
    FileEventPlace(const FileURL& root, int descriptor, int queue);

    /// Whether the watch is of a directory above the root.
    [[nodiscard]] bool isAbove(int watch) const { return above_.contains(watch); }
    void erase(int watch) { above_.erase(watch); }

    /// Whether the path of the root leads to it, touching no volume that would have to be mounted.
    [[nodiscard]] bool stands() const;

    /// Where below the root something was mounted at the last call, or the beginning, and nothing
    /// is any more: the names from the root down.
    [[nodiscard]] std::vector<std::vector<std::string>> takeUncovered();

private:
    void watchAbove(int queue);
    [[nodiscard]] std::set<std::string> mountsBelow() const;

    std::string path_;
    /// Without links, as it was at the beginning; empty when the system does not tell.
    std::string realPath_;
    dev_t device_ = 0;
    ino_t inode_ = 0;
    std::set<int> above_;
    std::set<std::string> mounts_;
};

}  // namespace gruk
