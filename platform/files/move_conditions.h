#pragma once

#include <cstdint>
#include <optional>

#include "platform/files/item_facts.h"
#include "platform/foundation/file_url.h"

namespace gruk {

class MoveBatch;

/// What proves that an item is still the same one. A plain value.
struct ItemIdentity {
    /// The file system's number, as `ItemFacts` has it.
    std::int32_t deviceID = 0;
    std::uint64_t inode = 0;
    ItemType type = ItemType::other;
    /// When the item was made: a number that was freed is soon given to another one. None where the
    /// file system keeps no birth time.
    std::optional<Date> created = {};

    /// A birth time that one of the two does not have tells nothing.
    friend bool operator==(const ItemIdentity& a, const ItemIdentity& b);
};

/// What must hold for a move, beside that its destination is free. A plain value.
struct MoveConditions {
    /// The directory that the user authorised. Links on the way to it are followed; below it every
    /// step must be a directory itself, so that a link put there leads nothing in or out. A path
    /// that is not at or below it, and every path when there is none, is followed as it reads.
    std::optional<FileURL> within;
    /// The item that is meant. Another one at its place is not moved; one that is put there in the
    /// very moment of the move is put back.
    std::optional<ItemIdentity> identity;
    /// The moves that this one belongs to; none when it stands alone. Borrowed.
    MoveBatch* batch = nullptr;
};

}  // namespace gruk
