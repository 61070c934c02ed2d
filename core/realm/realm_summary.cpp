#include "core/realm/realm_summary.h"

#include "core/automation/patrol_schedule.h"
#include "platform/foundation/file_url.h"

namespace gruk::RealmSummaryBuilder {

namespace {

bool isOverdue(PatrolCadence cadence, std::optional<Date> lastPatrolled, Date now)
{
    // The schedule has a realm without a patrol due at once, but nobody has let that one wait.
    if (!lastPatrolled) {
        return false;
    }
    const std::optional<Date> due = PatrolSchedule::nextDue(cadence, lastPatrolled, now);
    return due && now >= *due;
}

}  // namespace

RealmSummary summary(const Grant& grant, const RealmHistory& history, PatrolCadence cadence,
                     Date now)
{
    RealmSummary summary;
    summary.path = grant.path;
    summary.displayName = FileURL(grant.path).lastPathComponent();
    summary.findingsCount = history.findings.size();
    if (history.latestSnapshot) {
        // A folder's entry stands for all that is in it, so the top level is the whole realm.
        summary.totalBytes = history.latestSnapshot->entries.totalBytes();
        summary.lastPatrolled = history.latestSnapshot->capturedAt;
    }
    summary.isOverdue = isOverdue(cadence, summary.lastPatrolled, now);
    return summary;
}

}  // namespace gruk::RealmSummaryBuilder
