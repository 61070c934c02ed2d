#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace gruk {

/// A clock that only goes forward, told as the time since some moment. Any thread.
using SteadyClock = std::function<std::chrono::nanoseconds()>;

[[nodiscard]] inline std::chrono::nanoseconds steadyTime()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

/// Keeps reports of progress to ten a second. One thread.
class ProgressPace {
public:
    /// `clock` is borrowed.
    explicit ProgressPace(const SteadyClock& clock) : clock_(clock) {}

    /// Whether a report is due now: the first always is, each later one when at least a tenth of
    /// a second has passed since the last that was. Whoever asks reports.
    [[nodiscard]] bool isDue()
    {
        const std::chrono::nanoseconds now = clock_();
        if (last_ && now - *last_ < std::chrono::milliseconds(100)) {
            return false;
        }
        last_ = now;
        return true;
    }

private:
    const SteadyClock& clock_;
    std::optional<std::chrono::nanoseconds> last_;
};

}  // namespace gruk
