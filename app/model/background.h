#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <QCoro/QCoroTask>

#include "platform/events/run_loop.h"
#include "platform/events/task_pool.h"
#include "platform/foundation/errors.h"

namespace gruk {

/// Resumes one waiting coroutine exactly once: when told to, or when the last holder lets go of it
/// untold, so that no coroutine waits for ever for work that nobody will do.
class Resumption {
public:
    explicit Resumption(std::coroutine_handle<> waiting) : waiting_(waiting) {}
    ~Resumption() { resume(); }
    Resumption(const Resumption&) = delete;
    Resumption& operator=(const Resumption&) = delete;

    void resume()
    {
        if (auto waiting = std::exchange(waiting_, nullptr)) {
            waiting.resume();
        }
    }

private:
    std::coroutine_handle<> waiting_;
};

/// What a coroutine on the main thread awaits to have `work` done on a pool:
///
///     const auto history = co_await inBackground<RealmHistory>(pool, loop, [=] { ... });
///
/// The coroutine goes on through the run loop, after everything posted before the work ended, with
/// the result or the exception of the work; with `CancelledError` when pool or loop ended first.
template <typename Result>
class BackgroundWork {
public:
    BackgroundWork(std::shared_ptr<TaskPool> pool, std::shared_ptr<RunLoop> loop,
                   std::function<Result()> work)
        : pool_(std::move(pool)), loop_(std::move(loop)), work_(std::move(work))
    {
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> waiting)
    {
        // Moved out, since this lies in the coroutine that the pool's work will resume: whoever
        // waits must not keep alive what it waits for.
        const std::shared_ptr<TaskPool> pool = std::move(pool_);
        auto resumption = std::make_shared<Resumption>(waiting);
        pool->start([outcome = outcome_, loop = std::move(loop_), work = std::move(work_),
                     resumption = std::move(resumption)]() mutable {
            try {
                outcome->result.emplace(work());
            } catch (...) {
                outcome->error = std::current_exception();
            }
            work = nullptr;
            outcome = nullptr;
            loop->post([told = std::move(resumption)] { told->resume(); });
        });
    }

    Result await_resume()
    {
        if (outcome_->error) {
            // Moved out first, so that the last reference ends on this thread with the frame.
            std::rethrow_exception(std::exchange(outcome_->error, nullptr));
        }
        if (!outcome_->result) {
            throw CancelledError();
        }
        return std::move(*outcome_->result);
    }

private:
    struct Outcome {
        std::optional<Result> result;
        std::exception_ptr error;
    };

    std::shared_ptr<TaskPool> pool_;
    std::shared_ptr<RunLoop> loop_;
    std::function<Result()> work_;
    std::shared_ptr<Outcome> outcome_ = std::make_shared<Outcome>();
};

template <typename Result>
[[nodiscard]] BackgroundWork<Result> inBackground(std::shared_ptr<TaskPool> pool,
                                                  std::shared_ptr<RunLoop> loop,
                                                  std::function<Result()> work)
{
    return {std::move(pool), std::move(loop), std::move(work)};
}

}  // namespace gruk
