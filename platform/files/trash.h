#pragma once

#include <optional>
#include <vector>

#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/foundation/file_url.h"

/// The desktop's Trash: the user's own at home, and one on each other volume. Any thread; a mount
/// whose server is gone blocks.
///
/// Source: the Trash specification 1.0 of the free desktops.

namespace gruk {

/// Moves the item to the Trash of its volume and returns where it is now. A link is moved itself.
///
/// Throws `FileError`, and the item is then where it was: `no_such_file_or_directory` when it is
/// gone or is not the one that `conditions` name, `cross_device_link` when its volume has no Trash
/// that it could be moved to, `invalid_argument` when it is in a Trash already or the Trash in it.
/// Nothing is ever copied.
[[nodiscard]] FileURL trashItem(const FileURL& url, const MoveConditions& conditions = {},
                                const MoveCalls& calls = MoveCalls::live());

/// The folder of a Trash in which the item at `url` would come to lie, if the desktop's own tools
/// do not show that Trash: they pass over volumes that they take for a part of the system. None
/// where they show it, and where it cannot be told. Looks only, and makes nothing.
[[nodiscard]] std::optional<FileURL> hiddenTrash(const FileURL& url,
                                                 const MoveCalls& calls = MoveCalls::live());

/// Makes the info files for all items that are about to go to the Trash in `conditions.batch`,
/// which must be there, and waits for the disk once for many. `trashItem` then finds them; what is
/// not used is removed when the batch ends. Tells of no failure: the move will.
void prepareToTrash(const std::vector<FileURL>& urls, const MoveConditions& conditions,
                    const MoveCalls& calls = MoveCalls::live());

/// Moves an item out of the Trash to the free place `original`, then removes the info file that
/// belongs to it, and nothing else. An item that is in no Trash is moved all the same. The way to
/// `trashed` is followed as it reads, since the Trash is where the user has it, perhaps behind a
/// link; `conditions.within` holds for `original`. Throws `FileError` as `moveItem` does, and the
/// item is then where it was. A failure to remove the info file is not told: the item is back.
void restoreTrashedItem(const FileURL& trashed, const FileURL& original,
                        const MoveConditions& conditions = {},
                        const MoveCalls& calls = MoveCalls::live());

}  // namespace gruk
