#include "core/patrol/patrol_coordinator.h"

#include "core/patrol/review_engine.h"
#include "core/patrol/snapshot_delta_engine.h"

namespace gruk::PatrolCoordinator {

PatrolResult patrol(const FileURL& root, SnapshotScanner& scanner, SnapshotStore& store,
                    const PatrolProgressFunction& progress, std::stop_token stop,
                    const std::function<void()>& confirm)
{
    PatrolResult result;
    // Before the walk, so that the prior snapshot can never be the new one; and with the path as
    // it stands, since that is what the caller asks by.
    std::vector<ScanSnapshot> stored = store.latestSnapshots(root.path(), 1);
    if (!stored.empty()) {
        result.priorSnapshot = std::move(stored.back());
    }
    result.snapshot = scanner.scan(root, Date::now(), progress, std::move(stop));
    if (confirm) {
        confirm();
    }
    if (result.priorSnapshot) {
        result.deltas = SnapshotDeltaEngine::compare(*result.priorSnapshot, result.snapshot);
    }
    result.findings =
        ReviewEngine::evaluate(root, result.snapshot.entries, result.deltas, Date::now());
    // The store refuses a partial snapshot too; here it is refused whatever the scanner becomes.
    if (!result.snapshot.isComplete) {
        throw SnapshotStoreError(SnapshotStoreError::Case::incompleteSnapshot);
    }
    store.save(result.snapshot);
    return result;
}

}  // namespace gruk::PatrolCoordinator
