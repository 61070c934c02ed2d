#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/snapshot_delta.h"

namespace gruk {

/// A new folder at the top of a realm. A plain value.
struct DiscoveredRegion {
    /// Relative to the realm; one component.
    std::string relativePath;
    /// At the latest patrol.
    Bytes allocatedSize = 0;

    friend bool operator==(const DiscoveredRegion&, const DiscoveredRegion&) = default;
};

/// What a patrol found that is worth announcing. Pure; any thread.
namespace RegionHerald {

/// The largest new folders at the top level, three at most, the biggest first; of one size in the
/// order of `deltas`. `snapshot` is the later one of the two that the deltas stand between, and
/// what it does not know as a folder is not announced.
[[nodiscard]] std::vector<DiscoveredRegion> discoveries(const std::vector<SnapshotDelta>& deltas,
                                                        const ScanSnapshot& snapshot);

/// The sentence for one region, its path as the bytes that it is. `formattedSize` is its size as
/// `ByteFormat::string` has it.
[[nodiscard]] std::string announcement(const DiscoveredRegion& region,
                                       std::string_view formattedSize);

}  // namespace RegionHerald
}  // namespace gruk
