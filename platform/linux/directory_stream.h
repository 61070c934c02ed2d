#pragma once

#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/quiet_open.h"

namespace gruk {

struct DirectoryStreamCloser {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};

/// A directory that is being listed with `readdir`, or none; closes itself.
using DirectoryStream = std::unique_ptr<DIR, DirectoryStreamCloser>;

/// Lists the directory `name` in the open directory `parent` (or at an absolute path, with
/// `AT_FDCWD`), which keeps the date when it was last opened; none with `errno` set on failure.
[[nodiscard]] inline DirectoryStream streamOf(int parent, const char* name)
{
    const int descriptor = openQuietly(parent, name);
    DirectoryStream stream(descriptor < 0 ? nullptr : ::fdopendir(descriptor));
    if (!stream && descriptor >= 0) {
        const int error = errno;
        ::close(descriptor);
        errno = error;
    }
    return stream;
}

}  // namespace gruk
