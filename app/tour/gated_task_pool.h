#pragma once

#include <deque>
#include <memory>
#include <mutex>

#include <QCoro/QCoroTask>

#include "app/model/background.h"
#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"

namespace gruk::tour {

/// A task pool that can be held, so that what waits for it can be looked at, and that tells when
/// nothing is left to do.
class GatedTaskPool final : public TaskPool, public std::enable_shared_from_this<GatedTaskPool> {
public:
    GatedTaskPool(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop);

    void start(std::function<void()> work) override;

    /// Keeps what is started from now on from running, until released.
    void hold();
    void release();

    /// Ends once everything started has ended, and what it posted to the main thread has run.
    /// Main thread; not while held.
    [[nodiscard]] QCoro::Task<> idle();

private:
    void forward(std::function<void()> work);
    [[nodiscard]] bool isIdle() const;

    std::shared_ptr<TaskPool> pool_;
    std::shared_ptr<RunLoop> loop_;
    /// Guards the rest.
    mutable std::mutex lock_;
    bool isHeld_ = false;
    int running_ = 0;
    std::deque<std::function<void()>> held_;
    std::shared_ptr<Resumption> waiting_;
};

}  // namespace gruk::tour
