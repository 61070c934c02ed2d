#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "core/actions/grant.h"
#include "core/automation/patrol_cadence.h"
#include "core/patrol/realm_history.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/date.h"

namespace gruk {

/// What the map needs to know of one realm. A plain value.
struct RealmSummary {
    /// The bytes of the grant's path: the summary's identity, and its seed's on the map.
    std::string path;
    /// The bytes of the path's last component; "/" for the root.
    std::string displayName;
    /// Allocated at the latest patrol; 0 without one.
    Bytes totalBytes = 0;
    /// All findings of the history, whatever a screen hides.
    std::size_t findingsCount = 0;
    std::optional<Date> lastPatrolled;
    /// Whether a patrol by the clock is late.
    bool isOverdue = false;

    friend bool operator==(const RealmSummary&, const RealmSummary&) = default;
};

namespace RealmSummaryBuilder {

/// The summary of one realm as of `now`. A patrol that is due exactly then is overdue; a realm
/// that was never patrolled is not. Costs as much as the realm has items at its top level, however
/// deep they go. Pure; any thread. A total beyond 64 bits is a programming error.
[[nodiscard]] RealmSummary summary(const Grant& grant, const RealmHistory& history,
                                   PatrolCadence cadence, Date now);

}  // namespace RealmSummaryBuilder
}  // namespace gruk
