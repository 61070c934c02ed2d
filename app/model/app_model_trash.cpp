#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "app/model/app_model.h"
#include "app/model/failure_log.h"
#include "app/model/model_copy.h"
#include "app/model/setting_keys.h"
#include "core/patrol/outermost_findings.h"

namespace gruk {

namespace {

/// The path of `url` below `root`; the whole path of what does not lie below it.
std::string relativePath(const FileURL& url, const FileURL& root)
{
    const std::string path = url.standardized().path();
    const std::string below = root.standardized().path() + "/";
    return path.starts_with(below) ? path.substr(below.size()) : path;
}

/// What to say of other items that came to the Trash in the place of those that were meant; none
/// when there are none.
std::optional<std::string> complaintOfStrays(const TrashOperation& operation)
{
    std::string text;
    for (const TrashFailure& failure : operation.failures) {
        if (failure.strayedTo) {
            text += ModelCopy::strayed(failure.url.lastPathComponent(), failure.strayedTo->path());
            text += ' ';
        }
    }
    return text.empty() ? std::nullopt
                        : std::optional(text + std::string(ModelCopy::nothingElseWasChanged));
}

/// Where something came or went when these items moved: the Trash keeps records of its own, too.
std::vector<FileURL> touchedByTrash(const std::vector<TrashedItem>& items)
{
    std::vector<FileURL> places;
    for (const TrashedItem& item : items) {
        places.push_back(item.originalURL);
        places.push_back(item.trashURL.deletingLastPathComponent().deletingLastPathComponent());
    }
    return places;
}

bool hasChanged(const TrashFailure& failure)
{
    return failure.reason == TrashFailure::Reason::itemChangedSinceReview
           || failure.reason == TrashFailure::Reason::missingAtReviewedPath;
}

}  // namespace

void AppModel::setReviewOnly(bool enabled)
{
    assign(reviewOnlyMode_, enabled, &AppModel::reviewOnlyModeChanged);
    save([enabled](UserDefaults& settings) {
        settings.setBoolean(SettingKeys::reviewOnlyMode, enabled);
    });
    tell(std::string(enabled ? ModelCopy::reviewOnlyIsOn : ModelCopy::trashActionsAreEnabled));
}

void AppModel::moveFindingToTrash(ReviewFinding finding, FileIdentity expectedIdentity)
{
    if (reviewOnlyMode_) {
        return complain(std::string(ModelCopy::stoppedByReviewOnly));
    }
    const bool isKnown =
        std::ranges::find(findings(), finding.id, &ReviewFinding::id) != findings().end();
    if (!isKnown || !activeRootURL_ || !isInsideRoot(finding.url.standardized(), *activeRootURL_)) {
        return complain(std::string(ModelCopy::outsideActiveRealm));
    }
    const std::shared_ptr<ScopedAccess> access = accessTo(*activeRootURL_);
    if (!access) {
        // What stands at that path is not the item of this realm, whatever it looks like.
        return complain(std::string(ModelCopy::changedSinceReview));
    }
    const TrashOperation operation =
        with_.trashService->moveToTrash({{finding.url, finding.allocatedSize, expectedIdentity}},
                                        *activeRootURL_, access->stands());
    log(operation.failures);
    if (auto strays = complaintOfStrays(operation)) {
        return complain(std::move(strays));
    }
    if (operation.moved.empty()) {
        return complain(std::string(std::ranges::any_of(operation.failures, hasChanged)
                                        ? ModelCopy::changedSinceReview
                                        : ModelCopy::couldNotTrash));
    }
    takeOut(operation, {finding.id});
    if (operation.failures.empty()) {
        tell(ModelCopy::movedToTrash(operation.moved.front().originalURL.lastPathComponent()));
        complain(std::nullopt);
    } else {
        tell(ModelCopy::movedCountToTrash(operation.moved.size()));
        complain(std::string(ModelCopy::someCouldNotMove));
    }
}

void AppModel::moveFindingsToTrash(std::vector<ReviewFinding> chosen)
{
    if (reviewOnlyMode_) {
        return complain(std::string(ModelCopy::stoppedByReviewOnly));
    }
    if (!activeRootURL_) {
        return complain(std::string(ModelCopy::outsideActiveRealm));
    }
    const std::shared_ptr<ScopedAccess> access = accessTo(*activeRootURL_);
    std::size_t skipped = 0;
    std::vector<TrashRequest> requests;
    std::multimap<FileURL, std::string> idsByURL;
    for (const ReviewFinding& finding : chosen) {
        const auto identity = access ? TrashService::currentIdentity(finding.url) : std::nullopt;
        if (identity) {
            requests.push_back({finding.url, finding.allocatedSize, *identity});
            idsByURL.emplace(finding.url.standardized(), finding.id);
        } else {
            ++skipped;
        }
    }
    const TrashOperation operation = with_.trashService->moveToTrash(
        requests, *activeRootURL_, access ? access->stands() : RootCheck());
    log(operation.failures);
    if (!operation.moved.empty()) {
        std::vector<std::string> ids;
        for (const TrashedItem& item : operation.moved) {
            const auto [first, last] = idsByURL.equal_range(item.originalURL);
            std::transform(first, last, std::back_inserter(ids),
                           [](const auto& entry) { return entry.second; });
        }
        takeOut(operation, ids);
    }
    tell(ModelCopy::movedBatchToTrash(operation.moved.size(), chosen.size(), operation.totalBytes(),
                                      operation.failures.size() + skipped));
    complain(complaintOfStrays(operation));
}

void AppModel::takeOut(const TrashOperation& operation, const std::vector<std::string>& findingIDs)
{
    const std::set<std::string_view> gone(findingIDs.begin(), findingIDs.end());
    auto left = std::make_shared<std::vector<ReviewFinding>>();
    std::ranges::copy_if(findings(), std::back_inserter(*left),
                         [&](const ReviewFinding& finding) { return !gone.contains(finding.id); });
    RemovedBytesByPath removed = liveRemovedBytesByPath_;
    std::vector<FileURL> places;
    for (const TrashedItem& item : operation.moved) {
        removed[relativePath(item.originalURL, *activeRootURL_)] = item.allocatedSize;
        places.push_back(item.originalURL);
    }
    // What lay in a folder has gone with it.
    *left = OutermostFindings::outside(std::move(*left), places);
    // The way back stands before anybody hears of the move.
    lastTrashRoot_ = activeRootURL_;
    assign(lastTrashOperation_, operation, &AppModel::lastTrashOperationChanged);
    assign(liveRemovedBytesByPath_, std::move(removed), &AppModel::liveRemovedBytesByPathChanged);
    figures_.findings = std::move(left);
    figures_.haveFindingsLeft = true;
    Q_EMIT findingsChanged();
    session().renew(touchedByTrash(operation.moved));
}

void AppModel::undoLastTrash()
{
    if (!lastTrashOperation_) {
        return;
    }
    const std::vector<TrashedItem> moved = lastTrashOperation_->moved;
    const RestoreOperation operation = with_.trashService->restore(moved, lastTrashRoot_);
    log(operation.failures);

    TrashOperation left;
    std::ranges::copy_if(moved, std::back_inserter(left.moved), [&](const TrashedItem& item) {
        return std::ranges::find(operation.restored, item) == operation.restored.end();
    });
    assign(lastTrashOperation_, left.moved.empty() ? std::nullopt : std::optional(std::move(left)),
           &AppModel::lastTrashOperationChanged);
    if (activeRootURL_) {
        RemovedBytesByPath removed = liveRemovedBytesByPath_;
        for (const TrashedItem& item : operation.restored) {
            removed.erase(relativePath(item.originalURL, *activeRootURL_));
        }
        assign(liveRemovedBytesByPath_, std::move(removed),
               &AppModel::liveRemovedBytesByPathChanged);
    }
    session().renew(touchedByTrash(operation.restored));
    const bool isAll = operation.failures.empty();
    tell(isAll || !operation.restored.empty()
             ? std::optional(ModelCopy::restoredFromTrash(operation.restored.size()))
             : std::nullopt);
    complain(isAll ? std::nullopt : std::optional(std::string(ModelCopy::someCouldNotBeRestored)));
}

}  // namespace gruk
