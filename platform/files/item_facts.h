#pragma once

#include <cstdint>
#include <optional>

#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/date.h"

namespace gruk {

enum class ItemType : std::uint8_t { regularFile, directory, symbolicLink, other };

/// What the system tells of one item without opening it or following a link: one metadata call.
/// A plain value.
struct ItemFacts {
    ItemType type = ItemType::other;
    /// Bytes on disk (blocks in use times 512), of a directory too.
    Bytes allocatedSize = 0;
    /// The length of the content.
    Bytes logicalSize = 0;
    std::uint64_t inode = 0;
    /// The file system's device number, major and minor packed into 32 bits; unique at one time
    /// on one machine, not across restarts.
    std::int32_t deviceID = 0;
    std::int64_t linkCount = 1;
    Date modified;
    /// The last access, as far as the mount records it.
    Date accessed;
    /// None where the file system keeps no birth time.
    std::optional<Date> created;

    friend bool operator==(const ItemFacts&, const ItemFacts&) = default;
};

}  // namespace gruk
