#pragma once

#include <cstddef>
#include <string>

#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/foundation/file_url.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/move_records.h"
#include "platform/linux/trash_folder.h"

namespace gruk {

/// An item that may go to a Trash, with what is open of both.
struct TrashWay {
    FileURL url;
    OpenedParent parent;
    PlaceFacts facts;
    /// Where its parent is, when no link is followed; empty where the system cannot tell.
    std::string parentPath;
    TrashFolder trash;
    /// What the info file says of where the item was. On a volume that counts from its top; the
    /// path as the user knows it, if it leads there as it reads, else the true one.
    std::string infoPath;

    [[nodiscard]] Spot spot() const { return {parent.directory.number(), parent.name, url.path()}; }
    [[nodiscard]] OpenTrash openTrash() const { return {trash.base, trash.files, trash.info}; }
};

/// What an error on the way to a Trash calls it.
inline constexpr const char* trashing = "move to Trash";

/// Opens the way from the item at `url` to its Trash, of which what is missing is made. Throws what
/// `trashItem` does when the item may not go there.
[[nodiscard]] TrashWay openTrashWay(const FileURL& url, const MoveConditions& conditions,
                                    const MoveCalls& calls);

/// How often a name that is taken is followed by another one.
inline constexpr std::size_t nameAttempts = 150;

/// The name for the item in its Trash at the `taken`-th attempt, at its longest or, at the second
/// `limit`, as file systems that encrypt names take it.
[[nodiscard]] std::string nameInTrash(const TrashWay& way, std::size_t taken, std::size_t limit);
inline constexpr std::size_t nameLimitCount = 2;

}  // namespace gruk
