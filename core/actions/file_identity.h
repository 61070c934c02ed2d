#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/date.h"

namespace gruk {

/// What proves that an item is still the one that was reviewed. Size and dates of change are no
/// part of it: an item that grew is still the reviewed one; another put there under its name is
/// not. Kept in memory only: device numbers do not outlive a restart. A plain value.
struct FileIdentity {
    enum class Kind : std::uint8_t { file, directory, symbolicLink, other };

    /// The file system's number.
    std::uint64_t deviceID = 0;
    /// The item's number within that file system.
    std::uint64_t inode = 0;
    Kind kind = Kind::other;
    /// When the item was made: a number that was freed is soon given to another one. None where the
    /// file system keeps no birth time.
    std::optional<Date> created = {};

    /// A birth time that one of the two does not have tells nothing.
    friend bool operator==(const FileIdentity& a, const FileIdentity& b)
    {
        return a.deviceID == b.deviceID && a.inode == b.inode && a.kind == b.kind
               && (!a.created || !b.created || a.created == b.created);
    }
};

}  // namespace gruk
