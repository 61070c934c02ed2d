#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <QCoro/QCoroTask>
#include <QObject>

#include "app/model/lifetime.h"
#include "app/model/model_collaborators.h"
#include "app/model/patrol_memory.h"
#include "app/model/realm_figures.h"
#include "app/model/realm_renaming.h"
#include "core/actions/realm_rules.h"
#include "core/automation/automatic_patrols.h"
#include "core/automation/patrol_cadence.h"
#include "core/automation/realm_watcher.h"
#include "core/patrol/findings_presenter.h"
#include "core/realm/realm_identity.h"
#include "core/realm/realm_summary.h"

namespace gruk {

/// Why a folder has nothing to show.
enum class EmptyReason { isEmpty, isRefused, isGone, isUnreadable };

/// What the user can do about an error, beside reading of it.
enum class ErrorRemedy { none, damagedMemory };

/// The one object that joins the core to the screens: every state that they show, and every
/// operation that they ask for. It knows no widget.
///
/// Every observable field has a getter and a `…Changed` signal, emitted at each assignment. Main
/// thread only; long work runs on the task pool and comes back through the run loop. It may be
/// destroyed at any time: work that still runs is told to stop and its result is dropped.
class AppModel : public QObject {
    Q_OBJECT

public:
    using Collaborators = ModelCollaborators;

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
    /// Where the realm's own folder is, when that is under another name than the grant has.
    [[nodiscard]] std::optional<FileURL> nowCalled(const Grant& grant) const;
    /// Whether some grant, of the folder itself or of one above it, lets `url` be opened now.
    [[nodiscard]] bool canOpen(const FileURL& url) const { return accessTo(url) != nullptr; }

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
    /// Whether the active realm was patrolled before. While its history loads, what the last look
    /// at the whole store told; true when there was none yet.
    [[nodiscard]] bool isActiveRealmMapped() const;
    /// Whether findings of the latest patrol have left the list since.
    [[nodiscard]] bool haveFindingsLeft() const { return figures_.haveFindingsLeft; }
    [[nodiscard]] std::int64_t historyLoadGeneration() const { return historyLoadGeneration_; }

    // All realms on the map.
    [[nodiscard]] const std::vector<RealmSummary>& territorySummaries() const
    {
        return territorySummaries_;
    }
    [[nodiscard]] bool isLoadingTerritories() const { return isLoadingTerritories_; }
    [[nodiscard]] std::int64_t territoryLoadGeneration() const { return territoryLoadGeneration_; }
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

    /// What the active realm's folders show; the same object for ever.
    [[nodiscard]] ScanSession& session() const { return *with_.session; }
    [[nodiscard]] const RealmIdentityStore& realmIdentityStore() const
    {
        return *with_.realmIdentityStore;
    }
    /// The active realm's shield; that of the empty path without one.
    [[nodiscard]] RealmIdentity activeRealmIdentity() const;

    // What can be undone, each one deep and only while the program runs.
    [[nodiscard]] const std::optional<TrashOperation>& lastTrashOperation() const
    {
        return lastTrashOperation_;
    }
    [[nodiscard]] const std::optional<StashOperation>& lastStashOperation() const
    {
        return lastStashOperation_;
    }
    [[nodiscard]] const std::optional<StashOperation>& lastOrganiseOperation() const
    {
        return lastOrganiseOperation_;
    }
    /// What the active realm's rules could file now.
    [[nodiscard]] const std::optional<OrganisePlan>& pendingRuleFilingPlan() const
    {
        return pendingRuleFilingPlan_;
    }

    // Settings.
    /// Whether nothing may go to the Trash.
    [[nodiscard]] bool reviewOnlyMode() const { return reviewOnlyMode_; }
    [[nodiscard]] bool launchAtLogin() const { return launchAtLogin_; }

    /// The settings, also those that only a screen knows.
    [[nodiscard]] UserDefaults& preferences() const { return *with_.preferences; }

    // What happened, and what did not.
    [[nodiscard]] const std::optional<std::string>& lastActionMessage() const
    {
        return lastActionMessage_;
    }
    [[nodiscard]] const std::optional<std::string>& errorMessage() const { return errorMessage_; }
    /// Belongs to the error.
    [[nodiscard]] ErrorRemedy errorRemedy() const { return errorRemedy_; }

    /// What is remembered of past patrols, as of the last `loadMemory`; none before.
    [[nodiscard]] const std::optional<PatrolMemory>& memory() const { return memory_; }

