#include "core/patrol/realm_insights.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "platform/foundation/file_url.h"

namespace gruk::RealmInsights {

namespace {

using Index = SnapshotEntries::Index;

/// What has been accepted already, as ranges of positions: an item, and all that lies in it.
using Accepted = std::map<Index, Index>;

/// The largest entry outside of what was accepted, the first by path among equals. One pass over
/// the sizes for each of a few items is cheaper than sorting them all.
std::optional<Index> largest(const SnapshotEntries& entries, const Accepted& accepted)
{
    std::optional<Index> best;
    auto next = accepted.begin();
    for (Index index = 0; index < entries.size();) {
        if (next != accepted.end() && index >= next->first) {
            index = std::max(index, next->second);
            ++next;
            continue;
        }
        if (!best || entries.allocatedSize(index) > entries.allocatedSize(*best)) {
            best = index;
        }
        ++index;
    }
    return best;
}

/// Whether the walk looked at the folder in which that path is, if it is.
bool couldSee(const ScanSnapshot& snapshot, std::string_view path)
{
    return std::ranges::none_of(snapshot.issues, [path](const ScanIssue& issue) {
        return pathIsAtOrBelow(path, issue.relativePath);
    });
}

HeavyItem itemFor(const ScanSnapshot& latest, Index index, const ScanSnapshot* previous)
{
    const SnapshotEntry entry = latest.entries[index];
    HeavyItem item;
    item.id = entry.relativePath;
    item.relativePath = entry.relativePath;
    item.allocatedSize = entry.allocatedSize;
    item.isDirectory = entry.isDirectory;
    item.kind = entry.kind;
    if (previous != nullptr) {
        if (const auto before = previous->entries.find(entry.relativePath)) {
            item.byteDeltaSincePrevious =
                checkedSubtract(entry.allocatedSize, previous->entries.allocatedSize(*before));
        } else {
            item.isNew = couldSee(*previous, entry.relativePath);
        }
    }
    if (entry.modifiedAt) {
        item.daysUntouched = calendarDays(*entry.modifiedAt, latest.capturedAt);
    }
    return item;
}

}  // namespace

std::vector<HeavyItem> heavyItems(const ScanSnapshot& latest, const ScanSnapshot* previous,
                                  std::size_t limit)
{
    std::vector<HeavyItem> items;
    Accepted accepted;
    while (items.size() < limit) {
        const auto index = largest(latest.entries, accepted);
        if (!index) {
            break;
        }
        items.push_back(itemFor(latest, *index, previous));
        // Only what lies in a directory is hidden by it; and a range may hold ranges of larger
        // items accepted before.
        accepted[*index] =
            latest.entries.isDirectory(*index) ? latest.entries.subtreeEnd(*index) : *index + 1;
    }
    return items;
}

}  // namespace gruk::RealmInsights
