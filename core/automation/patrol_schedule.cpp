#include "core/automation/patrol_schedule.h"

namespace gruk::PatrolSchedule {

std::optional<Date> nextDue(PatrolCadence cadence, std::optional<Date> lastPatrolled, Date now)
{
    const std::optional<double> seconds = interval(cadence);
    if (!seconds) {
        return std::nullopt;
    }
    if (!lastPatrolled) {
        return now;
    }
    return Date{lastPatrolled->secondsSince1970 + *seconds};
}

}  // namespace gruk::PatrolSchedule