    // The realms and their patrols.

    /// Opens a realm's page and starts loading its history. The active realm is left as it is.
    QCoro::Task<> selectRealm(FileURL url);
    /// Leaves the active realm for the map of all of them, which is loaded if it has to be.
    QCoro::Task<> showTerritories();
    QCoro::Task<> loadTerritories();

    /// Patrols the active realm; says so when there is no access to it.
    QCoro::Task<> patrolActiveRealm();
    /// Selects and patrols every realm, one after the other.
    QCoro::Task<> patrolAllRealms();
    /// Patrols `url` under `access`, and yields the number of findings; none when the patrol
    /// failed or was cancelled, and at once, without a word, while another one runs.
    QCoro::Task<std::optional<std::int64_t>> runPatrol(FileURL url,
                                                       std::shared_ptr<ScopedAccess> access);
    /// Asks the running patrol, if any, to stop. It says so itself when it has.
    void cancelPatrol();

    /// Lets the user choose a folder, grants it and opens it.
    QCoro::Task<> grantRealm();
    /// Grants a folder that the user has chosen already, by dropping it on a window. A file is
    /// refused in words.
    QCoro::Task<> grantRealm(FileURL url);
    /// Whether a drop of it would be granted, as far as can be told before: not what is a file. A
    /// link may lead to a folder.
    [[nodiscard]] static bool couldBeRealm(const FileURL& place);
    /// The same as the first, beginning at the Desktop.
    QCoro::Task<> grantDesktop();
    /// Finds a disconnected realm again: by its bookmark, else by asking the user.
    QCoro::Task<> regrantRealm(Grant grant);
    /// Carries all that is known of a realm over to where its folder is now, whole or not at all:
    /// the grant with its cadence, the history, the shield, the rules and folder names. What
    /// `place` has of its own, as a realm or from before, gives way where there are two.
    QCoro::Task<> renameRealm(Grant grant, FileURL place);
    /// Forgets a grant; what was recorded of it stays.
    void removeRealm(Grant grant);

    // What is remembered of past patrols.
    QCoro::Task<> loadMemory();
    /// Forgets all patrols of a place that is no realm; false, and says why, when it could not.
    QCoro::Task<bool> forgetPatrols(std::string path);
    /// Shows the file of past patrols where it lies.
    void revealMemory();
    /// Renames that file, if it is damaged, so that a new one can begin.
    QCoro::Task<> setMemoryAside();

    // The Trash. `expectedIdentity` is what stood there when the user was asked.
    void setReviewOnly(bool enabled);
    void moveFindingToTrash(ReviewFinding finding, FileIdentity expectedIdentity);
    /// The folder in which the item at `url` would lie in a Trash that the desktop's tools pass
    /// over; none where they show it.
    [[nodiscard]] std::optional<FileURL> hiddenTrash(const FileURL& url) const
    {
        return with_.trashService->hiddenTrash(url);
    }
    void moveFindingsToTrash(std::vector<ReviewFinding> chosen);
    void undoLastTrash();

    // The Desktop and loose files. These move files on the main thread.
    /// The Desktop, standardised, if it may be opened.
    [[nodiscard]] std::optional<FileURL> grantedDesktopURL() const;
    /// How many items a Hoard would take now, and its name.
    [[nodiscard]] std::size_t stashableCount(const FileURL& desktop) const;
    [[nodiscard]] std::string proposedHoardName(const FileURL& desktop) const;
    void tidyDesktop();
    void undoLastStash();
    [[nodiscard]] std::optional<OrganisePlan> organisePlanForActiveRealm() const;
    [[nodiscard]] std::optional<OrganisePlan> organisePlanForDesktop() const;
    void organise(const OrganisePlan& plan);
    void undoLastOrganise();
    void filePendingRuleMatches();
    void saveOrganiseOverride(const std::string& folderName, FileKind kind, const FileURL& realm);

    // Shields, by a realm's path.
    void saveShield(const RealmIdentity& identity, std::string_view path);
    void resetShield(std::string_view path);

