#pragma once

#include <optional>
#include <string>

#include "platform/files/move_batch.h"
#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/files/moves.h"
#include "platform/foundation/errors.h"
#include "platform/linux/long_path.h"

/// One move between two open directories.

namespace gruk {

/// A name in an open directory, and the path by which errors call it. Borrows all three.
struct Spot {
    int directory;
    const std::string& name;
    const std::string& path;
};

/// What proves that the item is the one with these facts.
[[nodiscard]] ItemIdentity identityFrom(const ItemFacts& facts);

/// The facts of the item itself. Throws `FileError` with `operation`.
[[nodiscard]] PlaceFacts factsOf(const Spot& spot, const char* operation, const MoveCalls& calls);

/// Throws `FileError`, `no_such_file_or_directory`, unless `found` is the one that is `meant`.
void requireIdentity(const PlaceFacts& found, const std::optional<ItemIdentity>& meant,
                     const std::string& path);

/// Moves the item itself from one spot to the other, which must be free, and notes both
/// directories in `records`, which makes their names durable. With `identity`, only that item:
/// another one that is found there is left, and one that was put there in the very moment of the
/// move goes back.
///
/// Throws `FileError`, and the item is then where it was; `StrayedItemError` see there.
void moveBetween(const Spot& from, const Spot& to, const std::optional<ItemIdentity>& identity,
                 const MoveCalls& calls, MoveBatch::Records& records);

}  // namespace gruk
