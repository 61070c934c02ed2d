#pragma once

#include <string>
#include <string_view>

#include "platform/files/atomic_file.h"

/// The temporary files of replacements: how they are named, and how those of killed processes are
/// told from those at work. Each is locked for as long as its replacement lives; the system drops
/// the lock of a process that ends, however it ends.

namespace gruk {

/// A new name for a temporary file beside a target named `name`: "." + name + "." + eight random
/// hexadecimal digits + ".gruk-new". A long `name` is cut so that the whole stays a valid name.
[[nodiscard]] std::string temporaryName(std::string_view name);

/// Whether a name is one that `temporaryName` makes, of whatever target.
[[nodiscard]] bool isTemporaryName(std::string_view name);

enum class Lock {
    /// The file is ours now. So it is, too, where the file system has no locks: then nobody else
    /// gets one either, and nothing is cleared.
    held,
    /// Another process has it, or has removed it already.
    lost
};

/// Locks the new temporary file open as `descriptor`.
[[nodiscard]] Lock lockTemporaryFile(int descriptor);

/// Removes the temporary files of the target `name` in `directory` whose processes are gone, and
/// tells no failure.
void removeLeftOvers(const std::string& directory, std::string_view name, const FileCalls& calls);

}  // namespace gruk
