#pragma once

#include <optional>
#include <string_view>

#include <QString>

#include "core/patrol/heavy_item.h"
#include "core/patrol/patrol_coordinator.h"
#include "core/patrol/review_finding.h"
#include "core/patrol/scan_snapshot.h"

/// What the patrol page puts into words. Pure; UTF-8 that is not becomes U+FFFD.
namespace gruk::PatrolText {

/// "Last patrolled {date}", or that there was none. The date is in the local time of the user.
[[nodiscard]] QString lastPatrolled(const ScanSnapshot* latest);

/// What stands in its place while the history of a realm that was patrolled before loads.
[[nodiscard]] QString loadingHistory();

/// The line of this realm's own running patrol; `progress` is none before the first report.
[[nodiscard]] QString progress(const std::optional<PatrolProgress>& progress);

/// The line, and the note under it, while the realm called `name` is patrolled instead.
[[nodiscard]] QString otherRealm(std::string_view name,
                                 const std::optional<PatrolProgress>& progress);
[[nodiscard]] QString otherRealmNote(std::string_view name);

/// Why a patrol could not see a place, and that it is a realm of its own by now.
[[nodiscard]] QString unseenReason(ScanIssue::Reason reason);
[[nodiscard]] QString unseenRealm();

/// The name of a reason in lists and in the filter.
[[nodiscard]] QString reasonLabel(ReviewFinding::Reason reason);

/// What to know about a heavy item in one line.
[[nodiscard]] QString heavyNote(const HeavyItem& item, bool hasPreviousSnapshot);

/// The line under "The big stuff".
[[nodiscard]] QString heavyIntroduction(Bytes total);

}  // namespace gruk::PatrolText
