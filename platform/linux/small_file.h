#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/files/move_calls.h"

/// The small files that belong to a Trash, by their name in an open directory.

namespace gruk {

struct SmallFile {
    std::string text;
    PlaceFacts facts;
};

/// The whole of a file; none when it cannot be read, is longer than `longest` bytes, or is anything
/// but a plain file.
[[nodiscard]] std::optional<SmallFile> readSmallFile(int directory, const std::string& name,
                                                     std::size_t longest, const MoveCalls& calls);

/// Makes a file of mode 0600 where nothing stands, with all of `text` on the disk, and returns its
/// facts. Throws `FileError` for `path`: `file_exists` when the name is taken; whatever is thrown,
/// nothing of it is left, as far as the system lets it be removed.
[[nodiscard]] PlaceFacts makeSmallFile(int directory, const std::string& name,
                                       const std::string& text, const std::string& path,
                                       const MoveCalls& calls);

/// Removes the file if it is still the one with these facts. Failures are not told.
void removeSmallFile(int directory, const std::string& name, const PlaceFacts& facts,
                     const MoveCalls& calls);

}  // namespace gruk
