#pragma once

#include <memory>

#include <dirent.h>

namespace gruk {

struct DirectoryStreamCloser {
    void operator()(DIR* directory) const noexcept { ::closedir(directory); }
};

/// A directory that is being listed with `readdir`, or none; closes itself.
using DirectoryStream = std::unique_ptr<DIR, DirectoryStreamCloser>;

}  // namespace gruk
