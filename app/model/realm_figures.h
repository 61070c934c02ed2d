#pragma once

#include <memory>
#include <vector>

#include "core/patrol/heavy_item.h"
#include "core/patrol/live_removals.h"
#include "core/patrol/patrol_coordinator.h"
#include "core/patrol/realm_history.h"

namespace gruk {

/// Everything that the screens show of one realm, put together away from the main thread, with
/// the sums that would take too long to make there. Large parts are shared and never change.
struct RealmFigures {
    /// None without one.
    std::shared_ptr<const ScanSnapshot> previousSnapshot;
    /// None without one.
    std::shared_ptr<const ScanSnapshot> latestSnapshot;
    /// Never null.
    std::shared_ptr<const std::vector<SnapshotDelta>> deltas;
    /// Never null.
    std::shared_ptr<const std::vector<ReviewFinding>> findings;
    std::vector<HeavyItem> heavyItems;
    /// Sum over the top level of the latest snapshot.
    Bytes latestTotalBytes = 0;
    /// Sum over the top level of the changes.
    Bytes netChangeBytes = 0;
    /// The first changes of the top level, in the order of `deltas`, at most
    /// `topLevelChangeLimit`.
    std::vector<SnapshotDelta> topLevelDeltas;
    /// Whether `findings` is what is left of them, others having gone to the Trash.
    bool haveFindingsLeft = false;

    /// Nothing at all.
    RealmFigures();
    explicit RealmFigures(RealmHistory history);
    explicit RealmFigures(PatrolResult result);
};

/// How many changes of the top level are listed before removals are added.
inline constexpr std::size_t topLevelChangeLimit = 8;

/// The list under "What changed at the top level": `topLevelDeltas` without the paths that have
/// left the realm since, one removal for each of those, in the order of `standsBefore`.
[[nodiscard]] std::vector<SnapshotDelta>
topLevelChanges(const std::vector<SnapshotDelta>& topLevelDeltas,
                const RemovedBytesByPath& removals);

}  // namespace gruk
