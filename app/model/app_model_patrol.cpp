#include <functional>
#include <system_error>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "app/model/model_copy.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// Throws unless the realm that was opened under `access` is still at its place. Holds no access.
std::function<void()> confirmation(const FileURL& url, const std::shared_ptr<ScopedAccess>& access)
{
    if (!access) {
        return nullptr;
    }
    return [url, stands = access->stands()] {
        if (!stands()) {
            throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), "patrol",
                            url.path());
        }
    };
}

/// Where a patrol found something else than the one before it, or could not see whether it did: the
/// realm as a whole after the first patrol, and when there is much.
std::vector<FileURL> changedPlaces(const FileURL& realm, const RealmFigures& figures)
{
    constexpr std::size_t much = 1'000;
    if (!figures.previousSnapshot || !figures.previousSnapshot->isComplete
        || figures.deltas->size() + figures.latestSnapshot->issues.size()
                   + figures.previousSnapshot->issues.size()
               > much) {
        return {realm};
    }
    std::vector<FileURL> places;
    for (const SnapshotDelta& delta : *figures.deltas) {
        places.push_back(realm.appending(delta.relativePath));
    }
    for (const auto& snapshot : {figures.previousSnapshot, figures.latestSnapshot}) {
        for (const ScanIssue& issue : snapshot->issues) {
            places.push_back(realm.appending(issue.relativePath));
        }
    }
    return places;
}

}  // namespace

QCoro::Task<> AppModel::patrolActiveRealm()
{
    if (!activeRootURL_) {
        co_return;
    }
    const FileURL url = *activeRootURL_;
    std::shared_ptr<ScopedAccess> access = accessTo(url);
    if (!access) {
        complain(std::string(ModelCopy::noAccessToPatrol));
        co_return;
    }
    complain(std::nullopt);
    tell(std::nullopt);
    if (isPatrolling_) {
        co_return;
    }
    const Lifetime::Watch self = lifetime_.watch();
    co_await runPatrol(url, std::move(access));
    if (self) {
        noteEndOfPatrol(url, Asking::asked);
    }
}

QCoro::Task<> AppModel::patrolAllRealms()
{
    if (isPatrolling_) {
        co_return;
    }
    const Lifetime::Watch self = lifetime_.watch();
    const std::vector<Grant> all = grants_;
    std::size_t patrolled = 0;
    std::size_t skipped = 0;
    for (const Grant& grant : all) {
        const FileURL url = FileURL::directory(grant.path);
        if (!accessTo(url)) {
            ++skipped;
            continue;
        }
        co_await selectRealm(url);
        if (!self) {
            co_return;
        }
        co_await patrolActiveRealm();
        if (!self) {
            co_return;
        }
        ++patrolled;
    }
    tell(ModelCopy::patrolledRealms(patrolled, skipped));
}

QCoro::Task<std::optional<std::int64_t>> AppModel::runPatrol(FileURL url,
                                                             std::shared_ptr<ScopedAccess> access)
{
    if (isPatrolling_) {
        co_return std::optional<std::int64_t>();
    }
    assign(patrolAccess_, std::move(access), &AppModel::patrolAccessChanged);
    assign(isPatrolling_, true, &AppModel::isPatrollingChanged);
    assign(patrollingRootURL_, url, &AppModel::patrollingRootURLChanged);
    assign(patrolProgress_, std::nullopt, &AppModel::patrolProgressChanged);

    const Lifetime::Watch self = lifetime_.watch();
    patrolTask_.emplace();
    const std::stop_token stop = patrolTask_->get_token();
    const std::optional<std::int64_t> findings = co_await patrolTaskBody(url, stop);
    if (self) {
        patrolTask_.reset();
    }
    co_return findings;
}

