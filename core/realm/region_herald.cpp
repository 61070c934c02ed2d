#include "core/realm/region_herald.h"

#include <algorithm>

namespace gruk::RegionHerald {

namespace {

constexpr std::size_t mostAnnounced = 3;

bool isNewRegion(const SnapshotDelta& delta, const SnapshotEntries& entries)
{
    if (delta.change != SnapshotDelta::Change::added
        || delta.relativePath.find('/') != std::string::npos) {
        return false;
    }
    const auto entry = entries.find(delta.relativePath);
    return entry && entries.isDirectory(*entry);
}

}  // namespace

std::vector<DiscoveredRegion> discoveries(const std::vector<SnapshotDelta>& deltas,
                                          const ScanSnapshot& snapshot)
{
    std::vector<DiscoveredRegion> regions;
    for (const SnapshotDelta& delta : deltas) {
        if (isNewRegion(delta, snapshot.entries)) {
            regions.push_back({delta.relativePath, delta.currentBytes});
        }
    }
    std::stable_sort(regions.begin(), regions.end(),
                     [](const DiscoveredRegion& a, const DiscoveredRegion& b) {
                         return a.allocatedSize > b.allocatedSize;
                     });
    regions.resize(std::min(regions.size(), mostAnnounced));
    return regions;
}

std::string announcement(const DiscoveredRegion& region, std::string_view formattedSize)
{
    std::string sentence = "New region discovered, m'lord: ";
    sentence += region.relativePath;
    sentence += " (";
    sentence += formattedSize;
    sentence += ").";
    return sentence;
}

}  // namespace gruk::RegionHerald
