#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/actions/file_identity.h"
#include "core/actions/own_items.h"
#include "core/actions/protected_locations.h"
#include "core/actions/trash_records.h"
#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// How a `TrashService` reaches the disk, called on the thread of its caller. A test hands in its
/// own; the last ones have defaults for tests that do not care.
struct TrashCalls {
    /// Moves an item to the Trash and returns where it is now; may throw.
    std::function<FileURL(const FileURL&)> trashItem;
    /// Whether something can be reached there, following links.
    std::function<bool(const FileURL&)> fileExists;
    /// Moves an item back; may throw.
    std::function<void(const FileURL& from, const FileURL& to)> moveItem;
    /// What stands at a place, not following a last link; none when that cannot be read.
    std::function<std::optional<FileIdentity>(const FileURL&)> identityReader;
    VolumeRoot volumeRoot;
    /// Whether an item is in the Trash; empty means that `fileExists` tells. Most links lead
    /// nowhere from inside the Trash, and are there all the same.
    std::function<bool(const FileURL&)> standsInTrash = {};
    /// Told, before the first of several moves, of the items that may go as things stand, a limited
    /// number at a time; each is looked at again at its move. Empty means that nobody wants to
    /// know.
    std::function<void(const std::vector<FileURL>&)> prepare = {};
    /// Where an item would lie in a Trash that the desktop's tools pass over; none where they show
    /// it. Empty means that they show every one.
    std::function<std::optional<FileURL>(const FileURL&)> hiddenTrash = {};
    /// What stays where it is.
    OwnItems own = {};
};

/// The only place that sends anything to the Trash. Checks each item again at the moment of the
/// move, reports per item, and puts trashed items back. Nothing is ever deleted, and a batch never
/// stops at a refusal. Never throws. Blocks; holds no mutable state, so it may be shared.
class TrashService {
public:
    /// Works on the user's disk and the desktop's Trash. There the interval between the check and
    /// the move is closed, too: an item that is swapped in between is put back, and a link swapped
    /// into the way below the authorised root is not followed.
    explicit TrashService(MoveCalls calls = MoveCalls::live(), OwnFolders own = {});
    explicit TrashService(TrashCalls calls);

    /// Moves what was confirmed, in order. An item that is listed twice counts once.
    [[nodiscard]] TrashOperation moveToTrash(const std::vector<TrashRequest>& requests,
                                             const FileURL& authorizedRoot,
                                             const RootCheck& stands = {}) const;

    /// Puts items back where they were, never over anything. They are known from the record of a
    /// move, so neither root nor identity is checked. `authorizedRoot`, where the caller still
    /// knows it, only tells below which folder no link may be followed.
    [[nodiscard]] RestoreOperation
    restore(const std::vector<TrashedItem>& items,
            const std::optional<FileURL>& authorizedRoot = std::nullopt) const;

    /// The folder in which the item at `url` would lie in a Trash that the desktop's tools pass
    /// over; none where they show it. Looks only; for the moment at which the user is asked.
    [[nodiscard]] std::optional<FileURL> hiddenTrash(const FileURL& url) const;

    /// What stands at `url` now; for the moment at which the user is asked.
    [[nodiscard]] static std::optional<FileIdentity> currentIdentity(const FileURL& url);

private:
    /// The calls for one operation under that root.
    std::function<TrashCalls(const std::optional<FileURL>& authorizedRoot, const RootCheck& stands)>
        callsUnder_;
};

}  // namespace gruk
