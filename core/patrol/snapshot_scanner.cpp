#include "core/patrol/snapshot_scanner.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_set.hpp>
#include <chrono>
#include <vector>

#include "core/patrol/child_lister.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "platform/files/metadata.h"
#include "platform/foundation/errors.h"
#include "platform/foundation/text_order.h"

namespace gruk {

namespace {

using Index = SnapshotEntries::Index;
constexpr Index noIndex = SnapshotEntries::noIndex;

/// One walk: all that it needs to know is local to the call.
class Walk {
public:
    Walk(ChildLister& lister, std::int32_t rootDevice, const PatrolProgressFunction& progress,
         const std::stop_token& stop)
        : lister_(lister), rootDevice_(rootDevice), progress_(progress), stop_(stop)
    {
    }

    /// Lists directory by directory, the last one found first. Its own stack, so that no depth
    /// exhausts the call stack.
    void run()
    {
        pending_.push_back({noIndex, 0});
        while (!pending_.empty()) {
            const PendingDirectory directory = pending_.back();
            pending_.pop_back();
            throwIfCancelled();
            if (listChildren(directory)) {
                reportProgress(directory.entry);
            }
        }
    }

    void finish(ScanSnapshot& snapshot)
    {
        // Done with, and a few bytes an item that the ordering can use.
        seenHardLinks_ = {};
        pending_ = {};
        snapshot.entries = entries_.finish();
        std::sort(issues_.begin(), issues_.end(), [](const ScanIssue& a, const ScanIssue& b) {
            return localizedStandardCompare(a.relativePath, b.relativePath) < 0;
        });
        snapshot.issues = std::move(issues_);
    }

private:
    struct PendingDirectory {
        /// Its own entry; none for the root.
        Index entry;
        std::uint32_t depth;
    };

    /// The identity of a file's storage.
    struct HardLinkKey {
        std::int32_t deviceID;
        std::uint64_t inode;
        friend bool operator==(const HardLinkKey&, const HardLinkKey&) = default;
        friend std::size_t hash_value(const HardLinkKey& key)  // NOLINT: Boost looks for the name
        {
            return std::hash<std::uint64_t>()(key.inode
                                              ^ (static_cast<std::uint64_t>(key.deviceID) << 40U));
        }
    };

    void throwIfCancelled() const
    {
        if (stop_.stop_requested()) {
            throw CancelledError();
        }
    }

    /// False when the directory could not be listed, which is then an issue.
    bool listChildren(const PendingDirectory& directory)
    {
        const bool isRoot = directory.entry == noIndex;
        try {
            const std::string_view name =
                isRoot ? std::string_view() : entries_.name(directory.entry);
            lister_.list(directory.depth, name,
                         [&](const ListedItem& item) { visit(directory, item); });
            return true;
        } catch (const CancelledError&) {
            throw;
        } catch (const std::exception& error) {
            if (isRoot) {
                throw;
            }
            issues_.push_back({entries_.relativePath(directory.entry), issueReason(error)});
            return false;
        }
    }

    void visit(const PendingDirectory& directory, const ListedItem& item)
    {
        throwIfCancelled();
        // A link costs nothing and is never followed.
        if (item.isSymlink) {
            return;
        }
        ++pathsScanned_;
        if (item.deviceID != rootDevice_) {
            issues_.push_back(
                {pathOf(directory.entry, item.name), ScanIssue::Reason::differentFilesystem});
            return;
        }
        const Index entry = entries_.add(directory.entry, item.name, bytesOf(item),
                                         item.dateModified, item.kind, item.isDirectory);
        if (item.isDirectory) {
            pending_.push_back({entry, directory.depth + 1});
        }
    }

    /// What this path accounts for: of a hard-linked file only the first path reached counts.
    Bytes bytesOf(const ListedItem& item)
    {
        if (item.isDirectory) {
            return 0;
        }
        if (item.linkCount >= 2 && !seenHardLinks_.insert({item.deviceID, item.inode}).second) {
            return 0;
        }
        return item.allocatedSize;
    }

    std::string pathOf(Index parent, std::string_view name) const
    {
        if (parent == noIndex) {
            return std::string(name);
        }
        return entries_.relativePath(parent).append("/").append(name);
    }

    void reportProgress(Index entry)
    {
        if (!progress_) {
            return;
        }
        const auto now = std::chrono::steady_clock::now();
        if (lastProgress_ && now - *lastProgress_ < std::chrono::milliseconds(100)) {
            return;
        }
        lastProgress_ = now;
        progress_(pathsScanned_, entry == noIndex ? std::string() : entries_.relativePath(entry));
    }

    ChildLister& lister_;
    std::int32_t rootDevice_;
    const PatrolProgressFunction& progress_;
    const std::stop_token& stop_;

    std::vector<PendingDirectory> pending_;
    SnapshotEntriesBuilder entries_;
    boost::unordered_flat_set<HardLinkKey> seenHardLinks_;
    std::vector<ScanIssue> issues_;
    std::int64_t pathsScanned_ = 0;
    std::optional<std::chrono::steady_clock::time_point> lastProgress_;
};

}  // namespace

SnapshotScanner::SnapshotScanner() = default;

SnapshotScanner::SnapshotScanner(DirectoryReader reader) : reader_(std::move(reader)) {}

ScanSnapshot SnapshotScanner::scan(const FileURL& root, Date capturedAt,
                                   const PatrolProgressFunction& progress, std::stop_token stop)
{
    const std::lock_guard lock(oneAtATime_);
    const FileURL standardized = root.standardized();
    ScanSnapshot snapshot;
    snapshot.id = UUID::random();
    snapshot.rootPath = standardized.path();
    snapshot.capturedAt = capturedAt;
    const std::int32_t rootDevice = itemFacts(standardized).deviceID;
    if (stop.stop_requested()) {
        throw CancelledError();
    }
    const auto lister =
        reader_ ? makeFunctionLister(standardized, reader_) : makeLiveLister(standardized);
    Walk walk(*lister, rootDevice, progress, stop);
    walk.run();
    walk.finish(snapshot);
    snapshot.isComplete = true;
    return snapshot;
}

ScanIssue::Reason issueReason(const std::exception& listingError)
{
    switch (meaning(listingError)) {
    case ErrorMeaning::accessRefused:
        return ScanIssue::Reason::permissionDenied;
    case ErrorMeaning::noSuchItem:
        return ScanIssue::Reason::disappeared;
    case ErrorMeaning::other:
        break;
    }
    return ScanIssue::Reason::unreadable;
}

}  // namespace gruk
