#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "core/patrol/review_finding.h"
#include "core/patrol/scan_snapshot.h"
#include "core/patrol/snapshot_delta.h"
#include "core/patrol/snapshot_scanner.h"
#include "core/patrol/snapshot_store.h"
#include "core/patrol/unreviewed_places.h"
#include "platform/foundation/date.h"

namespace gruk {

/// The outcome of a patrol.
struct PatrolResult {
    /// The new snapshot, as stored.
    ScanSnapshot snapshot;
    /// The latest one before it; none at a realm's first patrol.
    std::optional<ScanSnapshot> priorSnapshot;
    /// Without what is Gruk's own.
    std::vector<SnapshotDelta> deltas;
    std::vector<ReviewFinding> findings;
};

/// One report for the screens.
struct PatrolProgress {
    std::int64_t pathsScanned = 0;
    /// Relative path of the folder just finished; empty for the root.
    std::string currentFolderPath;

    friend bool operator==(const PatrolProgress&, const PatrolProgress&) = default;
};

/// What a patrol does besides comparing and judging. What any of it throws ends the patrol.
struct PatrolSteps {
    /// The realm's latest snapshot. Called before the walk.
    std::function<std::optional<ScanSnapshot>()> latest;
    std::function<ScanSnapshot(Date capturedAt)> walk;
    /// Called after the walk; may be empty.
    std::function<void()> confirm;
    /// Called last, with a complete snapshot only.
    std::function<void(const ScanSnapshot&)> save;
    /// Asked when the walk begins, and again when it has ended: a walk may take hours, and findings
    /// are judged as of its end.
    std::function<Date()> now = Date::now;
    UnreviewedPlaces unreviewed;
};

/// One patrol from start to stored result. Owns no state.
namespace PatrolCoordinator {

/// Looks up the snapshot before, walks, compares, judges, and only then stores. Whatever fails on
/// the way leaves the store as it was; the error is that of the step. A stop that is requested
/// after the walk does not keep the snapshot from being saved. Blocks; any thread but the main.
///
/// `confirm`, which may be empty, is called after the walk, on this thread; what it throws ends the
/// patrol. For whoever knows by more than its path which directory is meant: what stood there may
/// have gone, and another have come, while the patrol waited and walked.
///
/// Nothing in `unreviewed` is a finding; Gruk's own in it is no change either.
[[nodiscard]] PatrolResult patrol(const FileURL& root, SnapshotScanner& scanner,
                                  SnapshotStore& store, const PatrolProgressFunction& progress = {},
                                  std::stop_token stop = {},
                                  const std::function<void()>& confirm = {},
                                  const UnreviewedPlaces& unreviewed = {});

/// The same by its steps.
[[nodiscard]] PatrolResult patrol(const FileURL& root, const PatrolSteps& steps);

}  // namespace PatrolCoordinator
}  // namespace gruk