    // Automation and settings.
    [[nodiscard]] PatrolCadence cadence(const Grant& grant) const;
    /// Does nothing for a grant that is gone.
    void setCadence(PatrolCadence cadence, const Grant& grant);
    [[nodiscard]] std::vector<RealmRule> realmRules(const FileURL& realm) const;
    /// Does nothing when the realm has as many rules as a realm can have.
    void addRealmRule(FileKind kind, const std::string& folderName, bool applyAfterPatrol,
                      const FileURL& realm);
    void saveRealmRules(const std::vector<RealmRule>& rules, const FileURL& realm);
    void setLaunchAtLogin(bool enabled);
    /// Patrols the first realm whose patrol has come due by the clock.
    QCoro::Task<> patrolDueRealms();
    /// Patrols without being asked; a realm that cannot be opened is passed over without a word.
    QCoro::Task<> automaticPatrol(Grant grant);

    /// The current findings sorted and filtered, made on the pool, since many take long. Never
    /// null.
    [[nodiscard]] QCoro::Task<std::shared_ptr<const std::vector<ReviewFinding>>>
    presentFindings(FindingsSort sort, std::optional<ReviewFinding::Reason> reasonFilter);

    /// Those of `urls` where no item is any more, asked on the pool.
    [[nodiscard]] QCoro::Task<std::vector<FileURL>> missingItems(std::vector<FileURL> urls);

    /// Why nothing was listed of a folder, asked on the pool.
    [[nodiscard]] QCoro::Task<EmptyReason> whyEmpty(FileURL folder);

    /// Shows items where they lie, in the desktop's file manager. Returns at once; nothing happens
    /// for none.
    void reveal(const std::vector<FileURL>& items);

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
    void territorySummariesChanged();
    void isLoadingTerritoriesChanged();
    void territoryLoadGenerationChanged();
    void territoriesAreStaleChanged();
    void isPatrollingChanged();
    void patrollingRootURLChanged();
    void patrolProgressChanged();
    void patrolAccessChanged();
    void realmIdentityStoreChanged();
    void lastTrashOperationChanged();
    void lastStashOperationChanged();
    void lastOrganiseOperationChanged();
    void pendingRuleFilingPlanChanged();
    void reviewOnlyModeChanged();
    void launchAtLoginChanged();
    void lastActionMessageChanged();
    void errorMessageChanged();
    void memoryChanged();

private:
    /// The one place where a field is written.
    template <typename Field>
    void assign(Field& field, std::type_identity_t<Field> value, void (AppModel::*changed)())
    {
        field = std::move(value);
        Q_EMIT(this->*changed)();
    }

    // Two sentences that every operation ends with; none clears.
    void tell(std::optional<std::string> message);
    void complain(std::optional<std::string> message, ErrorRemedy remedy = ErrorRemedy::none);

    /// The access to `url`, if the granted directory itself is at its place.
    [[nodiscard]] std::shared_ptr<ScopedAccess> accessTo(const FileURL& url) const;

    // State: app_model.cpp.
    /// What the map shows is no longer so; nor is what a load may have read already.
    void markTerritoriesStale();
    void loadRealmHistory(FileURL url);
    QCoro::Task<> awaitRealmHistory(FileURL url, std::int64_t generation);
    /// Puts all figures of a realm on the screens in place of the former ones.
    void showFigures(RealmFigures figures);
    void clearActiveRealm();

    // Patrols: app_model_patrol.cpp.
    QCoro::Task<std::optional<std::int64_t>> patrolTaskBody(FileURL url, std::stop_token stop);
    [[nodiscard]] PatrolProgressFunction progressHandler();
    QCoro::Task<std::optional<OrganisePlan>> planRuleFiling(FileURL url);
    void publish(const FileURL& url, RealmFigures figures, std::optional<OrganisePlan> filing);
    void finishPatrol();

    // Grants: app_model_grants.cpp.
    enum class Freshness { territoriesGoStale, territoriesStay };
    void rereadGrants(Freshness freshness = Freshness::territoriesGoStale);
    QCoro::Task<> addRealm(FileURL url, Freshness freshness);
    /// Says why a folder is no realm, or not for long.
    void complainOfGrant(const FileURL& url, const std::exception& error);
    QCoro::Task<> replaceGrant(Grant grant, FileURL url);
    /// The disconnected realm whose own folder is that one, wherever it was; none without one.
    [[nodiscard]] std::optional<Grant> lostRealmAt(const FileURL& url) const;
    [[nodiscard]] bool isRealm(std::string_view path) const;

