#pragma once

#include <optional>
#include <string>

#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"
#include "platform/linux/descriptor.h"

/// Which Trash an item goes to.
///
/// Source: the Trash specification 1.0 of the free desktops.

namespace gruk {

/// An open Trash, that is there and usable.
struct TrashFolder {
    /// The folder that holds the other two.
    Descriptor base;
    Descriptor files;
    Descriptor info;
    std::string path;
    /// The top of the volume, from which info files count their paths; none for the Trash at home,
    /// where they are absolute.
    std::optional<std::string> volume;
};

/// The Trash for what is in the open directory `parent`, whose facts are `facts`: the one at home
/// when a move can reach it, else the one of the volume. Makes what is missing of it. Throws
/// `FileError` for the item at `path`: `cross_device_link` with the reason when the volume has no
/// Trash and none can be made.
[[nodiscard]] TrashFolder openTrashFor(int parent, const PlaceFacts& facts, const std::string& path,
                                       const MoveCalls& calls);

/// A Trash of a volume, that need not be there yet.
struct VolumeTrash {
    /// The folder that holds its parts.
    FileURL place;
    /// The top of the volume.
    std::string volume;
};

/// The Trash that `openTrashFor` would open, without making anything; none where that is the one
/// at home. Throws `FileError`.
[[nodiscard]] std::optional<VolumeTrash> volumeTrashFor(int parent, const PlaceFacts& facts,
                                                        const MoveCalls& calls);

}  // namespace gruk
