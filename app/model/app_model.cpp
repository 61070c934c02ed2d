#include "app/model/app_model.h"

#include <system_error>
#include <utility>

#include "app/model/background.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "core/patrol/metadata_reader.h"
#include "core/patrol/realm_history.h"
#include "platform/files/metadata.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

std::vector<FileURL> missingAmong(const std::vector<FileURL>& urls)
{
    std::vector<FileURL> missing;
    for (const FileURL& url : urls) {
        try {
            static_cast<void>(itemFacts(url));
        } catch (const FileError& error) {
            // Below what was a folder and is a file by now, there is nothing either.
            if (error.code() == std::errc::no_such_file_or_directory
                || error.code() == std::errc::not_a_directory) {
                missing.push_back(url);
            }
        }
    }
    return missing;
}

EmptyReason reasonOfEmptiness(const FileURL& folder)
{
    try {
        static_cast<void>(MetadataReader::entries(folder));
        return EmptyReason::isEmpty;
    } catch (const std::exception& error) {
        switch (meaning(error)) {
        case ErrorMeaning::accessRefused:
            return EmptyReason::isRefused;
        case ErrorMeaning::noSuchItem:
            return EmptyReason::isGone;
        case ErrorMeaning::other:
            break;
        }
        return EmptyReason::isUnreadable;
    }
}

/// The roots of all realms that were ever patrolled, granted or not.
std::set<std::string> patrolledRoots(const SnapshotStore& store)
{
    std::set<std::string> roots;
    try {
        for (const auto& [root, captured] : store.lastCaptures()) {
            roots.insert(root);
        }
    } catch (const std::exception&) {
        // Of a store that cannot be read no realm has a history.
        roots.clear();
    }
    return roots;
}

/// One summary a grant, all as of `now`. `cadences` are those of `grants`, in their order.
std::vector<RealmSummary> summaries(const std::vector<Grant>& grants,
                                    const std::vector<PatrolCadence>& cadences,
                                    const SnapshotStore& store, Date now,
                                    const UnreviewedPlaces& unreviewed)
{
    std::vector<RealmSummary> result;
    for (std::size_t i = 0; i < grants.size(); ++i) {
        const FileURL root = FileURL::directory(grants[i].path).standardized();
        const RealmHistory history = RealmHistoryLoader::load(root, store, now, unreviewed);
        result.push_back(RealmSummaryBuilder::summary(grants[i], history, cadences[i], now));
    }
    return result;
}

}  // namespace

AppModel::AppModel() : AppModel(Collaborators()) {}

AppModel::AppModel(Collaborators collaborators)
    : with_(std::move(collaborators).completed()), grants_(with_.grantStore->grants()),
      reviewOnlyMode_(with_.preferences->boolean(SettingKeys::reviewOnlyMode).value_or(true)),
      launchAtLogin_(with_.loginItem.isEnabled())
{
    startTimer();
    finishRenamings();
}

AppModel::~AppModel()
{
    lifetime_.end();
    cancelPatrol();
}

bool AppModel::isConnected(const Grant& grant) const
{
    return accessTo(FileURL::directory(grant.path)) != nullptr;
}

std::shared_ptr<ScopedAccess> AppModel::accessTo(const FileURL& url) const
{
    std::shared_ptr<ScopedAccess> access = with_.grantStore->startAccess(url);
    // What stands at the place asked for is the granted directory only while that is where the
    // access leads; a mount point without its disk, or a new folder under an old name, is not it.
    if (access
        && !pathIsAtOrBelow(url.standardized().path(), access->url().standardized().path())) {
        return nullptr;
    }
    return access;
}

void AppModel::tell(std::optional<std::string> message)
{
    assign(lastActionMessage_, std::move(message), &AppModel::lastActionMessageChanged);
}

void AppModel::complain(std::optional<std::string> message, ErrorRemedy remedy)
{
    errorRemedy_ = remedy;
    assign(errorMessage_, std::move(message), &AppModel::errorMessageChanged);
}

