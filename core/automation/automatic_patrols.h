#pragma once

#include <optional>

#include "core/automation/patrol_cadence.h"
#include "platform/foundation/date.h"

namespace gruk {

/// When the next patrol of one realm begins unasked: by its cadence, and by what came of those
/// before. A plain value, without a clock.
///
/// A patrol that was stopped counts as made: the next one is an interval of the cadence away, a day
/// for a guarded realm. After one that failed the next is tried 5 minutes later, then 15, then 60,
/// and then as the cadence has it; a guarded realm then waits for its next change, and 60 minutes
/// at least. A clock that is set back to before such a moment ends the waiting for it.
class AutomaticPatrols {
public:
    /// `stoppedAt`: when the user last stopped one, as it was kept over a restart.
    explicit AutomaticPatrols(std::optional<Date> stoppedAt = std::nullopt) : stoppedAt_(stoppedAt)
    {
    }

    /// The guarded realm has changed and gone quiet.
    void settled() { isOwed_ = true; }
    /// One begins, or is passed over because the realm is not there.
    void begun() { isOwed_ = false; }
    void failed(PatrolCadence cadence, Date now);
    void stopped(Date now);
    /// Also one that was asked for.
    void succeeded() { *this = AutomaticPatrols(); }

    /// Whether the next one begins now.
    [[nodiscard]] bool isDue(PatrolCadence cadence, std::optional<Date> lastPatrolled,
                             Date now) const;
    /// Whether it may be due, whenever that was last patrolled.
    [[nodiscard]] bool mayComeDue(PatrolCadence cadence) const;
    [[nodiscard]] std::optional<Date> stoppedAt() const { return stoppedAt_; }

private:
    [[nodiscard]] bool isPaused(PatrolCadence cadence, Date now) const;

    std::optional<Date> stoppedAt_;
    std::optional<Date> failedAt_;
    /// In a row.
    int failures_ = 0;
    /// A guarded realm's changes, which no patrol has seen.
    bool isOwed_ = false;
};

}  // namespace gruk
