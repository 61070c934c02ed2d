#pragma once

#include <deque>
#include <functional>
#include <utility>

#include "platform/events/task_pool.h"

namespace gruk::test {

/// A pool that runs each piece of work on the calling thread, when the test says so and in the
/// order that it chooses. One thread.
class ManualTaskPool final : public TaskPool {
public:
    void start(std::function<void()> work) override { waiting_.push_back(std::move(work)); }

    [[nodiscard]] std::size_t count() const { return waiting_.size(); }

    /// Runs the work that was started `index` places after the oldest that waits.
    void runAt(std::size_t index)
    {
        const auto at = waiting_.begin() + static_cast<std::ptrdiff_t>(index);
        const std::function<void()> work = std::move(*at);
        waiting_.erase(at);
        work();
    }

    /// Runs the oldest; returns whether there was any.
    bool runNext()
    {
        if (waiting_.empty()) {
            return false;
        }
        runAt(0);
        return true;
    }

private:
    std::deque<std::function<void()>> waiting_;
};

}  // namespace gruk::test
