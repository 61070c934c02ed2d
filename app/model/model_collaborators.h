#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/desktop/open_panel.h"
#include "core/actions/grant_store.h"
#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"
#include "core/browse/scan_session.h"
#include "core/patrol/snapshot_scanner.h"
#include "core/patrol/snapshot_store.h"
#include "core/patrol/unreviewed_places.h"
#include "core/realm/realm_identity_store.h"
#include "platform/events/file_event_stream.h"
#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"
#include "platform/files/own_folders.h"
#include "platform/foundation/file_url.h"
#include "platform/settings/user_defaults.h"

namespace gruk {

/// How the model asks whether the program starts with the session, and says whether it should.
/// The last two may throw.
struct LoginItemCalls {
    std::function<bool()> isEnabled;
    std::function<void()> enable;
    std::function<void()> disable;

    static LoginItemCalls live();
};

/// What an `AppModel` works with. Every empty one is replaced by the live default.
struct ModelCollaborators {
    std::shared_ptr<GrantStore> grantStore = {};
    std::shared_ptr<ScanSession> session = {};
    std::shared_ptr<SnapshotScanner> snapshotScanner = {};
    std::shared_ptr<SnapshotStore> snapshotStore = {};
    std::shared_ptr<TrashService> trashService = {};
    std::shared_ptr<StashService> stashService = {};
    std::shared_ptr<OrganiseService> organiseService = {};
    std::shared_ptr<RealmIdentityStore> realmIdentityStore = {};
    std::shared_ptr<UserDefaults> preferences = {};

    std::shared_ptr<RunLoop> runLoop = {};
    std::shared_ptr<TaskPool> taskPool = {};
    std::shared_ptr<OpenPanel> openPanel = {};
    LoginItemCalls loginItem = {};
    /// Hears of changes in a realm that is guarded, but for the program's own.
    FileEventStreamFactory eventStreams = {};
    /// Where the program keeps its own files, which are no part of any realm.
    std::optional<OwnFolders> ownFolders = {};
    /// What of a realm no review speaks of: these, and every Trash.
    std::shared_ptr<const UnreviewedPlaces> unreviewedPlaces = {};
    /// How long a guarded realm must be quiet before it is patrolled, in seconds.
    double quietPeriod = 90;
    /// Where the Desktop is; asked each time, since its place is a setting of the desktop.
    std::function<FileURL()> desktopDirectory = {};
    /// Shows items in the desktop's file manager; main thread, returns at once. Later calls
    /// `onFailure`, on the main thread too, when nothing could show them.
    std::function<void(const std::vector<FileURL>& items, std::function<void()> onFailure)> reveal =
        {};
    /// Writes one line to the system's log, on the main thread.
    std::function<void(const std::string& line)> log = {};

    /// The same with nothing empty.
    [[nodiscard]] ModelCollaborators completed() &&;
};

/// Where the program keeps its files: "Gruk" in the desktop's folder for them, or in the temporary
/// directory when there is none.
[[nodiscard]] FileURL applicationDirectory();

}  // namespace gruk