    // Renaming: app_model_renaming.cpp.
    enum class Attempt { first, resumed };
    void finishRenamings();
    [[nodiscard]] std::optional<RealmRenaming> pendingRenaming(const UUID& grant) const;
    QCoro::Task<> carryOver(RealmRenaming renaming, Attempt attempt);
    /// All but the history. What it failed by, if it did; what had gone is put back then, or
    /// `isUndone` becomes false.
    std::optional<std::string> carrySmallThings(const RealmRenaming& renaming, bool& isUndone);
    void endRenaming(const RealmRenaming& renaming, const std::string& failure, bool isUndone);
    QCoro::Task<> showRenamed(RealmRenaming renaming);

    // Actions: app_model_trash.cpp, app_model_tidy.cpp.
    void takeOut(const TrashOperation& operation, const std::vector<std::string>& findingIDs);
    using UndoSlot = std::optional<StashOperation>;
    void undoMoves(UndoSlot& slot, void (AppModel::*changed)());
    /// What the sentences on screen leave out: which item, and the system's words.
    template <typename Failures>
    void log(const Failures& failures) const;
    [[nodiscard]] FolderOverrides overrides(const FileURL& realm) const;
    [[nodiscard]] std::optional<OrganisePlan> organisePlan(const FileURL& realm) const;
    /// What of a filing the rules of its realm speak of by now.
    [[nodiscard]] std::optional<OrganisePlan>
    underPresentRules(std::optional<OrganisePlan> filing) const;
    /// Runs a change of the shields; says `failure` when it cannot be saved.
    void changeShields(const std::function<void()>& change, std::string_view failure);

    // Automation: app_model_automation.cpp.
    void startTimer();
    void guard(const Grant& grant);
    void guardSettled(const UUID& id);
    /// Ends the guards of grants that are gone, and begins those anew whose grants have changed.
    void renewGuards(const std::vector<Grant>& formerGrants);
    AutomaticPatrols& automaticPatrolsOf(const Grant& grant);
    enum class Asking { asked, unasked };
    /// Takes in how the patrol that has just ended did.
    void noteEndOfPatrol(const FileURL& url, Asking asking);
    /// Writes one setting; a failure is logged.
    void save(const std::function<void(UserDefaults&)>& write);

    Lifetime lifetime_;
    const ModelCollaborators with_;

    std::vector<Grant> grants_;
    std::optional<FileURL> activeRootURL_;
    RealmFigures figures_;
    RemovedBytesByPath liveRemovedBytesByPath_;
    bool isLoadingRealmHistory_ = false;
    std::int64_t historyLoadGeneration_ = 0;
    /// The roots of which a patrol is stored; none before the first look at the store.
    std::optional<std::set<std::string>> mappedRoots_;
    std::vector<RealmSummary> territorySummaries_;
    bool isLoadingTerritories_ = false;
    std::int64_t territoryLoadGeneration_ = 0;
    bool territoriesAreStale_ = true;
    /// How often they were marked so.
    std::uint64_t territoryMarks_ = 0;
    bool isPatrolling_ = false;
    enum class PatrolEnd { success, stop, failure };
    /// How the last patrol ended.
    PatrolEnd lastPatrolEnd_ = PatrolEnd::success;
    std::optional<FileURL> patrollingRootURL_;
    std::optional<PatrolProgress> patrolProgress_;
    std::optional<TrashOperation> lastTrashOperation_;
    /// What its items were authorised for.
    std::optional<FileURL> lastTrashRoot_;
    UndoSlot lastStashOperation_;
    UndoSlot lastOrganiseOperation_;
    std::optional<OrganisePlan> pendingRuleFilingPlan_;
    bool reviewOnlyMode_ = true;
    bool launchAtLogin_ = false;
    std::optional<std::string> lastActionMessage_;
    std::optional<std::string> errorMessage_;
    ErrorRemedy errorRemedy_ = ErrorRemedy::none;
    std::optional<PatrolMemory> memory_;
    /// What is being forgotten, each with the way to stop that.
    std::map<std::string, std::stop_source, std::less<>> forgetting_;
    /// The grants whose realms are being carried over.
    std::set<UUID> renaming_;
    std::shared_ptr<ScopedAccess> activeAccess_;
    std::shared_ptr<ScopedAccess> patrolAccess_;
    /// The running patrol's way to be stopped; none while none runs.
    std::optional<std::stop_source> patrolTask_;
    std::map<UUID, std::unique_ptr<RealmWatcher>> realmWatchers_;
    /// Of grants that have had one, or one stopped or failed.
    std::map<UUID, AutomaticPatrols> automaticPatrols_;
    std::unique_ptr<RunLoop::Timer> automationTimer_;
};

}  // namespace gruk
