#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/actions/own_items.h"
#include "core/actions/protected_locations.h"
#include "core/actions/stash_records.h"
#include "core/patrol/journal_names.h"
#include "platform/files/move_calls.h"
#include "platform/foundation/date.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// How a `StashService` reaches the disk and the clock, called on the thread of its caller. A test
/// hands in its own; the last two have defaults for tests that do not care.
struct StashCalls {
    /// What stands directly in a folder, hidden items left out; may throw.
    std::function<std::vector<FileURL>(const FileURL&)> contentsOfDirectory;
    /// Whether anything stands there, also a link that leads nowhere.
    std::function<bool(const FileURL&)> fileExists;
    /// Makes one folder where nothing stands; may throw.
    std::function<void(const FileURL&)> createDirectory;
    /// Moves an item to a free place; may throw.
    std::function<void(const FileURL& from, const FileURL& to)> moveItem;
    /// Writes the journal into the folder; may throw.
    std::function<void(const StashJournalFile&, const FileURL& folder)> writeJournal;
    /// The folder's journal; none when there is none or it cannot be read.
    std::function<std::optional<StashJournalFile>(const FileURL& folder)> readJournal;
    std::function<Date()> now;
    /// A day as it stands in a Hoard's name.
    std::function<std::string(Date)> dateNamer;
    VolumeRoot volumeRoot;
    /// The names directly in a folder at which a volume is mounted, told without touching any of
    /// them; may throw. Empty means that there are none.
    std::function<std::set<std::string>(const FileURL&)> mountedIn = {};
    /// What stays where it is.
    OwnItems own = {};
};

/// Clears a folder in one move: everything visible in it goes, unsorted, into one new dated folder
/// beside it, a Hoard; and puts all of it back. Nothing is deleted, nothing overwritten. Never
/// throws; reports per item. Blocks; holds no mutable state.
class StashService {
public:
    /// The journal in each Hoard, by which an earlier Hoard is told from other folders.
    static constexpr const char* journalFileName = JournalNames::stash;

    /// Works on the user's disk.
    explicit StashService(MoveCalls calls = MoveCalls::live(), OwnFolders own = {});
    explicit StashService(StashCalls calls);

    [[nodiscard]] StashOperation stashDesktop(const FileURL& desktop, const FileURL& authorizedRoot,
                                              const RootCheck& stands = {}) const;

    /// Puts items back where they were, never over anything; undoes an organise, too. The Hoard
    /// and its journal stay. `authorizedRoot`, where the caller still knows it, only tells below
    /// which folder no link may be followed.
    [[nodiscard]] StashRestoreOperation
    restore(const std::vector<StashedItem>& items,
            const std::optional<FileURL>& authorizedRoot = std::nullopt,
            const RootCheck& stands = {}) const;

    /// How many items a stash would take now; 0 when the folder cannot be listed.
    [[nodiscard]] std::size_t stashableCount(const FileURL& desktop) const;

    /// The name that a stash would give its folder now. Reserves nothing.
    [[nodiscard]] std::string proposedHoardName(const FileURL& desktop) const;

private:
    /// The calls for one operation under that root.
    std::function<StashCalls(const std::optional<FileURL>& authorizedRoot, const RootCheck& stands)>
        callsUnder_;
};

}  // namespace gruk
