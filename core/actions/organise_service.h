#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "core/actions/organise_plan.h"
#include "core/actions/own_items.h"
#include "core/actions/protected_locations.h"
#include "core/actions/stash_records.h"
#include "core/patrol/journal_names.h"
#include "platform/files/move_calls.h"
#include "platform/foundation/date.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// How an `OrganiseService` reaches the disk and the clock, called on the thread of its caller. A
/// test hands in its own; the last has a default for tests that do not care.
struct OrganiseCalls {
    /// What stands directly in a folder, hidden items too; may throw.
    std::function<std::vector<FileURL>(const FileURL&)> contentsOfDirectory;
    /// Whether anything stands there, also a link that leads nowhere.
    std::function<bool(const FileURL&)> fileExists;
    /// Makes one folder where nothing stands; may throw.
    std::function<void(const FileURL&)> createDirectory;
    /// Moves an item to a free place; may throw.
    std::function<void(const FileURL& from, const FileURL& to)> moveItem;
    /// Writes the journal into the realm; may throw.
    std::function<void(const StashJournalFile&, const FileURL& realm)> writeJournal;
    std::function<FileKind(const FileURL&)> kindOf;
    /// The length of a file's content; 0 for anything else and when it cannot be read.
    std::function<Bytes(const FileURL&)> fileSize;
    VolumeRoot volumeRoot;
    std::function<Date()> now;
    /// What stays where it is.
    OwnItems own = {};
};

/// Gathers the loose files at the top of a realm into folders by kind, in two steps: a plan, which
/// only reads, and its application, which moves. Never looks into a subfolder, never overwrites,
/// never renames, never throws. Undone by `StashService::restore`. Blocks; no mutable state.
class OrganiseService {
public:
    /// The record of the latest organise, in the realm itself. Nothing reads it back.
    static constexpr const char* journalFileName = JournalNames::organise;

    /// Works on the user's disk.
    explicit OrganiseService(MoveCalls calls = MoveCalls::live(), OwnFolders own = {});
    explicit OrganiseService(OrganiseCalls calls);

    /// What could be moved. A realm that may not be organised, or cannot be listed, has an empty
    /// plan, as a tidy one has.
    [[nodiscard]] OrganisePlan planOrganise(const FileURL& realm, const FileURL& authorizedRoot,
                                            const FolderOverrides& overrides,
                                            const RootCheck& stands = {}) const;

    /// Moves what the plan says, as it stands. A file that is gone, or whose place is taken, is a
    /// failure and the others go on.
    [[nodiscard]] StashOperation applyPlan(const OrganisePlan& plan, const FileURL& authorizedRoot,
                                           const RootCheck& stands = {}) const;

private:
    /// The calls for one operation under that root.
    std::function<OrganiseCalls(const std::optional<FileURL>& authorizedRoot,
                                const RootCheck& stands)>
        callsUnder_;
};

}  // namespace gruk
