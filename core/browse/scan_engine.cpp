#include "core/browse/scan_engine.h"

#include <string_view>
#include <utility>

#include "core/browse/touched_places.h"
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
            // What a sparse file says of its length is no room on a disk, and no sum is safe of it.
            stats_.logical = saturatingAdd(stats_.logical, item.logicalSize);
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

/// The turn of one walk, which ends with its block. Those who wait for theirs hear of it, and of
/// the stop that ends it early.
class ScanEngine::Turn {
public:
    Turn(ScanEngine& engine, const std::stop_token& stop)
        : engine_(engine), onStop_(stop, [&engine] { engine.wakeWaiting(); })
    {
    }
    ~Turn() { engine_.endTurn(number); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    /// 0 until it has begun.
    std::uint64_t number = 0;

private:
    ScanEngine& engine_;
    std::stop_callback<std::function<void()>> onStop_;
};

DirectoryStats ScanEngine::stats(const FileURL& url, const ScanProgressFunction& progress,
                                 const std::stop_token& stop)
{
    const FileURL root = url.standardized();
    Turn turn(*this, stop);
    {
        const MutexLock lock(lock_);
        waitForTurn(stop);
        if (const auto known = cache_.find(root.path()); known != cache_.end()) {
            return known->second;
        }
        if (stop.stop_requested()) {
            throw CancelledError();
        }
        turn.number = ++lastNumber_;
        walking_ = turn.number;
        walkingStop_ = stop;
    }
    const DirectoryStats result = walk(root, progress, stop);
    const MutexLock lock(lock_);
    // Not when somebody went on without this walk: what it saw may be forgotten by now.
    if (walking_ == turn.number) {
        cache_.emplace(root.path(), result);
    }
    return result;
}

/// Returns when no walk has the turn, or at once when the caller is told to stop. A walk that was
/// told to stop has lost its turn to whoever finds it here.
void ScanEngine::waitForTurn(const std::stop_token& stop)
{
    while (walking_ != 0 && !walkingStop_.stop_requested()) {
        if (stop.stop_requested()) {
            return;
        }
        turnEnded_.wait(lock_);
    }
    walking_ = 0;
}

void ScanEngine::endTurn(std::uint64_t number)
{
    const MutexLock lock(lock_);
    if (number != 0 && walking_ == number) {
        walking_ = 0;
        turnEnded_.notify_all();
    }
}

void ScanEngine::wakeWaiting()
{
    const MutexLock lock(lock_);
    turnEnded_.notify_all();
}

void ScanEngine::invalidate(const std::optional<FileURL>& url)
{
    const MutexLock lock(lock_);
    waitForTurn({});
    if (url) {
        cache_.erase(url->standardized().path());
    } else {
        cache_.clear();
    }
}

void ScanEngine::invalidateAround(const std::vector<FileURL>& touched)
{
    const TouchedPlaces places(touched);
    const MutexLock lock(lock_);
    waitForTurn({});
    std::erase_if(cache_, [&](const auto& known) { return places.reach(known.first); });
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
