#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/foundation/file_url.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/long_path.h"

/// The way to an item, directory by directory, so that its length does not matter and a link that
/// is put into it leads nowhere.

namespace gruk {

/// An open directory, or the positive error number that opening it gave.
struct OpenedDirectory {
    Descriptor directory;
    int error = 0;
};

/// Opens one directory by its name in another, or by an absolute path that one call takes.
[[nodiscard]] OpenedDirectory openDirectoryIn(int directory, const std::string& name, LastLink link,
                                              const MoveCalls& calls);

/// Opens the directory at the absolute `path` of any length; links are followed.
[[nodiscard]] OpenedDirectory openDirectoryAt(std::string_view path, const MoveCalls& calls);

/// Opens the parent of the item at `url`. Where `url` lies below `within`, the way to `within` is
/// followed as it reads and every step below it must be a directory itself; else the whole way is
/// followed as it reads. Throws `FileError` with `operation` and the path: also for the root, which
/// has no parent, and for a way below `within` that leads up again.
[[nodiscard]] OpenedParent openWayTo(const FileURL& url, const std::optional<FileURL>& within,
                                     const char* operation, const MoveCalls& calls);

/// The same under `conditions.within`, which must be the directory that the batch stays in, if it
/// stays in one there.
[[nodiscard]] OpenedParent openWayTo(const FileURL& url, const MoveConditions& conditions,
                                     const char* operation, const MoveCalls& calls);

}  // namespace gruk
