#include "core/patrol/realm_history.h"

#include "core/patrol/realm_insights.h"
#include "core/patrol/review_engine.h"
#include "core/patrol/snapshot_delta_engine.h"

namespace gruk::RealmHistoryLoader {

namespace {

RealmHistory loadOrThrow(const FileURL& root, const SnapshotStore& store, Date now,
                         const UnreviewedPlaces& unreviewed)
{
    std::vector<ScanSnapshot> snapshots = store.latestSnapshots(root.path(), 2);
    RealmHistory history;
    if (snapshots.empty()) {
        return history;
    }
    history.latestSnapshot = std::move(snapshots.back());
    if (snapshots.size() > 1) {
        history.previousSnapshot = std::move(snapshots.front());
        history.deltas = UnreviewedPaths(unreviewed, root)
                             .withoutOwnChanges(SnapshotDeltaEngine::compare(
                                 *history.previousSnapshot, *history.latestSnapshot));
    }
    history.findings = ReviewEngine::evaluate(root, history.latestSnapshot->entries, history.deltas,
                                              now, unreviewed);
    history.heavyItems = RealmInsights::heavyItems(
        *history.latestSnapshot, history.previousSnapshot ? &*history.previousSnapshot : nullptr,
        RealmInsights::heavyItemLimit);
    return history;
}

}  // namespace

RealmHistory load(const FileURL& root, const SnapshotStore& store, Date now,
                  const UnreviewedPlaces& unreviewed)
{
    try {
        return loadOrThrow(root, store, now, unreviewed);
    } catch (const std::exception&) {
        // The patrol reports a store that cannot be read; here the realm has no history.
        return {};
    }
}

}  // namespace gruk::RealmHistoryLoader
