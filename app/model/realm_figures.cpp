#include "app/model/realm_figures.h"

#include <algorithm>
#include <utility>

#include "core/patrol/realm_insights.h"

namespace gruk {

namespace {

bool isTopLevel(const SnapshotDelta& delta)
{
    return delta.relativePath.find('/') == std::string::npos;
}

std::shared_ptr<const ScanSnapshot> shared(std::optional<ScanSnapshot> snapshot)
{
    return snapshot ? std::make_shared<const ScanSnapshot>(std::move(*snapshot)) : nullptr;
}

void addSums(RealmFigures& figures)
{
    if (figures.latestSnapshot) {
        figures.latestTotalBytes = figures.latestSnapshot->entries.totalBytes();
    }
    for (const SnapshotDelta& delta : *figures.deltas) {
        if (!isTopLevel(delta)) {
            continue;
        }
        figures.netChangeBytes = checkedAdd(figures.netChangeBytes, delta.netBytes());
        if (figures.topLevelDeltas.size() < topLevelChangeLimit) {
            figures.topLevelDeltas.push_back(delta);
        }
    }
}

}  // namespace

RealmFigures::RealmFigures()
    : deltas(std::make_shared<const std::vector<SnapshotDelta>>()),
      findings(std::make_shared<const std::vector<ReviewFinding>>())
{
}

RealmFigures::RealmFigures(RealmHistory history)
    : previousSnapshot(shared(std::move(history.previousSnapshot))),
      latestSnapshot(shared(std::move(history.latestSnapshot))),
      deltas(std::make_shared<const std::vector<SnapshotDelta>>(std::move(history.deltas))),
      findings(std::make_shared<const std::vector<ReviewFinding>>(std::move(history.findings))),
      heavyItems(std::move(history.heavyItems))
{
    addSums(*this);
}

RealmFigures::RealmFigures(PatrolResult result)
    : previousSnapshot(shared(std::move(result.priorSnapshot))),
      latestSnapshot(std::make_shared<const ScanSnapshot>(std::move(result.snapshot))),
      deltas(std::make_shared<const std::vector<SnapshotDelta>>(std::move(result.deltas))),
      findings(std::make_shared<const std::vector<ReviewFinding>>(std::move(result.findings))),
      heavyItems(RealmInsights::heavyItems(*latestSnapshot, previousSnapshot.get(),
                                           RealmInsights::heavyItemLimit))
{
    addSums(*this);
}

std::vector<SnapshotDelta> topLevelChanges(const std::vector<SnapshotDelta>& topLevelDeltas,
                                           const RemovedBytesByPath& removals)
{
    std::vector<SnapshotDelta> changes;
    std::copy_if(
        topLevelDeltas.begin(), topLevelDeltas.end(), std::back_inserter(changes),
        [&](const SnapshotDelta& delta) { return !removals.contains(delta.relativePath); });
    std::vector<SnapshotDelta> removed = LiveRemovals::removedDeltas(removals);
    std::move(removed.begin(), removed.end(), std::back_inserter(changes));
    std::stable_sort(changes.begin(), changes.end(), standsBefore);
    return changes;
}

}  // namespace gruk
