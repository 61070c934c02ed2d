#pragma once

#include <cerrno>

#include <fcntl.h>

namespace gruk {

/// Opens the directory `name` in the open directory `parent` (or at an absolute path, with
/// `AT_FDCWD`) for listing it, without changing when it was last opened: that date is the user's,
/// and shown to him. Where the system refuses that, as for folders of somebody else's, it is opened
/// all the same. `flags` are added to those of every listing. The descriptor, or -1 with `errno`.
[[nodiscard]] inline int openQuietly(int parent, const char* name, int flags = 0)
{
    int all = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | O_NOATIME | flags;
    for (;;) {
        const int descriptor = ::openat(parent, name, all);
        if (descriptor >= 0) {
            return descriptor;
        }
        if (errno == EPERM && (all & O_NOATIME) != 0) {
            all &= ~O_NOATIME;
        } else if (errno != EINTR) {
            return -1;
        }
    }
}

}  // namespace gruk
