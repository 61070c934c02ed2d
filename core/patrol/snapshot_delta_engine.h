#pragma once

#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/snapshot_delta.h"

/// Compares two snapshots of one realm. Pure; any thread.
namespace gruk::SnapshotDeltaEngine {

/// The paths whose allocated size differs, files and directories at every depth, in the order of
/// `standsBefore`. Silent about each path at, below or (for a directory) above an issue of either
/// snapshot: its figures cannot be trusted. A path of 0 bytes that came or went is no change.
///
/// Throws `SnapshotDeltaError`: `incompleteSnapshot` if either is incomplete (asked first),
/// `rootMismatch` if the roots differ.
///
/// One merge over both ordered lists: time grows with the number of entries, not with the number
/// of issues.
[[nodiscard]] std::vector<SnapshotDelta> compare(const ScanSnapshot& previous,
                                                 const ScanSnapshot& current);

}  // namespace gruk::SnapshotDeltaEngine
