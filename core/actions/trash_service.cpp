#include "core/actions/trash_service.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <utility>

#include "platform/files/move_batch.h"
#include "platform/files/moves.h"
#include "platform/files/trash.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

using TrashReason = TrashFailure::Reason;

FileIdentity::Kind kindOf(ItemType type)
{
    switch (type) {
    case ItemType::regularFile:
        return FileIdentity::Kind::file;
    case ItemType::directory:
        return FileIdentity::Kind::directory;
    case ItemType::symbolicLink:
        return FileIdentity::Kind::symbolicLink;
    case ItemType::other:
        break;
    }
    return FileIdentity::Kind::other;
}

FileIdentity fileIdentity(const ItemIdentity& item)
{
    return {static_cast<std::uint32_t>(item.deviceID), item.inode, kindOf(item.type), item.created};
}

/// The calls on the disk for one operation, whose moves are one batch that ends with them. The
/// identity that was read last is the one that the service compared, and so the one that the move
/// must find.
TrashCalls trashDiskCalls(const MoveCalls& calls, const OwnFolders& own,
                          const std::optional<FileURL>& authorizedRoot, const RootCheck& stands)
{
    struct Review {
        FileURL url;
        std::optional<ItemIdentity> identity;
    };
    const auto reviewed = std::make_shared<Review>();
    const auto batch = std::make_shared<MoveBatch>(calls);
    if (authorizedRoot) {
        batch->stayIn(*authorizedRoot, stands);
    }
    TrashCalls disk;
    disk.identityReader = [calls, reviewed](const FileURL& url) -> std::optional<FileIdentity> {
        *reviewed = {url, itemIdentity(url, calls)};
        return reviewed->identity ? std::optional(fileIdentity(*reviewed->identity)) : std::nullopt;
    };
    disk.trashItem = [calls, authorizedRoot, reviewed, batch](const FileURL& url) {
        MoveConditions conditions{authorizedRoot, std::nullopt, batch.get()};
        if (reviewed->url == url) {
            conditions.identity = reviewed->identity;
        }
        return gruk::trashItem(url, conditions, calls);
    };
    disk.fileExists = [calls](const FileURL& url) { return itemIsReachable(url, calls); };
    disk.moveItem = [calls, authorizedRoot, batch](const FileURL& from, const FileURL& to) {
        restoreTrashedItem(from, to, {authorizedRoot, std::nullopt, batch.get()}, calls);
    };
    disk.volumeRoot = [calls](const FileURL& url) { return liveVolumeRoot(url, calls); };
    disk.standsInTrash = [calls](const FileURL& url) { return itemStands(url, calls); };
    disk.prepare = [calls, authorizedRoot, batch](const std::vector<FileURL>& urls) {
        prepareToTrash(urls, {authorizedRoot, std::nullopt, batch.get()}, calls);
    };
    disk.hiddenTrash = [calls](const FileURL& url) { return gruk::hiddenTrash(url, calls); };
    disk.own = OwnItems(own, calls);
    return disk;
}

/// Why the item may not be moved; none when it may.
std::optional<TrashReason> trashRefusal(const TrashCalls& calls, const FileURL& url,
                                        const FileURL& root, const FileIdentity& expected)
{
    if (!isInsideRoot(url, root)) {
        return TrashReason::outsideAuthorizedRoot;
    }
    if (isProtectedLocation(url, calls.volumeRoot(url)) || calls.own.moveWith(url)) {
        return TrashReason::protectedLocation;
    }
    if (url.path() == root.path()) {
        return TrashReason::authorizedRoot;
    }
    const std::optional<FileIdentity> identity = calls.identityReader(url);
    if (!identity) {
        return TrashReason::missingAtReviewedPath;
    }
    return *identity == expected ? std::nullopt
                                 : std::optional(TrashReason::itemChangedSinceReview);
}

/// The requests with their places standardised, and of those for one place only the first.
std::vector<TrashRequest> withoutRepetitions(const std::vector<TrashRequest>& requests)
{
    std::vector<TrashRequest> items;
    std::set<std::string> seen;
    for (const TrashRequest& request : requests) {
        FileURL url = request.url.standardized();
        if (seen.insert(url.path()).second) {
            items.push_back({std::move(url), request.allocatedSize, request.expectedIdentity});
        }
    }
    return items;
}