bool AppModel::isActiveRealmMapped() const
{
    if (figures_.latestSnapshot) {
        return true;
    }
    return activeRootURL_ && isLoadingRealmHistory_
           && (!mappedRoots_ || mappedRoots_->contains(activeRootURL_->path()));
}

RealmIdentity AppModel::activeRealmIdentity() const
{
    return with_.realmIdentityStore->identity(activeRootURL_ ? activeRootURL_->path() : "");
}

std::vector<SnapshotDelta> AppModel::topLevelChanges() const
{
    return gruk::topLevelChanges(figures_.topLevelDeltas, liveRemovedBytesByPath_);
}

QCoro::Task<> AppModel::selectRealm(FileURL url)
{
    const FileURL root = FileURL::directory(url.standardized().path());
    if (activeRootURL_ == root) {
        co_return;
    }
    assign(activeAccess_, with_.grantStore->startAccess(root), &AppModel::activeAccessChanged);
    assign(activeRootURL_, root, &AppModel::activeRootURLChanged);
    tell(std::nullopt);
    complain(std::nullopt);
    assign(pendingRuleFilingPlan_, std::nullopt, &AppModel::pendingRuleFilingPlanChanged);
    loadRealmHistory(root);
    // Sizes measured for the realm before may be old by the time the user comes back to it.
    session().reset();
    session().open(root);
}

void AppModel::loadRealmHistory(FileURL url)
{
    assign(historyLoadGeneration_, historyLoadGeneration_ + 1,
           &AppModel::historyLoadGenerationChanged);
    assign(isLoadingRealmHistory_, true, &AppModel::isLoadingRealmHistoryChanged);
    showFigures(RealmFigures());
    assign(liveRemovedBytesByPath_, {}, &AppModel::liveRemovedBytesByPathChanged);
    awaitRealmHistory(std::move(url), historyLoadGeneration_);
}

QCoro::Task<> AppModel::awaitRealmHistory(FileURL url, std::int64_t generation)
{
    const Lifetime::Watch self = lifetime_.watch();
    std::function<RealmFigures()> load = [url, store = with_.snapshotStore, loop = with_.runLoop,
                                          unreviewed = with_.unreviewedPlaces] {
        return RealmFigures(RealmHistoryLoader::load(url, *store, loop->now(), *unreviewed));
    };
    RealmFigures figures = co_await inBackground(with_.taskPool, with_.runLoop, std::move(load));

    if (!self) {
        co_return;
    }
    if (historyLoadGeneration_ != generation) {
        // A newer load owns the figures and the mark.
        discard(std::make_shared<RealmFigures>(std::move(figures)));
        co_return;
    }
    if (mappedRoots_ && figures.latestSnapshot) {
        mappedRoots_->insert(url.path());
    } else if (mappedRoots_) {
        mappedRoots_->erase(url.path());
    }
    showFigures(std::move(figures));
    assign(isLoadingRealmHistory_, false, &AppModel::isLoadingRealmHistoryChanged);
}

void AppModel::showFigures(RealmFigures figures)
{
    auto former = std::make_shared<RealmFigures>(std::exchange(figures_, std::move(figures)));
    Q_EMIT previousSnapshotChanged();
    Q_EMIT latestSnapshotChanged();
    Q_EMIT deltasChanged();
    Q_EMIT findingsChanged();
    Q_EMIT heavyItemsChanged();
    if (former->latestSnapshot) {
        discard(std::move(former));
    }
}

void AppModel::clearActiveRealm()
{
    assign(activeRootURL_, std::nullopt, &AppModel::activeRootURLChanged);
    assign(activeAccess_, nullptr, &AppModel::activeAccessChanged);
    // A load that still runs belongs to the realm that is gone.
    assign(historyLoadGeneration_, historyLoadGeneration_ + 1,
           &AppModel::historyLoadGenerationChanged);
    assign(isLoadingRealmHistory_, false, &AppModel::isLoadingRealmHistoryChanged);
    showFigures(RealmFigures());
    session().reset();
}

QCoro::Task<> AppModel::showTerritories()
{
    clearActiveRealm();
    if (territoriesAreStale_ || territorySummaries_.empty()) {
        co_await loadTerritories();
    }
}

