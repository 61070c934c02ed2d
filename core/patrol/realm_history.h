#pragma once

#include <optional>
#include <vector>

#include "core/patrol/heavy_item.h"
#include "core/patrol/review_finding.h"
#include "core/patrol/scan_snapshot.h"
#include "core/patrol/snapshot_delta.h"
#include "core/patrol/snapshot_store.h"
#include "core/patrol/unreviewed_places.h"

namespace gruk {

/// What the last patrol said, rebuilt from the store.
struct RealmHistory {
    std::optional<ScanSnapshot> previousSnapshot;
    std::optional<ScanSnapshot> latestSnapshot;
    /// Between the two, without what is Gruk's own; empty unless both exist.
    std::vector<SnapshotDelta> deltas;
    /// For the latest; empty without one.
    std::vector<ReviewFinding> findings;
    /// For the latest; empty without one.
    std::vector<HeavyItem> heavyItems;
};

namespace RealmHistoryLoader {

/// Rebuilds the figures of the last two snapshots, judged as of `now`, `unreviewed` as little as
/// by a patrol. Never fails: a corrupt
/// store, a mismatch or an incomplete snapshot all read as a realm with no history. Blocks on
/// the store; never the main thread.
[[nodiscard]] RealmHistory load(const FileURL& root, const SnapshotStore& store, Date now,
                                const UnreviewedPlaces& unreviewed = {});

}  // namespace RealmHistoryLoader
}  // namespace gruk
