#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "core/patrol/heavy_item.h"
#include "core/patrol/scan_snapshot.h"

/// Picks the heaviest items. Pure; any thread.
namespace gruk::RealmInsights {

/// How many the screens ask for.
inline constexpr std::size_t heavyItemLimit = 20;

/// The largest entries, files and directories in one list, ties by path; what lies in a listed
/// folder is left out, so that no byte counts twice. At most `limit`. `previous` may be null.
[[nodiscard]] std::vector<HeavyItem> heavyItems(const ScanSnapshot& latest,
                                                const ScanSnapshot* previous, std::size_t limit);

}  // namespace gruk::RealmInsights
