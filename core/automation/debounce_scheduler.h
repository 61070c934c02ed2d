#pragma once

#include <optional>

#include "platform/foundation/date.h"

namespace gruk {

/// When a series of events has gone quiet: no clock, no timer, only the sums. A plain value.
struct DebounceScheduler {
    /// Seconds without an event after which a fire is allowed.
    double quietPeriod = 0;
    /// The moment from which a fire is allowed: that of the latest event plus `quietPeriod`. None
    /// before the first event; stays after a fire.
    std::optional<Date> lastFireTime = std::nullopt;

    /// Takes an event at `now`, which puts the fire off; returns the new `lastFireTime`.
    Date recordEvent(Date now)
    {
        lastFireTime = Date{now.secondsSince1970 + quietPeriod};
        return *lastFireTime;
    }

    /// Whether a fire is allowed at `now`; the moment itself counts.
    [[nodiscard]] bool shouldFire(Date now) const { return lastFireTime && now >= *lastFireTime; }
};

}  // namespace gruk