/// How many items are prepared together. A process that is killed leaves the info files of no more
/// than these behind without their items.
constexpr std::size_t preparedTogether = 64;

/// Tells of what is about to move, where it is more than one item.
void prepare(const TrashCalls& calls, std::span<const TrashRequest> items, const FileURL& root)
{
    if (!calls.prepare || items.size() < 2) {
        return;
    }
    std::vector<FileURL> urls;
    for (const TrashRequest& item : items) {
        if (!trashRefusal(calls, item.url, root, item.expectedIdentity)) {
            urls.push_back(item.url);
        }
    }
    calls.prepare(urls);
}

}  // namespace

Bytes TrashOperation::totalBytes() const
{
    Bytes total = 0;
    for (const TrashedItem& item : moved) {
        total = checkedAdd(total, item.allocatedSize);
    }
    return total;
}

TrashService::TrashService(MoveCalls calls, OwnFolders own)
    : callsUnder_([calls = std::move(calls), own = std::move(own)](
                      const std::optional<FileURL>& root, const RootCheck& stands) {
          return trashDiskCalls(calls, own, root, stands);
      })
{
}

TrashService::TrashService(TrashCalls calls)
{
    if (!calls.identityReader) {
        calls.identityReader = currentIdentity;
    }
    if (!calls.volumeRoot) {
        calls.volumeRoot = defaultVolumeRoot;
    }
    if (!calls.standsInTrash) {
        calls.standsInTrash = calls.fileExists;
    }
    callsUnder_ = [calls = std::move(calls)](const std::optional<FileURL>&, const RootCheck&) {
        return calls;
    };
}

TrashOperation TrashService::moveToTrash(const std::vector<TrashRequest>& requests,
                                         const FileURL& authorizedRoot,
                                         const RootCheck& stands) const
{
    const FileURL root = authorizedRoot.standardized();
    const TrashCalls calls = callsUnder_(root, stands);
    const std::vector<TrashRequest> items = withoutRepetitions(requests);
    TrashOperation operation;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i % preparedTogether == 0) {
            const std::size_t count = std::min(preparedTogether, items.size() - i);
            prepare(calls, std::span(items).subspan(i, count), root);
        }
        const TrashRequest& item = items[i];
        const FileURL& url = item.url;
        if (const auto reason = trashRefusal(calls, url, root, item.expectedIdentity)) {
            operation.failures.push_back({url, *reason, {}});
            continue;
        }
        try {
            operation.moved.push_back({url, calls.trashItem(url), item.allocatedSize});
        } catch (const StrayedItemError& error) {
            operation.failures.push_back(
                {url, TrashReason::couldNotTrash, describe(error), FileURL(error.place())});
        } catch (const std::exception& error) {
            operation.failures.push_back({url, TrashReason::couldNotTrash, describe(error)});
        }
    }
    return operation;
}

RestoreOperation TrashService::restore(const std::vector<TrashedItem>& items,
                                       const std::optional<FileURL>& authorizedRoot) const
{
    const TrashCalls calls = callsUnder_(authorizedRoot, {});
    RestoreOperation operation;
    for (const TrashedItem& item : items) {
        if (calls.fileExists(item.originalURL)) {
            operation.failures.push_back({item.originalURL, TrashReason::destinationExists, {}});
            continue;
        }
        if (!calls.standsInTrash(item.trashURL)) {
            operation.failures.push_back({item.trashURL, TrashReason::missingFromTrash, {}});
            continue;
        }
        try {
            calls.moveItem(item.trashURL, item.originalURL);
            operation.restored.push_back(item);
        } catch (const std::exception& error) {
            operation.failures.push_back(
                {item.originalURL, TrashReason::couldNotRestore, describe(error)});
        }
    }
    return operation;
}

std::optional<FileURL> TrashService::hiddenTrash(const FileURL& url) const
{
    const TrashCalls calls = callsUnder_(std::nullopt, {});
    return calls.hiddenTrash ? calls.hiddenTrash(url.standardized()) : std::nullopt;
}

std::optional<FileIdentity> TrashService::currentIdentity(const FileURL& url)
{
    const std::optional<ItemIdentity> identity = itemIdentity(url.standardized());
    return identity ? std::optional(fileIdentity(*identity)) : std::nullopt;
}

}  // namespace gruk
