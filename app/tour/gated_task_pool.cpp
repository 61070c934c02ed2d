#include "app/tour/gated_task_pool.h"

#include <utility>

namespace gruk::tour {

GatedTaskPool::GatedTaskPool(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop)
    : pool_(std::move(pool)), loop_(std::move(loop))
{
}

void GatedTaskPool::start(std::function<void()> work)
{
    {
        const std::lock_guard guard(lock_);
        if (isHeld_) {
            held_.push_back(std::move(work));
            return;
        }
        ++running_;
    }
    forward(std::move(work));
}

void GatedTaskPool::forward(std::function<void()> work)
{
    pool_->start([self = shared_from_this(), work = std::move(work)]() mutable {
        work();
        work = nullptr;
        std::shared_ptr<Resumption> waiting;
        {
            const std::lock_guard guard(self->lock_);
            if (--self->running_ == 0) {
                waiting = std::exchange(self->waiting_, nullptr);
            }
        }
        if (waiting) {
            self->loop_->post([told = std::move(waiting)] { told->resume(); });
        }
    });
}

void GatedTaskPool::hold()
{
    const std::lock_guard guard(lock_);
    isHeld_ = true;
}

void GatedTaskPool::release()
{
    std::deque<std::function<void()>> held;
    {
        const std::lock_guard guard(lock_);
        isHeld_ = false;
        held.swap(held_);
        running_ += static_cast<int>(held.size());
    }
    for (auto& work : held) {
        forward(std::move(work));
    }
}

bool GatedTaskPool::isIdle() const
{
    const std::lock_guard guard(lock_);
    return running_ == 0;
}

QCoro::Task<> GatedTaskPool::idle()
{
    struct LastWork {
        GatedTaskPool& pool;
        [[nodiscard]] bool await_ready() const { return pool.isIdle(); }
        bool await_suspend(std::coroutine_handle<> waiting) const
        {
            const std::lock_guard guard(pool.lock_);
            if (pool.running_ == 0) {
                return false;
            }
            pool.waiting_ = std::make_shared<Resumption>(waiting);
            return true;
        }
        void await_resume() const noexcept {}
    };
    while (!isIdle()) {
        LastWork last{*this};
        co_await last;
    }
}

}  // namespace gruk::tour
