#pragma once

#include <string>
#include <string_view>

#include "platform/linux/descriptor.h"

/// Paths beyond the length that one system call takes.

namespace gruk {

/// The directory that holds an item, open only to name what is in it, and the item's own name.
struct OpenedParent {
    Descriptor directory;
    std::string name;
};

/// Opens the parent of the item at the absolute `path` piece by piece, each piece short enough for
/// one call and relative to the one before; the same place that the kernel would reach if it took
/// the whole path. Throws `FileError` with `operation` and `path`; `filename_too_long` when a
/// single name is too long, which no piecing mends.
[[nodiscard]] OpenedParent openParent(std::string_view path, std::string_view operation);

/// The first part of `path` that one call takes, up to the end of a name; the first name alone
/// when even that is too long.
[[nodiscard]] std::string_view nextPathPiece(std::string_view path) noexcept;

}  // namespace gruk
