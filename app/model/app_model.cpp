#include "app/model/app_model.h"

#include <utility>

#include <QtGlobal>

#include "app/desktop/file_dialog_open_panel.h"
#include "app/desktop/qt_run_loop.h"
#include "app/desktop/qt_task_pool.h"
#include "app/model/background.h"
#include "platform/files/known_folders.h"
#include "platform/files/metadata.h"

namespace gruk {

namespace {

/// `given`, or what `makeDefault` makes when there is none.
template <typename T, typename Default>
std::shared_ptr<T> orDefault(std::shared_ptr<T> given, Default makeDefault)
{
    return given ? std::move(given) : makeDefault();
}

std::vector<FileURL> missingAmong(const std::vector<FileURL>& urls)
{
    std::vector<FileURL> missing;
    for (const FileURL& url : urls) {
        try {
            static_cast<void>(itemFacts(url));
        } catch (const std::exception& error) {
            if (meaning(error) == ErrorMeaning::noSuchItem) {
                missing.push_back(url);
            }
        }
    }
    return missing;
}

}  // namespace

FileURL applicationDirectory()
{
    const FileURL support = applicationSupportDirectory().value_or(temporaryDirectory());
    return support.appending("Gruk", FileURL::Names::directory);
}

AppModel::AppModel() : AppModel(Collaborators()) {}

AppModel::AppModel(Collaborators collaborators)
    : runLoop_(
        orDefault(std::move(collaborators.runLoop), [] { return std::make_shared<QtRunLoop>(); })),
      taskPool_(orDefault(std::move(collaborators.taskPool),
                          [] { return std::make_shared<QtTaskPool>(); })),
      openPanel_(orDefault(std::move(collaborators.openPanel),
                           [] { return std::make_shared<FileDialogOpenPanel>(); })),
      log_(std::move(collaborators.log)),
      grantStore_(orDefault(std::move(collaborators.grantStore),
                            [] {
                                return std::make_shared<GrantStore>(
                                    applicationDirectory().appending("grants.json"));
                            })),
      snapshotScanner_(orDefault(std::move(collaborators.snapshotScanner),
                                 [] { return std::make_shared<SnapshotScanner>(); })),
      snapshotStore_(orDefault(std::move(collaborators.snapshotStore),
                               [] {
                                   return std::make_shared<SnapshotStore>(
                                       applicationDirectory().appending("snapshots.json"));
                               })),
      grants_(grantStore_->grants())
{
    if (!log_) {
        log_ = [](const std::string& line) { qWarning("%s", line.c_str()); };
    }
}

AppModel::~AppModel()
{
    lifetime_.end();
    cancelPatrol();
}

bool AppModel::isConnected(const Grant& grant) const
{
    return accessForPatrol(FileURL::directory(grant.path)) != nullptr;
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
    assign(activeAccess_, grantStore_->startAccess(root), &AppModel::activeAccessChanged);
    assign(activeRootURL_, root, &AppModel::activeRootURLChanged);
    assign(lastActionMessage_, std::nullopt, &AppModel::lastActionMessageChanged);
    assign(errorMessage_, std::nullopt, &AppModel::errorMessageChanged);
    loadRealmHistory(root);
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
    std::function<RealmFigures()> load = [url, store = snapshotStore_, loop = runLoop_] {
        return RealmFigures(RealmHistoryLoader::load(url, *store, loop->now()));
    };
    RealmFigures figures = co_await inBackground(taskPool_, runLoop_, std::move(load));

    if (!self) {
        co_return;
    }
    if (historyLoadGeneration_ != generation) {
        // A newer load owns the figures and the mark.
        discard(std::make_shared<RealmFigures>(std::move(figures)));
        co_return;
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
}

QCoro::Task<std::shared_ptr<const std::vector<ReviewFinding>>>
AppModel::presentFindings(FindingsSort sort, std::optional<ReviewFinding::Reason> reasonFilter)
{
    using Findings = std::shared_ptr<const std::vector<ReviewFinding>>;
    std::function<Findings()> present = [findings = figures_.findings, sort, reasonFilter] {
        return std::make_shared<const std::vector<ReviewFinding>>(
            FindingsPresenter::present(*findings, sort, reasonFilter));
    };
    Findings presented = co_await inBackground(taskPool_, runLoop_, std::move(present));
    co_return presented;
}

QCoro::Task<std::vector<FileURL>> AppModel::missingItems(std::vector<FileURL> urls)
{
    std::function<std::vector<FileURL>()> look = [urls = std::move(urls)] {
        return missingAmong(urls);
    };
    std::vector<FileURL> missing = co_await inBackground(taskPool_, runLoop_, std::move(look));
    co_return missing;
}

void AppModel::discard(std::shared_ptr<const void> value)
{
    if (value) {
        taskPool_->start([held = std::move(value)]() mutable { held.reset(); });
    }
}

}  // namespace gruk