QCoro::Task<std::optional<std::int64_t>> AppModel::patrolTaskBody(FileURL url, std::stop_token stop)
{
    const Lifetime::Watch self = lifetime_.watch();
    std::function<RealmFigures()> patrol =
        [url, stop, progress = progressHandler(), scanner = with_.snapshotScanner,
         store = with_.snapshotStore, confirm = confirmation(url, patrolAccess_),
         unreviewed = with_.unreviewedPlaces] {
            return RealmFigures(PatrolCoordinator::patrol(url, *scanner, *store, progress, stop,
                                                          confirm, *unreviewed));
        };
    std::optional<std::int64_t> findings;
    try {
        RealmFigures figures =
            co_await inBackground(with_.taskPool, with_.runLoop, std::move(patrol));
        if (!self) {
            co_return findings;
        }
        std::optional<OrganisePlan> filing = co_await planRuleFiling(url);
        if (!self) {
            co_return std::optional<std::int64_t>();
        }
        findings = static_cast<std::int64_t>(figures.findings->size());
        publish(url, std::move(figures), std::move(filing));
        lastPatrolEnd_ = PatrolEnd::success;
    } catch (const CancelledError&) {
        if (!self) {
            co_return findings;
        }
        tell(std::string(ModelCopy::patrolStopped));
        lastPatrolEnd_ = PatrolEnd::stop;
    } catch (const SnapshotStoreError& error) {
        if (!self) {
            co_return findings;
        }
        const bool isDamaged = error.which() == SnapshotStoreError::Case::corruptStore;
        const FileURL folder = with_.snapshotStore->fileURL().deletingLastPathComponent();
        complain(ModelCopy::patrolFailed(isDamaged ? ModelCopy::damagedMemory(folder.path())
                                                   : describe(error)),
                 isDamaged ? ErrorRemedy::damagedMemory : ErrorRemedy::none);
        lastPatrolEnd_ = PatrolEnd::failure;
    } catch (const std::exception& error) {
        if (!self) {
            co_return findings;
        }
        complain(ModelCopy::patrolFailed(describe(error)));
        lastPatrolEnd_ = PatrolEnd::failure;
    }
    finishPatrol();
    co_return findings;
}

PatrolProgressFunction AppModel::progressHandler()
{
    return [this, self = lifetime_.watch(), loop = with_.runLoop](std::int64_t pathsScanned,
                                                                  std::string_view relativePath) {
        loop->post(
            [this, self, progress = PatrolProgress{pathsScanned, std::string(relativePath)}] {
                if (self) {
                    assign(patrolProgress_, progress, &AppModel::patrolProgressChanged);
                }
            });
    };
}

QCoro::Task<std::optional<OrganisePlan>> AppModel::planRuleFiling(FileURL url)
{
    const std::vector<RealmRule> rules = RealmRules::afterPatrol(realmRules(url));
    if (activeRootURL_ != url || !patrolAccess_ || rules.empty()) {
        co_return std::optional<OrganisePlan>();
    }
    // Looking at each loose file is the disk's work, so it is done where the patrol was.
    std::function<std::optional<OrganisePlan>()> plan =
        [url, rules, service = with_.organiseService, root = patrolAccess_->url(),
         stands = patrolAccess_->stands()] {
            const OrganisePlan all =
                service->planOrganise(url, root, RealmRules::folderOverrides(rules), stands);
            return RealmRules::filingPlan(all, rules);
        };
    std::optional<OrganisePlan> filing =
        co_await inBackground(with_.taskPool, with_.runLoop, std::move(plan));
    co_return filing;
}

void AppModel::publish(const FileURL& url, RealmFigures figures, std::optional<OrganisePlan> filing)
{
    const std::string name(url.lastPathComponent());
    const std::string message = figures.previousSnapshot
                                    ? ModelCopy::patrolComplete(name, figures.deltas->size())
                                    : ModelCopy::firstPatrolComplete(name);
    if (mappedRoots_) {
        mappedRoots_->insert(url.path());
    }
    // What is new and takes no room changes no size, but it is to be listed.
    const std::optional<FileURL>& browsed = session().currentDirectory();
    session().renew(changedPlaces(url, figures),
                    browsed && pathIsAtOrBelow(browsed->path(), url.path())
                        ? ScanSession::Look::always
                        : ScanSession::Look::ifReached);
    if (activeRootURL_ == url) {
        // A history that was asked for before this patrol ended is older than its result.
        assign(historyLoadGeneration_, historyLoadGeneration_ + 1,
               &AppModel::historyLoadGenerationChanged);
        showFigures(std::move(figures));
        assign(liveRemovedBytesByPath_, {}, &AppModel::liveRemovedBytesByPathChanged);
        assign(isLoadingRealmHistory_, false, &AppModel::isLoadingRealmHistoryChanged);
        // A rule may have been removed while the plan was made.
        assign(pendingRuleFilingPlan_, underPresentRules(std::move(filing)),
               &AppModel::pendingRuleFilingPlanChanged);
    } else {
        discard(std::make_shared<RealmFigures>(std::move(figures)));
    }
    tell(message);
    markTerritoriesStale();
}

void AppModel::finishPatrol()
{
    assign(isPatrolling_, false, &AppModel::isPatrollingChanged);
    assign(patrollingRootURL_, std::nullopt, &AppModel::patrollingRootURLChanged);
    assign(patrolAccess_, nullptr, &AppModel::patrolAccessChanged);
    assign(patrolProgress_, std::nullopt, &AppModel::patrolProgressChanged);
}

void AppModel::cancelPatrol()
{
    if (patrolTask_) {
        patrolTask_->request_stop();
    }
}

}  // namespace gruk
