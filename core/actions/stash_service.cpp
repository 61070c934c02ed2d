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
#include "platform/foundation/canonical_text.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

using Reason = StashFailure::Reason;

/// A longer one is not one of ours: a name has at most 255 bytes.
constexpr std::size_t longestJournal = std::size_t{64} << 20U;

std::optional<StashJournalFile> journalIn(const FileURL& folder, const MoveCalls& calls)
{
    const auto text =
        readOwnFile(folder.appending(StashService::journalFileName), longestJournal, calls);
    return text ? decodedStashJournal(*text) : std::nullopt;
}

StashCalls stashDiskCalls(const MoveCalls& calls, const std::optional<FileURL>& authorizedRoot,
                          const RootCheck& stands)
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
                       encodedStashJournal(journal), conditions, calls);
    };
    disk.readJournal = [calls](const FileURL& folder) { return journalIn(folder, calls); };
    disk.now = Date::now;
    disk.dateNamer = dayMonthYear;
    disk.volumeRoot = [calls](const FileURL& url) { return liveFolderVolumeRoot(url, calls); };
    return disk;
}

/// Those that a stash takes: all but earlier Hoards.
std::vector<FileURL> stashableItems(const StashCalls& calls, std::vector<FileURL> contents)
{
    std::erase_if(contents, [&](const FileURL& url) { return calls.readJournal(url).has_value(); });
    return contents;
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

/// Moves each item into the new Hoard and writes the journal.
StashOperation filledHoard(const StashCalls& calls, const FileURL& hoard,
                           const std::vector<FileURL>& items)
{
    StashOperation operation{hoard, {}, {}};
    for (const FileURL& item : items) {
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

StashService::StashService(MoveCalls calls)
    : callsUnder_(
        [calls = std::move(calls)](const std::optional<FileURL>& root, const RootCheck& stands) {
            return stashDiskCalls(calls, root, stands);
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
    if (isProtectedLocation(folder, calls.volumeRoot(folder))) {
        return refused(folder, Reason::protectedLocation);
    }
    std::vector<FileURL> contents;
    try {
        contents = calls.contentsOfDirectory(folder);
    } catch (const std::exception& error) {
        return refused(folder, Reason::couldNotStash, describe(error));
    }
    const std::set<std::string> taken = names(contents);
    std::vector<FileURL> items = stashableItems(calls, std::move(contents));
    if (items.empty()) {
        return {};
    }
    std::ranges::sort(items, [](const FileURL& a, const FileURL& b) {
        return plainCompare(a.lastPathComponent(), b.lastPathComponent()) < 0;
    });
    const FileURL hoard =
        folder.appending(freeHoardName(calls, folder, taken), FileURL::Names::directory);
    try {
        calls.createDirectory(hoard);
    } catch (const std::exception& error) {
        return refused(hoard, Reason::couldNotStash, describe(error));
    }
    return filledHoard(calls, hoard, items);
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
        return stashableItems(calls, calls.contentsOfDirectory(desktop.standardized())).size();
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
