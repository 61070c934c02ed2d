#include "core/browse/scan_engine.h"

#include <string_view>
#include <utility>

#include "core/patrol/child_lister.h"
#include "core/patrol/tree_walk.h"
#include "platform/files/metadata.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// What a walk counts.
class Counter {
public:
    struct Directory {
        std::string name;
    };

    Counter(const ScanProgressFunction& progress, const SteadyClock& clock)
        : progress_(progress), pace_(clock)
    {
    }

    [[nodiscard]] const DirectoryStats& stats() const { return stats_; }

    static std::string_view name(const Directory& directory) { return directory.name; }
    // Cancellation is looked at between directories only.
    static void willVisit() {}
    static void otherVolume(const Directory& /*parent*/, const ListedItem& /*item*/) {}

    static Directory directory(const Directory& /*parent*/, const ListedItem& item)
    {
        return {std::string(item.name)};
    }

    void file(const Directory& /*parent*/, const ListedItem& item, FileMeeting meeting)
    {
        stats_.fileCount = checkedAdd(stats_.fileCount, 1);
        if (meeting == FileMeeting::first) {
            stats_.allocated = checkedAdd(stats_.allocated, item.allocatedSize);
            stats_.logical = checkedAdd(stats_.logical, item.logicalSize);
        }
    }

    void listed(const Directory& /*directory*/)
    {
        if (progress_ && pace_.isDue()) {
            progress_({stats_.fileCount, stats_.allocated});
        }
    }

    bool absorbs(const Directory& /*directory*/, const std::exception& error)
    {
        if (meaning(error) != ErrorMeaning::accessRefused) {
            return false;
        }
        stats_.restrictedCount = checkedAdd(stats_.restrictedCount, 1);
        return true;
    }

private:
    const ScanProgressFunction& progress_;
    ProgressPace pace_;
    DirectoryStats stats_;
};

}  // namespace

ScanEngine::ScanEngine(DirectoryReader reader, SteadyClock clock)
    : reader_(std::move(reader)), clock_(std::move(clock))
{
}

DirectoryStats ScanEngine::stats(const FileURL& url, const ScanProgressFunction& progress,
                                 const std::stop_token& stop)
{
    const FileURL root = url.standardized();
    const MutexLock lock(oneAtATime_);
    if (const auto known = cache_.find(root.path()); known != cache_.end()) {
        return known->second;
    }
    return cache_.emplace(root.path(), walk(root, progress, stop)).first->second;
}

void ScanEngine::invalidate(const std::optional<FileURL>& url)
{
    const MutexLock lock(oneAtATime_);
    if (url) {
        cache_.erase(url->standardized().path());
    } else {
        cache_.clear();
    }
}

DirectoryStats ScanEngine::walk(const FileURL& root, const ScanProgressFunction& progress,
                                const std::stop_token& stop) const
{
    // Of the root itself: a link counts as on the volume that the link is on.
    const std::int32_t rootDevice = itemFacts(root).deviceID;
    const auto lister =
        reader_ ? makeFunctionLister(root, reader_) : makeLiveLister(root, ListedDetail::sizes);
    Counter counter(progress, clock_);
    TreeWalk(*lister, rootDevice, stop, counter).run();
    return counter.stats();
}

}  // namespace gruk
