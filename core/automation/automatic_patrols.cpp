#include "core/automation/automatic_patrols.h"

#include <array>
#include <cstddef>

#include "core/automation/patrol_schedule.h"

namespace gruk {

namespace {

constexpr double secondsAMinute = 60;
constexpr double secondsOfAStop = 86'400;
/// After the first failure in a row, the second, the third.
constexpr std::array retryDelays = {5 * secondsAMinute, 15 * secondsAMinute, 60 * secondsAMinute};

double delayAfter(int failures, PatrolCadence cadence)
{
    const auto count = static_cast<std::size_t>(failures);
    return count <= retryDelays.size() ? retryDelays[count - 1]
                                       : interval(cadence).value_or(retryDelays.back());
}

/// Whether `now` is within `seconds` from `beginning` on.
bool isWithin(std::optional<Date> beginning, double seconds, Date now)
{
    return beginning && now >= *beginning
           && now.secondsSince1970 < beginning->secondsSince1970 + seconds;
}

}  // namespace

void AutomaticPatrols::failed(PatrolCadence cadence, Date now)
{
    ++failures_;
    failedAt_ = now;
    isOwed_ = cadence == PatrolCadence::standGuard
              && static_cast<std::size_t>(failures_) <= retryDelays.size();
}

void AutomaticPatrols::stopped(Date now)
{
    *this = AutomaticPatrols(now);
}

bool AutomaticPatrols::isDue(PatrolCadence cadence, std::optional<Date> lastPatrolled,
                             Date now) const
{
    if (isPaused(cadence, now)) {
        return false;
    }
    if (cadence == PatrolCadence::standGuard) {
        return isOwed_;
    }
    const std::optional<Date> due = PatrolSchedule::nextDue(cadence, lastPatrolled, now);
    return due && now >= *due;
}

bool AutomaticPatrols::mayComeDue(PatrolCadence cadence) const
{
    return interval(cadence) || (cadence == PatrolCadence::standGuard && isOwed_);
}

bool AutomaticPatrols::isPaused(PatrolCadence cadence, Date now) const
{
    return isWithin(stoppedAt_, interval(cadence).value_or(secondsOfAStop), now)
           || (failures_ > 0 && isWithin(failedAt_, delayAfter(failures_, cadence), now));
}

}  // namespace gruk
