#include "core/actions/stash_service.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <set>
#include <utility>

#include "core/actions/hoard_name.h"
#include "core/actions/json_fields.h"
#include "core/actions/stash_journal.h"
#include "platform/files/move_batch.h"
#include "platform/files/moves.h"
#include "platform/files/volumes.h"
#include "platform/foundation/canonical_text.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

using Reason = StashFailure::Reason;

/// Of a folder itself: a link is no Hoard, whatever it leads to, and a share behind it may hang.
std::optional<StashJournalFile> journalIn(const FileURL& folder, const MoveCalls& calls)
{
    const auto text = readOwnFile(folder.appending(StashService::journalFileName),
                                  longestStashJournal, calls, folder.deletingLastPathComponent());
    return text ? decodedStashJournal(*text) : std::nullopt;
}

StashCalls stashDiskCalls(const MoveCalls& calls, const OwnFolders& own,
                          const std::optional<FileURL>& authorizedRoot, const RootCheck& stands)
{
    // All moves of one operation are one batch, which ends with these calls.
    const auto batch = std::make_shared<MoveBatch>(calls);
    if (authorizedRoot) {
        batch->stayIn(*authorizedRoot, stands);
    }
    const MoveConditions conditions{authorizedRoot, std::nullopt, batch.get()};
    StashCalls disk;
    disk.contentsOfDirectory = [calls, batch](const FileURL& folder) {
        std::vector<FileURL> items = itemsIn(folder, HiddenItems::skipped, calls);
        batch->requireRoot();
        return items;
    };
    disk.fileExists = [calls](const FileURL& url) { return itemStands(url, calls); };
    disk.createDirectory = [calls, conditions](const FileURL& url) {
        makeDirectory(url, conditions, calls);
    };
    disk.moveItem = [calls, conditions, batch](const FileURL& from, const FileURL& to) {
        gruk::moveItem(from, to, conditions, calls);
    };
    disk.writeJournal = [calls, conditions](const StashJournalFile& journal,
                                            const FileURL& folder) {
        replaceOwnFile(folder.appending(StashService::journalFileName),
                       encodedStashJournal(journal), conditions, calls, ownStashJournal());
    };
    disk.readJournal = [calls](const FileURL& folder) { return journalIn(folder, calls); };
    disk.now = Date::now;
    disk.dateNamer = dayMonthYear;
    disk.volumeRoot = [calls](const FileURL& url) { return liveFolderVolumeRoot(url, calls); };
    disk.mountedIn = [calls](const FileURL& folder) { return mountedNames(folder, calls); };
    disk.own = OwnItems(own, calls);
    return disk;
}

/// What is in a folder, as far as a stash has to do with it: earlier Hoards are left out.
struct Stashable {
    std::vector<FileURL> items;
    /// What may not be moved. Nothing at or below it was touched: a share that is mounted there may
    /// hang.
    std::vector<FileURL> barred;
};

/// Throws when it cannot be told what is mounted there.
Stashable stashableItems(const StashCalls& calls, const FileURL& folder,
                         const std::vector<FileURL>& contents)
{
    const auto mounted = calls.mountedIn ? calls.mountedIn(folder) : std::set<std::string>();
    Stashable found;
    for (const FileURL& url : contents) {
        if (mounted.contains(std::string(url.lastPathComponent())) || calls.own.moveWith(url)) {
            found.barred.push_back(url);
        } else if (!calls.readJournal(url)) {
            found.items.push_back(url);
        }
    }
    const auto byName = [](const FileURL& a, const FileURL& b) {
        return plainCompare(a.lastPathComponent(), b.lastPathComponent()) < 0;
    };
    std::ranges::sort(found.items, byName);
    std::ranges::sort(found.barred, byName);
    return found;
}

std::set<std::string> names(const std::vector<FileURL>& contents)
{
    std::set<std::string> result;
    for (const FileURL& url : contents) {
        result.emplace(url.lastPathComponent());
    }
    return result;
}

std::string freeHoardName(const StashCalls& calls, const FileURL& folder,
                          const std::set<std::string>& taken)
{
    return uniqueName(hoardName(folder.lastPathComponent(), calls.dateNamer(calls.now())), taken);
}

StashOperation refused(const FileURL& url, Reason reason, std::string message = {})
{
    return {std::nullopt, {}, {{url, reason, std::move(message)}}};
}

/// Tells that what is barred stays.
StashOperation leaving(const std::vector<FileURL>& barred)
{
    StashOperation operation;
    for (const FileURL& item : barred) {
        operation.failures.push_back({item, Reason::protectedLocation, {}});
    }
    return operation;
}

