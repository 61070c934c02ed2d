#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/events/run_loop.h"

namespace gruk::test {

/// A main thread that goes on when the test says so, with a clock that the test sets.
class ManualRunLoop final : public RunLoop {
public:
    void post(std::function<void()> function) override
    {
        const std::lock_guard guard(lock_);
        posted_.push_back(std::move(function));
    }

    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                               std::function<void()> function) override
    {
        return addTimer(delay, std::chrono::milliseconds(0), std::move(function));
    }

    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                               std::function<void()> function) override
    {
        return addTimer(interval, interval, std::move(function));
    }

    [[nodiscard]] Date now() const override { return now_; }
    void setNow(Date now) { now_ = now; }

    /// Runs what was posted, also what that posts; returns whether there was anything.
    bool run()
    {
        bool ranAny = false;
        while (std::function<void()> next = takeNext()) {
            next();
            ranAny = true;
        }
        return ranAny;
    }

    /// Moves the clock on, and runs the timers that fall due in their order, and what they post.
    void advance(std::chrono::milliseconds by)
    {
        const std::chrono::milliseconds end = elapsed_ + by;
        for (State* due = nextDue(end); due != nullptr; due = nextDue(end)) {
            moveTo(due->at);
            if (due->interval.count() > 0) {
                due->at += due->interval;
            } else {
                due->isDone = true;
            }
            const std::function<void()> function = due->function;
            function();
            run();
        }
        moveTo(end);
    }

private:
    struct State {
        std::chrono::milliseconds at;
        std::chrono::milliseconds interval;
        std::function<void()> function;
        bool isDone = false;
    };

    class ManualTimer final : public Timer {
    public:
        explicit ManualTimer(std::shared_ptr<State> state) : state_(std::move(state)) {}
        ~ManualTimer() override { state_->isDone = true; }

    private:
        std::shared_ptr<State> state_;
    };

    std::unique_ptr<Timer> addTimer(std::chrono::milliseconds delay,
                                    std::chrono::milliseconds interval,
                                    std::function<void()> function)
    {
        auto state =
            std::make_shared<State>(State{elapsed_ + delay, interval, std::move(function), false});
        timers_.push_back(state);
        return std::make_unique<ManualTimer>(std::move(state));
    }

    State* nextDue(std::chrono::milliseconds end)
    {
        std::erase_if(timers_, [](const auto& timer) { return timer->isDone; });
        const auto first =
            std::min_element(timers_.begin(), timers_.end(),
                             [](const auto& a, const auto& b) { return a->at < b->at; });
        return first != timers_.end() && (*first)->at <= end ? first->get() : nullptr;
    }

    void moveTo(std::chrono::milliseconds at)
    {
        now_.secondsSince1970 += std::chrono::duration<double>(at - elapsed_).count();
        elapsed_ = at;
    }

    std::function<void()> takeNext()
    {
        const std::lock_guard guard(lock_);
        if (posted_.empty()) {
            return nullptr;
        }
        std::function<void()> next = std::move(posted_.front());
        posted_.pop_front();
        return next;
    }

    /// Guards `posted_`.
    std::mutex lock_;
    std::deque<std::function<void()>> posted_;
    std::vector<std::shared_ptr<State>> timers_;
    std::chrono::milliseconds elapsed_{0};
    Date now_{1'790'000'000};
};

}  // namespace gruk::test
