#include "platform/linux/file_event_own_items.h"

#include <algorithm>

#include <sys/inotify.h>
#include <sys/stat.h>

#include "platform/linux/left_overs.h"

namespace gruk {

bool FileEventOwnItems::isFolder(dev_t device, ino_t inode) const
{
    return std::ranges::any_of(unheard_.folders.folders(), [&](const FileURL& folder) {
        struct stat facts {};
        return ::stat(folder.path().c_str(), &facts) == 0 && facts.st_dev == device
               && facts.st_ino == inode;
    });
}

bool FileEventOwnItems::cause(const FileEventRecord& record)
{
    if (record.name.empty() || (record.mask & IN_ISDIR) != 0) {
        return false;
    }
    if (isTemporaryName(record.name)) {
        if ((record.mask & IN_MOVED_FROM) != 0) {
            replacement_ = Replacement{record.cookie, -1, {}};
        }
        return true;
    }
    if (std::ranges::find(unheard_.names, record.name) != unheard_.names.end()) {
        return true;
    }
    if (!replacement_) {
        return false;
    }
    if ((record.mask & IN_MOVED_TO) != 0 && record.cookie == replacement_->cookie) {
        replacement_->watch = record.watch;
        replacement_->name = record.name;
        return true;
    }
    if ((record.mask & IN_CLOSE_WRITE) != 0 && record.watch == replacement_->watch
        && record.name == replacement_->name) {
        replacement_.reset();
        return true;
    }
    return false;
}

}  // namespace gruk