void AppModel::markTerritoriesStale()
{
    ++territoryMarks_;
    assign(territoriesAreStale_, true, &AppModel::territoriesAreStaleChanged);
}

QCoro::Task<> AppModel::loadTerritories()
{
    assign(territoryLoadGeneration_, territoryLoadGeneration_ + 1,
           &AppModel::territoryLoadGenerationChanged);
    assign(isLoadingTerritories_, true, &AppModel::isLoadingTerritoriesChanged);
    const std::int64_t generation = territoryLoadGeneration_;
    const std::uint64_t marks = territoryMarks_;
    const Lifetime::Watch self = lifetime_.watch();
    const std::vector<Grant> grants = grants_;
    std::vector<PatrolCadence> cadences;
    for (const Grant& grant : grants) {
        cadences.push_back(cadence(grant));
    }
    using Look = std::pair<std::vector<RealmSummary>, std::set<std::string>>;
    std::function<Look()> load = [grants = grants_, cadences, store = with_.snapshotStore,
                                  loop = with_.runLoop, unreviewed = with_.unreviewedPlaces] {
        return Look(summaries(grants, cadences, *store, loop->now(), *unreviewed),
                    patrolledRoots(*store));
    };
    Look loaded = co_await inBackground(with_.taskPool, with_.runLoop, std::move(load));
    // The flags of a superseded load belong to the newer one.
    if (!self || territoryLoadGeneration_ != generation) {
        co_return;
    }
    if (grants_ != grants) {
        // It would show a realm that is gone, or miss a new one.
        co_await loadTerritories();
        co_return;
    }
    if (mappedRoots_ && territoryMarks_ != marks) {
        // A patrol that ended meanwhile may have been missed.
        loaded.second.merge(*mappedRoots_);
    }
    mappedRoots_ = std::move(loaded.second);
    assign(territorySummaries_, std::move(loaded.first), &AppModel::territorySummariesChanged);
    assign(isLoadingTerritories_, false, &AppModel::isLoadingTerritoriesChanged);
    // What was marked meanwhile may have been read too early.
    assign(territoriesAreStale_, territoryMarks_ != marks, &AppModel::territoriesAreStaleChanged);
}

QCoro::Task<std::shared_ptr<const std::vector<ReviewFinding>>>
AppModel::presentFindings(FindingsSort sort, std::optional<ReviewFinding::Reason> reasonFilter)
{
    using Findings = std::shared_ptr<const std::vector<ReviewFinding>>;
    std::function<Findings()> present = [findings = figures_.findings, sort, reasonFilter] {
        return std::make_shared<const std::vector<ReviewFinding>>(
            FindingsPresenter::present(*findings, sort, reasonFilter));
    };
    Findings presented = co_await inBackground(with_.taskPool, with_.runLoop, std::move(present));
    co_return presented;
}

QCoro::Task<std::vector<FileURL>> AppModel::missingItems(std::vector<FileURL> urls)
{
    std::function<std::vector<FileURL>()> look = [urls = std::move(urls)] {
        return missingAmong(urls);
    };
    std::vector<FileURL> missing =
        co_await inBackground(with_.taskPool, with_.runLoop, std::move(look));
    co_return missing;
}

QCoro::Task<EmptyReason> AppModel::whyEmpty(FileURL folder)
{
    std::function<EmptyReason()> look = [folder = std::move(folder)] {
        return reasonOfEmptiness(folder);
    };
    const EmptyReason reason =
        co_await inBackground(with_.taskPool, with_.runLoop, std::move(look));
    co_return reason;
}

void AppModel::reveal(const std::vector<FileURL>& items)
{
    if (items.empty()) {
        return;
    }
    const FileURL folder = items.front().deletingLastPathComponent();
    with_.reveal(items, [this, self = lifetime_.watch(), folder] {
        if (self) {
            complain(ModelCopy::noFileManager(folder.path()));
        }
    });
}

void AppModel::discard(std::shared_ptr<const void> value)
{
    if (value) {
        with_.taskPool->start([held = std::move(value)]() mutable { held.reset(); });
    }
}

}  // namespace gruk
