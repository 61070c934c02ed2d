#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/foundation/date.h"

namespace gruk {

/// The main thread as an interface: post a function to it, set a timer on it, ask it the time.
/// The application implements it over its toolkit; tests use one with a clock that they set.
class RunLoop {
public:
    /// A timer runs until it is destroyed. Destroy it on the main thread; from its own function
    /// is allowed.
    class Timer {
    public:
        virtual ~Timer() = default;
    };

    virtual ~RunLoop() = default;

    /// Runs `function` on the main thread, after what was posted before. Any thread may call;
    /// never runs it before returning.
    virtual void post(std::function<void()> function) = 0;

    /// Calls `function` on the main thread once, `delay` from now. Main thread only.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                                       std::function<void()> function) = 0;

    /// Calls `function` every `interval`, first after one. Main thread only.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(std::chrono::milliseconds interval,
                                                       std::function<void()> function) = 0;

    /// The date now, as this loop tells it.
    [[nodiscard]] virtual Date now() const = 0;
};

}  // namespace gruk
