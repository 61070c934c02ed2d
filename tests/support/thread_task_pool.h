#pragma once

#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/events/task_pool.h"

namespace gruk::test {

/// A pool with a thread for every piece of work, whose hand-overs the thread sanitizer can see
/// (those of the toolkit's pool it cannot). Waits for all of them at its end.
class ThreadTaskPool final : public TaskPool {
public:
    ~ThreadTaskPool() override { wait(); }

    void start(std::function<void()> work) override
    {
        const std::lock_guard guard(lock_);
        threads_.emplace_back([work = std::move(work)]() mutable {
            work();
            work = nullptr;
        });
    }

    /// Returns when everything that was started has ended.
    void wait()
    {
        std::vector<std::thread> threads;
        {
            const std::lock_guard guard(lock_);
            threads.swap(threads_);
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }

private:
    /// Guards `threads_`.
    std::mutex lock_;
    std::vector<std::thread> threads_;
};

}  // namespace gruk::test
