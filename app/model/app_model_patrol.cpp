#include <utility>

#include "app/model/app_model.h"
#include "app/model/background.h"
#include "app/model/model_copy.h"

namespace gruk {

std::shared_ptr<ScopedAccess> AppModel::accessForPatrol(const FileURL& url) const
{
    std::shared_ptr<ScopedAccess> access = grantStore_->startAccess(url);
    // What stands at the place asked for is the granted directory only while that is where the
    // access leads; a mount point without its disk, or a new folder under an old name, is not it.
    if (access
        && !pathIsAtOrBelow(url.standardized().path(), access->url().standardized().path())) {
        return nullptr;
    }
    return access;
}

QCoro::Task<> AppModel::patrolActiveRealm()
{
    if (!activeRootURL_) {
        co_return;
    }
    const FileURL url = *activeRootURL_;
    std::shared_ptr<ScopedAccess> access = accessForPatrol(url);
    if (!access) {
        assign(errorMessage_, std::string(ModelCopy::noAccessToPatrol),
               &AppModel::errorMessageChanged);
        co_return;
    }
    assign(errorMessage_, std::nullopt, &AppModel::errorMessageChanged);
    assign(lastActionMessage_, std::nullopt, &AppModel::lastActionMessageChanged);
    co_await runPatrol(url, std::move(access));
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
    std::function<RealmFigures()> patrol = [url, stop, progress = progressHandler(),
                                            scanner = snapshotScanner_, store = snapshotStore_] {
        return RealmFigures(PatrolCoordinator::patrol(url, *scanner, *store, progress, stop));
    };
    std::optional<std::int64_t> findings;
    try {
        RealmFigures figures = co_await inBackground(taskPool_, runLoop_, std::move(patrol));
        if (!self) {
            co_return findings;
        }
        findings = static_cast<std::int64_t>(figures.findings->size());
        publish(url, std::move(figures));
    } catch (const CancelledError&) {
        if (!self) {
            co_return findings;
        }
        assign(lastActionMessage_, std::string(ModelCopy::patrolStopped),
               &AppModel::lastActionMessageChanged);
    } catch (const std::exception& error) {
        if (!self) {
            co_return findings;
        }
        assign(errorMessage_, ModelCopy::patrolFailed(describe(error)),
               &AppModel::errorMessageChanged);
    }
    finishPatrol();
    co_return findings;
}

PatrolProgressFunction AppModel::progressHandler()
{
    return [this, self = lifetime_.watch(), loop = runLoop_](std::int64_t pathsScanned,
                                                             std::string_view relativePath) {
        loop->post(
            [this, self, progress = PatrolProgress{pathsScanned, std::string(relativePath)}] {
                if (self) {
                    assign(patrolProgress_, progress, &AppModel::patrolProgressChanged);
                }
            });
    };
}

void AppModel::publish(const FileURL& url, RealmFigures figures)
{
    const std::string name(url.lastPathComponent());
    const std::string message = figures.previousSnapshot
                                    ? ModelCopy::patrolComplete(name, figures.deltas->size())
                                    : ModelCopy::firstPatrolComplete(name);
    if (activeRootURL_ == url) {
        // A history that was asked for before this patrol ended is older than its result.
        assign(historyLoadGeneration_, historyLoadGeneration_ + 1,
               &AppModel::historyLoadGenerationChanged);
        showFigures(std::move(figures));
        assign(liveRemovedBytesByPath_, {}, &AppModel::liveRemovedBytesByPathChanged);
        assign(isLoadingRealmHistory_, false, &AppModel::isLoadingRealmHistoryChanged);
    } else {
        discard(std::make_shared<RealmFigures>(std::move(figures)));
    }
    assign(lastActionMessage_, message, &AppModel::lastActionMessageChanged);
    assign(territoriesAreStale_, true, &AppModel::territoriesAreStaleChanged);
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
