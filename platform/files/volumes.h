#pragma once

#include <set>
#include <string>

#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// The top of the volume that holds the item at `url` (of the link itself, for a link): where it is
/// mounted. An item that is such a top is its own. "/" where no item is. Throws `FileError` when it
/// cannot be found out. Any thread; a mount whose server is gone blocks.
[[nodiscard]] FileURL mountPoint(const FileURL& url, const MoveCalls& calls = MoveCalls::live());

/// The names directly in `directory` at which something is mounted. By the system's table alone, so
/// that none that hangs is touched. Throws `FileError`, also when the table cannot be read.
[[nodiscard]] std::set<std::string> mountedNames(const FileURL& directory,
                                                 const MoveCalls& calls = MoveCalls::live());

/// Whether one item stands at both places, links at their ends themselves; not when nothing stands
/// at one of them. Throws `FileError` when that cannot be found out.
[[nodiscard]] bool isOneItem(const FileURL& a, const FileURL& b,
                             const MoveCalls& calls = MoveCalls::live());

}  // namespace gruk
