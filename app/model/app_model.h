#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include <QCoro/QCoroTask>
#include <QObject>

#include "app/desktop/open_panel.h"
#include "app/model/lifetime.h"
#include "app/model/realm_figures.h"
#include "core/actions/grant_store.h"
#include "core/patrol/findings_presenter.h"
#include "core/patrol/snapshot_scanner.h"
#include "core/patrol/snapshot_store.h"
#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"

namespace gruk {

/// The one object that joins the core to the screens: every state that they show, and every
/// operation that they ask for. It knows no widget.
///
/// Every observable field has a getter and a `…Changed` signal, emitted at each assignment. Main
/// thread only; long work runs on the task pool and comes back through the run loop. It may be
/// destroyed at any time: work that still runs is told to stop and its result is dropped.
class AppModel : public QObject {
    Q_OBJECT

public:
    /// What the model works with. Every empty one is replaced by the live default.
    struct Collaborators {
        std::shared_ptr<GrantStore> grantStore = {};
        std::shared_ptr<SnapshotScanner> snapshotScanner = {};
        std::shared_ptr<SnapshotStore> snapshotStore = {};
        std::shared_ptr<RunLoop> runLoop = {};
        std::shared_ptr<TaskPool> taskPool = {};
        std::shared_ptr<OpenPanel> openPanel = {};
        /// Writes one line to the system's log, on the main thread.
        std::function<void(const std::string& line)> log = {};
    };

    /// All live.
    AppModel();
    explicit AppModel(Collaborators collaborators);
    ~AppModel() override;

    // The realms.
    [[nodiscard]] const std::vector<Grant>& grants() const { return grants_; }
    /// The selected realm's root, standardised, naming a directory; none when none is selected.
    [[nodiscard]] const std::optional<FileURL>& activeRootURL() const { return activeRootURL_; }
    [[nodiscard]] const std::shared_ptr<ScopedAccess>& activeAccess() const
    {
        return activeAccess_;
    }
    /// Whether the grant's own directory is at its place and can be opened for a patrol.
    [[nodiscard]] bool isConnected(const Grant& grant) const;

    // The active realm's figures.
    using Snapshot = std::shared_ptr<const ScanSnapshot>;
    [[nodiscard]] const Snapshot& latestSnapshot() const { return figures_.latestSnapshot; }
    [[nodiscard]] const Snapshot& previousSnapshot() const { return figures_.previousSnapshot; }
    [[nodiscard]] const std::vector<SnapshotDelta>& deltas() const { return *figures_.deltas; }
    [[nodiscard]] const std::vector<ReviewFinding>& findings() const { return *figures_.findings; }
    [[nodiscard]] const std::vector<HeavyItem>& heavyItems() const { return figures_.heavyItems; }
    [[nodiscard]] const RemovedBytesByPath& liveRemovedBytesByPath() const
    {
        return liveRemovedBytesByPath_;
    }
    [[nodiscard]] bool isLoadingRealmHistory() const { return isLoadingRealmHistory_; }
    [[nodiscard]] std::int64_t historyLoadGeneration() const { return historyLoadGeneration_; }
    [[nodiscard]] bool territoriesAreStale() const { return territoriesAreStale_; }

    // Derived from them; they change with `latestSnapshot`, `deltas` and `liveRemovedBytesByPath`.
    [[nodiscard]] Bytes latestTotalBytes() const { return figures_.latestTotalBytes; }
    [[nodiscard]] Bytes netChangeBytes() const { return figures_.netChangeBytes; }
    [[nodiscard]] std::vector<SnapshotDelta> topLevelChanges() const;

    // The patrol.
    [[nodiscard]] bool isPatrolling() const { return isPatrolling_; }
    /// May differ from `activeRootURL`.
    [[nodiscard]] const std::optional<FileURL>& patrollingRootURL() const
    {
        return patrollingRootURL_;
    }
    [[nodiscard]] const std::optional<PatrolProgress>& patrolProgress() const
    {
        return patrolProgress_;
    }
    [[nodiscard]] const std::shared_ptr<ScopedAccess>& patrolAccess() const
    {
        return patrolAccess_;
    }

    // What happened, and what did not.
    [[nodiscard]] const std::optional<std::string>& lastActionMessage() const
    {
        return lastActionMessage_;
    }
    [[nodiscard]] const std::optional<std::string>& errorMessage() const { return errorMessage_; }

    /// Opens a realm's page and starts loading its history. The active realm is left as it is.
    QCoro::Task<> selectRealm(FileURL url);

    /// Patrols the active realm; says so when there is no access to it.
    QCoro::Task<> patrolActiveRealm();

