#pragma once

#include <vector>

#include "core/patrol/review_finding.h"
#include "core/patrol/snapshot_delta.h"
#include "core/patrol/snapshot_entries.h"
#include "core/patrol/unreviewed_places.h"
#include "platform/foundation/date.h"
#include "platform/foundation/file_url.h"

/// Turns a snapshot and its changes into findings by four rules over metadata alone: rapid
/// growth, duplicate download, old installer, regenerable cache. Pure; any thread.
namespace gruk::ReviewEngine {

/// All findings, at most one an item (the most confident rule speaks), the largest first, then the
/// most confident, then by path. `root` is the realm's root, `now` decides the age of installers.
/// `deltas` may be empty, as at a first patrol; the growth rule then finds nothing.
///
/// No item is found at or below a place in `unreviewed`, nor a folder that holds one; what grew
/// there is no part of the growth that others have their share of.
[[nodiscard]] std::vector<ReviewFinding> evaluate(const FileURL& root,
                                                  const SnapshotEntries& entries,
                                                  const std::vector<SnapshotDelta>& deltas,
                                                  Date now,
                                                  const UnreviewedPlaces& unreviewed = {});

}  // namespace gruk::ReviewEngine
