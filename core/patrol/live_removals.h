#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "core/patrol/heavy_item.h"
#include "core/patrol/snapshot_delta.h"

namespace gruk {

/// Allocated bytes of the items that left the realm since its latest snapshot, by relative path.
using RemovedBytesByPath = std::unordered_map<std::string, Bytes>;

/// Corrects the figures on screen after items were trashed, until the next patrol. Pure.
namespace LiveRemovals {

/// One delta `removed` a path, in no particular order.
[[nodiscard]] std::vector<SnapshotDelta> removedDeltas(const RemovedBytesByPath& removals);

/// `total` less what was removed, at least 0.
[[nodiscard]] Bytes adjustedTotal(Bytes total, const RemovedBytesByPath& removals);

/// The items that are still there, in their order; paths are matched exactly.
[[nodiscard]] std::vector<HeavyItem> remainingItems(const std::vector<HeavyItem>& items,
                                                    const RemovedBytesByPath& removals);

}  // namespace LiveRemovals
}  // namespace gruk
