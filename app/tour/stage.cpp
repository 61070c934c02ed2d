#include "app/tour/stage.h"

#include <chrono>
#include <coroutine>
#include <thread>
#include <utility>

#include <QCoreApplication>
#include <QEvent>

#include "app/model/setting_keys.h"
#include "app/screens/scan_node_model.h"
#include "core/patrol/metadata_reader.h"

namespace gruk::tour {

namespace {

using namespace std::chrono_literals;

/// The folders that a walk lists before it waits: its root, one that it reports, and one more.
constexpr int foldersBeforeTheGate = 3;
/// A walk reports a folder when this much has passed since the one before.
constexpr auto reportInterval = 110ms;
/// One turn lays out what changed, the next what that laying out changed.
constexpr int turnsToRest = 4;

/// One turn of the event loop.
class Turn {
public:
    explicit Turn(RunLoop& loop) : loop_(loop) {}
    [[nodiscard]] bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiting)
    {
        timer_ = loop_.after(0ms, [waiting] { waiting.resume(); });
    }
    void await_resume() const noexcept {}

private:
    RunLoop& loop_;
    std::shared_ptr<RunLoop::Timer> timer_;
};

}  // namespace

std::shared_ptr<SnapshotScanner> WalkGate::scannerBehind(std::shared_ptr<WalkGate> gate)
{
    return std::make_shared<SnapshotScanner>([gate = std::move(gate)](const FileURL& folder) {
        std::vector<FileEntry> entries = MetadataReader::entries(folder);
        gate->pass();
        return entries;
    });
}

void WalkGate::open()
{
    const std::lock_guard guard(lock_);
    isOpen_ = true;
    opened_.notify_all();
}

void WalkGate::pass()
{
    std::unique_lock guard(lock_);
    ++passed_;
    if (passed_ == foldersBeforeTheGate - 1) {
        opened_.wait_for(guard, reportInterval, [this] { return isOpen_; });
    } else if (passed_ >= foldersBeforeTheGate) {
        opened_.wait(guard, [this] { return isOpen_; });
    }
}

Stage::Stage(Theme& theme, std::shared_ptr<RunLoop> loop, std::shared_ptr<TaskPool> threads,
             std::shared_ptr<SnapshotScanner> scanner)
    : loop_(std::move(loop)), pool_(std::make_shared<GatedTaskPool>(std::move(threads), loop_))
{
    AppModel::Collaborators collaborators;
    collaborators.runLoop = loop_;
    collaborators.taskPool = pool_;
    collaborators.snapshotScanner = std::move(scanner);
    model_ = std::make_unique<AppModel>(std::move(collaborators));
    // The walkthrough has scenes of its own, and would lie over all others.
    model_->preferences().setBoolean(SettingKeys::hasSeenWalkthrough, true);
    window_ = std::make_unique<SweepView>(*model_, theme);
    // Whatever room the screen has.
    window_->resize(usualSize);
    window_->show();
}

QCoro::Task<> Stage::settle()
{
    for (int turn = 0; turn < turnsToRest; ++turn) {
        co_await pool_->idle();
        // Sizes that came show a little later by themselves.
        for (ScanNodeModel* rows : window_->findChildren<ScanNodeModel*>()) {
            if (rows->isBehind()) {
                rows->catchUp();
            }
        }
        co_await repaint();
    }
}

QCoro::Task<> Stage::repaint()
{
    for (int turn = 0; turn < turnsToRest; ++turn) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        Turn next(*loop_);
        co_await next;
    }
}

}  // namespace gruk::tour
