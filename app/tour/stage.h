#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>

#include <QCoro/QCoroTask>
#include <QSize>

#include "app/model/app_model.h"
#include "app/screens/main_window.h"
#include "app/theme/measures.h"
#include "app/tour/gated_task_pool.h"

namespace gruk::tour {

/// How large a window is, unless a picture is about its size.
inline constexpr QSize usualSize{Measure::defaultWindowWidth, Measure::defaultWindowHeight};
inline constexpr QSize smallSize{Measure::smallestWindowWidth, Measure::smallestWindowHeight};

/// A gate at which a walk can be made to wait, once it has reported a folder.
class WalkGate {
public:
    /// A scanner whose walks wait at the gate.
    [[nodiscard]] static std::shared_ptr<SnapshotScanner>
    scannerBehind(std::shared_ptr<WalkGate> gate);

    void open();

private:
    void pass();

    std::mutex lock_;
    std::condition_variable opened_;
    bool isOpen_ = false;
    int passed_ = 0;
};

/// One run of the application: its model and its window, shown.
class Stage {
public:
    /// `loop` must live as long as anything runs on `threads`. The live scanner without one given.
    Stage(Theme& theme, std::shared_ptr<RunLoop> loop, std::shared_ptr<TaskPool> threads,
          std::shared_ptr<SnapshotScanner> scanner = nullptr);

    [[nodiscard]] AppModel& model() { return *model_; }
    [[nodiscard]] SweepView& window() { return *window_; }
    [[nodiscard]] GatedTaskPool& pool() { return *pool_; }

    /// Ends when nothing is left to do and the window shows what the model holds.
    [[nodiscard]] QCoro::Task<> settle();
    /// The same while the pool is held or a walk waits: only the window comes to rest.
    [[nodiscard]] QCoro::Task<> repaint();

private:
    std::shared_ptr<RunLoop> loop_;
    std::shared_ptr<GatedTaskPool> pool_;
    std::unique_ptr<AppModel> model_;
    std::unique_ptr<SweepView> window_;
};

}  // namespace gruk::tour
