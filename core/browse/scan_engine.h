#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/browse/directory_stats.h"
#include "core/patrol/metadata_reader.h"
#include "core/patrol/progress_pace.h"
#include "platform/foundation/file_url.h"
#include "platform/foundation/mutex.h"

namespace gruk {

/// Told at the end of a directory, at most ten times a second, on the walking thread. The first
/// directory is always told of, the last one not particularly.
using ScanProgressFunction = std::function<void(const ScanProgress&)>;

/// Counts what lies under a folder, and remembers the answer. Never follows a link, never enters
/// another volume. Records nothing of single items; that is `SnapshotScanner`.
///
/// Calls run one at a time: a second one waits for the first, and then finds its answer in the
/// cache if it asked for the same. A walk that was told to stop is waited for no longer: it may
/// hang in a disk that does not answer, and what it still finds is not remembered. Any thread but
/// the main one, since a call waits for the disk and for other calls.
class ScanEngine {
public:
    /// Walks the live file system through open descriptors.
    ScanEngine() = default;

    /// Walks with `reader`; the same loop and the same rules. `clock` spaces the progress.
    explicit ScanEngine(DirectoryReader reader, SteadyClock clock = steadyTime);

    /// What lies under `url`, which is standardised first; from the cache without a word of
    /// progress if it was counted before and not invalidated since. `progress` may be empty.
    ///
    /// A directory that may not be listed, also the root, is one `restrictedCount`. Throws
    /// `FileError` (or what the reader throws) for any other failure, at any depth, and
    /// `CancelledError` at the next directory after a stop is requested, and at once while waiting
    /// for another call. Nothing partial is returned or remembered.
    [[nodiscard]] DirectoryStats stats(const FileURL& url,
                                       const ScanProgressFunction& progress = {},
                                       const std::stop_token& stop = {});

    /// Forgets the answer for `url`; with none, every answer. Waits for a walk that runs.
    void invalidate(const std::optional<FileURL>& url = std::nullopt);

    /// Forgets every answer that a change of one of `touched` may have made another: of the items
    /// themselves, of what lies in them and of the folders above them. Waits for a walk that runs.
    void invalidateAround(const std::vector<FileURL>& touched);

private:
    class Turn;

    void waitForTurn(const std::stop_token& stop) GRUK_REQUIRES(lock_);
    void endTurn(std::uint64_t number);
    void wakeWaiting();
    [[nodiscard]] DirectoryStats walk(const FileURL& root, const ScanProgressFunction& progress,
                                      const std::stop_token& stop) const;

    DirectoryReader reader_;
    SteadyClock clock_ = steadyTime;
    /// Held for moments only, never during a walk.
    Mutex lock_;
    std::condition_variable_any turnEnded_;
    /// Which walk has the turn, by its number, and what tells it to stop; 0 for none.
    std::uint64_t walking_ GRUK_GUARDED_BY(lock_) = 0;
    std::stop_token walkingStop_ GRUK_GUARDED_BY(lock_);
    std::uint64_t lastNumber_ GRUK_GUARDED_BY(lock_) = 0;
    /// By standardised path.
    std::unordered_map<std::string, DirectoryStats> cache_ GRUK_GUARDED_BY(lock_);
};

}  // namespace gruk
