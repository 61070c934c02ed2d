#include "core/automation/realm_watcher.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace gruk {

namespace {

/// From `now` to `date`, rounded up, so that a timer does not come before it; at least one
/// millisecond, and a day at most: whoever set a clock back by years is asked again tomorrow.
std::chrono::milliseconds delayTo(Date date, Date now)
{
    const double seconds =
        std::clamp(date.secondsSince1970 - now.secondsSince1970, 0.001, 86'400.0);
    return std::chrono::milliseconds(static_cast<std::int64_t>(std::ceil(seconds * 1'000)));
}

}  // namespace

RealmWatcher::RealmWatcher(std::string path, double quietPeriod, std::function<void()> onSettled,
                           FileEventStreamFactory makeStream, std::shared_ptr<RunLoop> loop)
    : path_(std::move(path)), onSettled_(std::move(onSettled)), makeStream_(std::move(makeStream)),
      loop_(std::move(loop)), scheduler_{quietPeriod}
{
}

RealmWatcher::~RealmWatcher()
{
    stop();
}

void RealmWatcher::start()
{
    if (isRunning()) {
        return;
    }
    auto run = std::make_shared<const char>();
    auto stream = makeStream_(FileURL::directory(path_), [this, run = std::weak_ptr(run)] {
        // Asked first: this object may be gone.
        if (!run.expired()) {
            handleEvent();
        }
    });
    if (!stream) {
        return;
    }
    run_ = std::move(run);
    stream_ = std::move(stream);
}

void RealmWatcher::stop()
{
    run_.reset();
    timer_.reset();
    stream_.reset();
}

void RealmWatcher::handleEvent()
{
    setTimer(scheduler_.recordEvent(loop_->now()));
}

void RealmWatcher::setTimer(Date fireDate)
{
    timer_ = loop_->after(delayTo(fireDate, loop_->now()), [this, fireDate] {
        // Timers count time that passes and dates follow the clock, which may have been set.
        if (loop_->now() < fireDate) {
            setTimer(fireDate);
        } else {
            timerFired();
        }
    });
}

void RealmWatcher::timerFired()
{
    if (scheduler_.shouldFire(loop_->now())) {
        // A copy: it may destroy this object.
        const std::function<void()> settled = onSettled_;
        settled();
    }
}

}  // namespace gruk
