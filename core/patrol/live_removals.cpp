#include "core/patrol/live_removals.h"

#include <algorithm>
#include <iterator>

namespace gruk::LiveRemovals {

std::vector<SnapshotDelta> removedDeltas(const RemovedBytesByPath& removals)
{
    std::vector<SnapshotDelta> deltas;
    deltas.reserve(removals.size());
    for (const auto& [path, bytes] : removals) {
        deltas.push_back({path, SnapshotDelta::Change::removed, bytes, 0});
    }
    return deltas;
}

Bytes adjustedTotal(Bytes total, const RemovedBytesByPath& removals)
{
    // One after another, since a folder and what was taken out of it before may both be there.
    for (const auto& [path, bytes] : removals) {
        total = std::max(Bytes{0}, checkedSubtract(total, bytes));
    }
    return total;
}

std::vector<HeavyItem> remainingItems(const std::vector<HeavyItem>& items,
                                      const RemovedBytesByPath& removals)
{
    std::vector<HeavyItem> remaining;
    remaining.reserve(items.size());
    std::copy_if(items.begin(), items.end(), std::back_inserter(remaining),
                 [&](const HeavyItem& item) { return !removals.contains(item.relativePath); });
    return remaining;
}

}  // namespace gruk::LiveRemovals
