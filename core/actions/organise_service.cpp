#include "core/actions/organise_service.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "core/actions/hoard_name.h"
#include "core/actions/json_fields.h"
#include "core/actions/stash_journal.h"
#include "core/patrol/metadata_reader.h"
#include "platform/files/metadata.h"
#include "platform/files/move_batch.h"
#include "platform/files/moves.h"
#include "platform/foundation/canonical_text.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

using Reason = StashFailure::Reason;

std::optional<ItemFacts> fileFactsOf(const FileURL& url)
{
    try {
        return itemFacts(url);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

FileKind kindOnDisk(const FileURL& url)
{
    const std::optional<ItemFacts> facts = fileFactsOf(url);
    return classify(url.lastPathComponent(), facts && facts->type == ItemType::directory,
                    MetadataReader::isScreenshot(url));
}

Bytes plannedSize(const FileURL& url)
{
    const std::optional<ItemFacts> facts = fileFactsOf(url);
    // A sparse file can claim any length, and the sum of a plan must hold them all.
    constexpr Bytes largest = Bytes{1} << 50U;
    return facts && facts->type != ItemType::directory ? std::min(facts->logicalSize, largest) : 0;
}

OrganiseCalls organiseDiskCalls(const MoveCalls& calls, const OwnFolders& own,
                                const std::optional<FileURL>& authorizedRoot,
                                const RootCheck& stands)
{
    // All moves of one operation are one batch, which ends with these calls.
    const auto batch = std::make_shared<MoveBatch>(calls);
    if (authorizedRoot) {
        batch->stayIn(*authorizedRoot, stands);
    }
    const MoveConditions conditions{authorizedRoot, std::nullopt, batch.get()};
    OrganiseCalls disk;
    disk.contentsOfDirectory = [calls, batch](const FileURL& folder) {
        std::vector<FileURL> items = itemsIn(folder, HiddenItems::listed, calls);
        batch->requireRoot();
        return items;
    };
    disk.fileExists = [calls](const FileURL& url) { return itemStands(url, calls); };
    disk.createDirectory = [calls, conditions](const FileURL& url) {
        makeDirectory(url, conditions, calls);
    };
    disk.moveItem = [calls, conditions, batch](const FileURL& from, const FileURL& to) {
        if (conditions.within && !isInsideRoot(from.standardized(), *conditions.within)) {
            throw FileError(std::make_error_code(std::errc::operation_not_permitted), "move",
                            from.path(), "it lies outside the folder that was granted");
        }
        gruk::moveItem(from, to, conditions, calls);
    };
    disk.writeJournal = [calls, conditions](const StashJournalFile& journal, const FileURL& realm) {
        replaceOwnFile(realm.appending(OrganiseService::journalFileName),
                       encodedStashJournal(journal), conditions, calls, ownStashJournal());
    };
    disk.kindOf = kindOnDisk;
    disk.fileSize = plannedSize;
    disk.volumeRoot = [calls](const FileURL& url) { return liveFolderVolumeRoot(url, calls); };
    disk.now = Date::now;
    disk.own = OwnItems(own, calls);
    return disk;
}

std::string folderName(FileKind kind, const FolderOverrides& overrides)
{
    const auto found = overrides.find(kind);
    return found != overrides.end() ? found->second
                                    : std::string(OrganiseDefaults::folderName(kind));
}

/// The names of all destination folders.
std::set<std::string, std::less<>> reservedNames(const FolderOverrides& overrides)
{
    std::set<std::string, std::less<>> names;
    for (const FileKind kind : allFileKinds) {
        if (kind != FileKind::folder) {
            names.insert(folderName(kind, overrides));
        }
    }
    return names;
}

/// Why the realm may not be organised; none when it may.
std::optional<Reason> refusal(const OrganiseCalls& calls, const FileURL& realm,
                              const FileURL& authorizedRoot)
{
    if (!isInsideRoot(realm, authorizedRoot.standardized())) {
        return Reason::outsideAuthorizedRoot;
    }
    if (isProtectedLocation(realm, calls.volumeRoot(realm)) || calls.own.contain(realm)) {
        return Reason::protectedLocation;
    }
    return std::nullopt;
}

/// The loose files among `contents`, by kind.
std::map<FileKind, std::vector<FileURL>> looseFiles(const OrganiseCalls& calls,
                                                    const std::vector<FileURL>& contents,
                                                    const FolderOverrides& overrides)
{
    const auto reserved = reservedNames(overrides);
    std::map<FileKind, std::vector<FileURL>> files;
    for (const FileURL& url : contents) {
        const std::string_view name = url.lastPathComponent();
        if (name.starts_with('.') || name.find(hoardMark) != std::string_view::npos
            || reserved.contains(name) || calls.own.moveWith(url)) {
            continue;
        }
        if (const FileKind kind = calls.kindOf(url); kind != FileKind::folder) {
            files[kind].push_back(url);
        }
    }
    return files;
}

/// Whether the name stands for one folder right below the realm.
bool isFolderName(std::string_view name)
{
    return name != ".." && name.find('/') == std::string_view::npos;
}

/// Whether the name stands for the realm itself.
bool namesTheRealm(std::string_view name)
{
    return name.empty() || name == ".";
}

void failAll(const OrganisePlan::CategoryMove& move, Reason reason, const std::string& message,
             StashOperation& operation)
{
    for (const FileURL& file : move.files) {
        operation.failures.push_back({file, reason, message});
    }
}

/// Carries out one category, adding to `operation`.
void moveCategory(const OrganiseCalls& calls, const OrganisePlan::CategoryMove& move,
                  const FileURL& realm, StashOperation& operation)
{
    if (namesTheRealm(move.destinationFolderName)) {
        // Each file stands there already.
        failAll(move, Reason::destinationExists, {}, operation);
        return;
    }
    if (!isFolderName(move.destinationFolderName)) {
        failAll(move, Reason::couldNotStash,
                "\"" + move.destinationFolderName + "\" cannot be the name of a folder", operation);
        return;
    }
    const FileURL target = realm.appending(move.destinationFolderName, FileURL::Names::directory);
    if (calls.own.contain(target)) {
        failAll(move, Reason::protectedLocation, {}, operation);
        return;
    }
    if (!calls.fileExists(target)) {
        try {
            calls.createDirectory(target);
        } catch (const std::exception& error) {
            failAll(move, Reason::couldNotStash, describe(error), operation);
            return;
        }
    }
    for (const FileURL& file : move.files) {
        const FileURL destination = target.appending(
            file.lastPathComponent(),
            file.namesDirectory() ? FileURL::Names::directory : FileURL::Names::item);
        if (calls.own.moveWith(file)) {
            operation.failures.push_back({file, Reason::protectedLocation, {}});
            continue;
        }
        if (calls.fileExists(destination)) {
            operation.failures.push_back({file, Reason::destinationExists, {}});
            continue;
        }
        try {
            calls.moveItem(file, destination);
            operation.moved.push_back({file, destination});
        } catch (const std::exception& error) {
            operation.failures.push_back({file, Reason::couldNotStash, describe(error)});
        }
    }
}

}  // namespace

OrganiseService::OrganiseService(MoveCalls calls, OwnFolders own)
    : callsUnder_([calls = std::move(calls), own = std::move(own)](
                      const std::optional<FileURL>& root, const RootCheck& stands) {
          return organiseDiskCalls(calls, own, root, stands);
      })
{
}

OrganiseService::OrganiseService(OrganiseCalls calls)
    : callsUnder_([calls = std::move(calls)](const std::optional<FileURL>&, const RootCheck&) {
          return calls;
      })
{
}

OrganisePlan OrganiseService::planOrganise(const FileURL& realm, const FileURL& authorizedRoot,
                                           const FolderOverrides& overrides,
                                           const RootCheck& stands) const
{
    OrganisePlan plan{realm.standardized(), {}};
    const OrganiseCalls calls = callsUnder_(authorizedRoot.standardized(), stands);
    if (refusal(calls, plan.realm, authorizedRoot)) {
        return plan;
    }
    std::vector<FileURL> contents;
    try {
        contents = calls.contentsOfDirectory(plan.realm);
    } catch (const std::exception&) {
        return plan;
    }
    for (auto& [kind, files] : looseFiles(calls, contents, overrides)) {
        std::ranges::sort(files, [](const FileURL& a, const FileURL& b) {
            return plainCompare(a.lastPathComponent(), b.lastPathComponent()) < 0;
        });
        Bytes total = 0;
        for (const FileURL& file : files) {
            total = checkedAdd(total, calls.fileSize(file));
        }
        plan.moves.push_back({kind, folderName(kind, overrides), files, total});
    }
    return plan;
}

StashOperation OrganiseService::applyPlan(const OrganisePlan& plan, const FileURL& authorizedRoot,
                                          const RootCheck& stands) const
{
    const FileURL realm = plan.realm.standardized();
    const OrganiseCalls calls = callsUnder_(authorizedRoot.standardized(), stands);
    if (const auto reason = refusal(calls, realm, authorizedRoot)) {
        return {std::nullopt, {}, {{realm, *reason, {}}}};
    }
    if (plan.moves.empty()) {
        return {};
    }
    StashOperation operation{realm, {}, {}};
    for (const OrganisePlan::CategoryMove& move : plan.moves) {
        moveCategory(calls, move, realm, operation);
    }
    if (operation.moved.empty()) {
        return operation;
    }
    try {
        calls.writeJournal({realm, operation.moved, atMicrosecond(calls.now())}, realm);
    } catch (const std::exception& error) {
        operation.failures.push_back({realm, Reason::couldNotWriteJournal, describe(error)});
    }
    return operation;
}

}  // namespace gruk
