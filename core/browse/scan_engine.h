#pragma once

#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>

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
/// cache if it asked for the same. Any thread but the main one, since a call waits for the disk
/// and for other calls.
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
    /// `CancelledError` at the next directory after a stop is requested, also when that was while
    /// waiting for another call. Nothing partial is returned or remembered.
    [[nodiscard]] DirectoryStats stats(const FileURL& url,
                                       const ScanProgressFunction& progress = {},
                                       const std::stop_token& stop = {});

    /// Forgets the answer for `url`; with none, every answer. Waits for a walk that runs.
    void invalidate(const std::optional<FileURL>& url = std::nullopt);

private:
    [[nodiscard]] DirectoryStats walk(const FileURL& root, const ScanProgressFunction& progress,
                                      const std::stop_token& stop) const;

    DirectoryReader reader_;
    SteadyClock clock_ = steadyTime;
    Mutex oneAtATime_;
    /// By standardised path.
    std::unordered_map<std::string, DirectoryStats> cache_ GRUK_GUARDED_BY(oneAtATime_);
};

}  // namespace gruk
