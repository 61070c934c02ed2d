#pragma once

#include <optional>

#include "core/automation/patrol_cadence.h"
#include "platform/foundation/date.h"

/// From a cadence and the last patrol to the next one. Pure: no clock, no timer; any thread.
namespace gruk::PatrolSchedule {

/// The date of the next patrol: `lastPatrolled` plus the interval of the cadence, or `now` for a
/// realm that was never patrolled. None for the cadences that do not go by the clock.
///
/// A patrol is due when `now` is not earlier than that date. A `lastPatrolled` in the future is
/// taken as it is.
[[nodiscard]] std::optional<Date> nextDue(PatrolCadence cadence, std::optional<Date> lastPatrolled,
                                          Date now);

}  // namespace gruk::PatrolSchedule