    /// Patrols `url` under `access`, and yields the number of findings; none when the patrol
    /// failed or was cancelled, and at once, without a word, while another one runs.
    QCoro::Task<std::optional<std::int64_t>> runPatrol(FileURL url,
                                                       std::shared_ptr<ScopedAccess> access);

    /// Asks the running patrol, if any, to stop. It says so itself when it has.
    void cancelPatrol();

    /// Lets the user choose a folder, grants it and opens it.
    QCoro::Task<> grantRealm();
    /// Grants a folder that the user has chosen already, by dropping it on a window.
    QCoro::Task<> grantRealm(FileURL url);
    /// Finds a disconnected realm again: by its bookmark, else by asking the user.
    QCoro::Task<> regrantRealm(Grant grant);
    /// Forgets a grant; what was recorded of it stays.
    void removeRealm(Grant grant);

    /// The current findings sorted and filtered, made on the pool, since many take long. Never
    /// null.
    [[nodiscard]] QCoro::Task<std::shared_ptr<const std::vector<ReviewFinding>>>
    presentFindings(FindingsSort sort, std::optional<ReviewFinding::Reason> reasonFilter);

    /// Those of `urls` where no item is any more, asked on the pool.
    [[nodiscard]] QCoro::Task<std::vector<FileURL>> missingItems(std::vector<FileURL> urls);

    /// For a coroutine that awaits one of the operations and needs the model afterwards.
    [[nodiscard]] Lifetime::Watch watch() const { return lifetime_.watch(); }

    /// Lets go of a large value on the pool, so that taking it apart does not hold up the window.
    void discard(std::shared_ptr<const void> value);

Q_SIGNALS:
    void grantsChanged();
    void activeRootURLChanged();
    void activeAccessChanged();
    void latestSnapshotChanged();
    void previousSnapshotChanged();
    void deltasChanged();
    void findingsChanged();
    void heavyItemsChanged();
    void liveRemovedBytesByPathChanged();
    void isLoadingRealmHistoryChanged();
    void historyLoadGenerationChanged();
    void territoriesAreStaleChanged();
    void isPatrollingChanged();
    void patrollingRootURLChanged();
    void patrolProgressChanged();
    void patrolAccessChanged();
    void lastActionMessageChanged();
    void errorMessageChanged();

private:
    /// The one place where a field is written.
    template <typename Field>
    void assign(Field& field, std::type_identity_t<Field> value, void (AppModel::*changed)())
    {
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }

    void loadRealmHistory(FileURL url);
    QCoro::Task<> awaitRealmHistory(FileURL url, std::int64_t generation);
    /// Puts all figures of a realm on the screens in place of the former ones.
    void showFigures(RealmFigures figures);
    void clearActiveRealm();

    [[nodiscard]] std::shared_ptr<ScopedAccess> accessForPatrol(const FileURL& url) const;
    QCoro::Task<std::optional<std::int64_t>> patrolTaskBody(FileURL url, std::stop_token stop);
    [[nodiscard]] PatrolProgressFunction progressHandler();
    void publish(const FileURL& url, RealmFigures figures);
    void finishPatrol();

    void rereadGrants();
    QCoro::Task<> addRealm(FileURL url);
    void replaceGrant(const Grant& grant, const FileURL& url);

    Lifetime lifetime_;
    std::shared_ptr<RunLoop> runLoop_;
    std::shared_ptr<TaskPool> taskPool_;
    std::shared_ptr<OpenPanel> openPanel_;
    std::function<void(const std::string&)> log_;
    std::shared_ptr<GrantStore> grantStore_;
    std::shared_ptr<SnapshotScanner> snapshotScanner_;
    std::shared_ptr<SnapshotStore> snapshotStore_;

    std::vector<Grant> grants_;
    std::optional<FileURL> activeRootURL_;
    RealmFigures figures_;
    RemovedBytesByPath liveRemovedBytesByPath_;
    bool isLoadingRealmHistory_ = false;
    std::int64_t historyLoadGeneration_ = 0;
    bool territoriesAreStale_ = true;
    bool isPatrolling_ = false;
    std::optional<FileURL> patrollingRootURL_;
    std::optional<PatrolProgress> patrolProgress_;
    std::optional<std::string> lastActionMessage_;
    std::optional<std::string> errorMessage_;
    std::shared_ptr<ScopedAccess> activeAccess_;
    std::shared_ptr<ScopedAccess> patrolAccess_;
    /// The running patrol's way to be stopped; none while none runs.
    std::optional<std::stop_source> patrolTask_;
};

/// Where the program keeps its files: "Gruk" in the desktop's folder for them, or in the temporary
/// directory when there is none.
[[nodiscard]] FileURL applicationDirectory();

}  // namespace gruk
