#include "core/patrol/snapshot_scanner.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "core/patrol/child_lister.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/tree_walk.h"
#include "platform/files/metadata.h"
#include "platform/foundation/errors.h"
#include "platform/foundation/text_order.h"

namespace gruk {

namespace {

using Index = SnapshotEntries::Index;
constexpr Index noIndex = SnapshotEntries::noIndex;

/// What a walk records: all that it needs to know is local to the call.
class Recorder {
public:
    struct Directory {
        /// Its own entry; none for the root.
        Index entry = noIndex;
        /// How many entries of directories lead to what is in it, its own among them.
        Bytes level = 0;
    };

    Recorder(const PatrolProgressFunction& progress, const SteadyClock& clock,
             const std::stop_token& stop)
        : progress_(progress), pace_(clock), stop_(stop)
    {
    }

    [[nodiscard]] std::string_view name(const Directory& directory) const
    {
        return entries_.name(directory.entry);
    }

    void willVisit() const
    {
        if (stop_.stop_requested()) {
            throw CancelledError();
        }
    }

    void otherVolume(const Directory& parent, const ListedItem& item)
    {
        ++pathsScanned_;
        issues_.push_back(
            {pathOf(parent.entry, item.name), ScanIssue::Reason::differentFilesystem});
    }

    Directory directory(const Directory& parent, const ListedItem& item)
    {
        return {add(parent, item, 0), parent.level + 1};
    }

    /// Of a hard-linked file only the first path reached carries the bytes.
    void file(const Directory& parent, const ListedItem& item, FileMeeting meeting)
    {
        add(parent, item,
            meeting == FileMeeting::first ? counted(item.allocatedSize, parent.level + 1) : 0);
    }

    void listed(const Directory& directory)
    {
        if (progress_ && pace_.isDue()) {
            progress_(pathsScanned_, directory.entry == noIndex
                                         ? std::string()
                                         : entries_.relativePath(directory.entry));
        }
    }

    /// A directory that could not be listed is an issue; the root is the caller's failure.
    bool absorbs(const Directory& directory, const std::exception& error)
    {
        if (directory.entry == noIndex) {
            return false;
        }
        issues_.push_back({entries_.relativePath(directory.entry), issueReason(error)});
        return true;
    }

    void finish(ScanSnapshot& snapshot)
    {
        snapshot.entries = entries_.finish();
        std::sort(issues_.begin(), issues_.end(), [](const ScanIssue& a, const ScanIssue& b) {
            return localizedStandardCompare(a.relativePath, b.relativePath) < 0;
        });
        snapshot.issues = std::move(issues_);
    }

private:
    Index add(const Directory& parent, const ListedItem& item, Bytes bytes)
    {
        ++pathsScanned_;
        return entries_.add(parent.entry, item.name, bytes, item.dateModified, item.kind,
                            item.isDirectory);
    }

    /// What is recorded of a size that counts in that many entries, the file's own and those above.
    /// A file system may tell anything; whatever of a snapshot is added up must stay in the 64-bit
    /// range.
    Bytes counted(Bytes bytes, Bytes entries)
    {
        constexpr Bytes most = std::numeric_limits<Bytes>::max();
        Bytes share = 0;
        Bytes sum = 0;
        if (bytes < 0) {
            return 0;
        }
        if (__builtin_mul_overflow(bytes, entries, &share)
            || __builtin_add_overflow(counted_, share, &sum)) {
            bytes = (most - counted_) / entries;
            sum = counted_ + bytes * entries;
        }
        counted_ = sum;
        return bytes;
    }

    [[nodiscard]] std::string pathOf(Index parent, std::string_view name) const
    {
        if (parent == noIndex) {
            return std::string(name);
        }
        return entries_.relativePath(parent).append("/").append(name);
    }

    const PatrolProgressFunction& progress_;
    ProgressPace pace_;
    const std::stop_token& stop_;
    SnapshotEntriesBuilder entries_;
    std::vector<ScanIssue> issues_;
    std::int64_t pathsScanned_ = 0;
    /// The sum of all entries that there will be.
    Bytes counted_ = 0;
};

}  // namespace

SnapshotScanner::SnapshotScanner() = default;

SnapshotScanner::SnapshotScanner(DirectoryReader reader, SteadyClock clock)
    : reader_(std::move(reader)), clock_(std::move(clock))
{
}

ScanSnapshot SnapshotScanner::scan(const FileURL& root, Date capturedAt,
                                   const PatrolProgressFunction& progress, std::stop_token stop)
{
    const MutexLock lock(oneAtATime_);
    const FileURL standardized = root.standardized();
    ScanSnapshot snapshot;
    snapshot.id = UUID::random();
    snapshot.rootPath = standardized.path();
    snapshot.capturedAt = capturedAt;
    const std::int32_t rootDevice = itemFacts(standardized).deviceID;
    if (stop.stop_requested()) {
        throw CancelledError();
    }
    Recorder recorder(progress, clock_, stop);
    {
        // Ended before the entries are put in order, for which its few bytes an item are of use.
        const auto lister =
            reader_ ? makeFunctionLister(standardized, reader_) : makeLiveLister(standardized);
        TreeWalk(*lister, rootDevice, stop, recorder).run();
    }
    recorder.finish(snapshot);
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