/// Moves each item into the new Hoard and writes the journal.
StashOperation filledHoard(const StashCalls& calls, const FileURL& hoard, const Stashable& found)
{
    StashOperation operation = leaving(found.barred);
    operation.hoardFolder = hoard;
    for (const FileURL& item : found.items) {
        const FileURL target = hoard.appending(item.lastPathComponent(),
                                               item.namesDirectory() ? FileURL::Names::directory
                                                                     : FileURL::Names::item);
        try {
            calls.moveItem(item, target);
            operation.moved.push_back({item, target});
        } catch (const std::exception& error) {
            operation.failures.push_back({item, Reason::couldNotStash, describe(error)});
        }
    }
    if (operation.moved.empty()) {
        return operation;
    }
    try {
        calls.writeJournal({hoard, operation.moved, atMicrosecond(calls.now())}, hoard);
    } catch (const std::exception& error) {
        operation.failures.push_back({hoard, Reason::couldNotWriteJournal, describe(error)});
    }
    return operation;
}

}  // namespace

StashService::StashService(MoveCalls calls, OwnFolders own)
    : callsUnder_([calls = std::move(calls), own = std::move(own)](
                      const std::optional<FileURL>& root, const RootCheck& stands) {
          return stashDiskCalls(calls, own, root, stands);
      })
{
}

StashService::StashService(StashCalls calls)
    : callsUnder_([calls = std::move(calls)](const std::optional<FileURL>&, const RootCheck&) {
          return calls;
      })
{
}

StashOperation StashService::stashDesktop(const FileURL& desktop, const FileURL& authorizedRoot,
                                          const RootCheck& stands) const
{
    const FileURL folder = desktop.standardized();
    const FileURL root = authorizedRoot.standardized();
    const StashCalls calls = callsUnder_(root, stands);
    if (!isInsideRoot(folder, root)) {
        return refused(folder, Reason::outsideAuthorizedRoot);
    }
    if (isProtectedLocation(folder, calls.volumeRoot(folder)) || calls.own.contain(folder)) {
        return refused(folder, Reason::protectedLocation);
    }
    std::set<std::string> taken;
    Stashable found;
    try {
        const std::vector<FileURL> contents = calls.contentsOfDirectory(folder);
        taken = names(contents);
        found = stashableItems(calls, folder, contents);
    } catch (const std::exception& error) {
        return refused(folder, Reason::couldNotStash, describe(error));
    }
    if (found.items.empty()) {
        return leaving(found.barred);
    }
    const FileURL hoard =
        folder.appending(freeHoardName(calls, folder, taken), FileURL::Names::directory);
    try {
        calls.createDirectory(hoard);
    } catch (const std::exception& error) {
        return refused(hoard, Reason::couldNotStash, describe(error));
    }
    return filledHoard(calls, hoard, found);
}

StashRestoreOperation StashService::restore(const std::vector<StashedItem>& items,
                                            const std::optional<FileURL>& authorizedRoot,
                                            const RootCheck& stands) const
{
    const StashCalls calls = callsUnder_(authorizedRoot, stands);
    StashRestoreOperation operation;
    for (const StashedItem& item : items) {
        if (calls.fileExists(item.originalURL)) {
            operation.failures.push_back({item.originalURL, Reason::destinationExists, {}});
            continue;
        }
        if (!calls.fileExists(item.stashedURL)) {
            operation.failures.push_back({item.stashedURL, Reason::missingFromHoard, {}});
            continue;
        }
        try {
            calls.moveItem(item.stashedURL, item.originalURL);
            operation.restored.push_back(item);
        } catch (const std::exception& error) {
            operation.failures.push_back(
                {item.originalURL, Reason::couldNotRestore, describe(error)});
        }
    }
    return operation;
}

std::size_t StashService::stashableCount(const FileURL& desktop) const
{
    const StashCalls calls = callsUnder_(std::nullopt, {});
    try {
        const FileURL folder = desktop.standardized();
        return stashableItems(calls, folder, calls.contentsOfDirectory(folder)).items.size();
    } catch (const std::exception&) {
        return 0;
    }
}

std::string StashService::proposedHoardName(const FileURL& desktop) const
{
    const FileURL folder = desktop.standardized();
    const StashCalls calls = callsUnder_(std::nullopt, {});
    std::set<std::string> taken;
    try {
        taken = names(calls.contentsOfDirectory(folder));
    } catch (const std::exception&) {
        taken.clear();
    }
    return freeHoardName(calls, folder, taken);
}

}  // namespace gruk
