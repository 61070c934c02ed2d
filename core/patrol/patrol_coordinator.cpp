#include "core/patrol/patrol_coordinator.h"

#include "core/patrol/review_engine.h"
#include "core/patrol/snapshot_delta_engine.h"

namespace gruk::PatrolCoordinator {

PatrolResult patrol(const FileURL& root, const PatrolSteps& steps)
{
    PatrolResult result;
    // Before the walk, so that the prior snapshot can never be the new one.
    result.priorSnapshot = steps.latest();
    result.snapshot = steps.walk(steps.now());
    if (steps.confirm) {
        steps.confirm();
    }
    if (result.priorSnapshot) {
        result.deltas = UnreviewedPaths(steps.unreviewed, root)
                            .withoutOwnChanges(SnapshotDeltaEngine::compare(*result.priorSnapshot,
                                                                            result.snapshot));
    }
    result.findings = ReviewEngine::evaluate(root, result.snapshot.entries, result.deltas,
                                             steps.now(), steps.unreviewed);
    // The store refuses a partial snapshot too; here it is refused whatever the scanner becomes.
    if (!result.snapshot.isComplete) {
        throw SnapshotStoreError(SnapshotStoreError::Case::incompleteSnapshot);
    }
    steps.save(result.snapshot);
    return result;
}

PatrolResult patrol(const FileURL& root, SnapshotScanner& scanner, SnapshotStore& store,
                    const PatrolProgressFunction& progress, std::stop_token stop,
                    const std::function<void()>& confirm, const UnreviewedPlaces& unreviewed)
{
    PatrolSteps steps;
    steps.latest = [&] {
        // With the path as it stands, since that is what the caller asks by.
        std::vector<ScanSnapshot> stored = store.latestSnapshots(root.path(), 1);
        return stored.empty() ? std::nullopt : std::optional(std::move(stored.back()));
    };
    steps.walk = [&](Date capturedAt) { return scanner.scan(root, capturedAt, progress, stop); };
    steps.confirm = confirm;
    steps.save = [&](const ScanSnapshot& snapshot) { store.save(snapshot); };
    steps.unreviewed = unreviewed;
    return patrol(root, steps);
}

}  // namespace gruk::PatrolCoordinator
