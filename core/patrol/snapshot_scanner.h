#pragma once

#include <functional>
#include <stop_token>
#include <string_view>

#include "core/patrol/metadata_reader.h"
#include "core/patrol/progress_pace.h"
#include "core/patrol/scan_snapshot.h"
#include "platform/foundation/mutex.h"

namespace gruk {

/// Told at the end of a directory: how many paths have been seen so far (files, directories and
/// items on other volumes; no links), and the relative path of the directory just finished, empty
/// for the root. Called on the walking thread at most ten times a second; must return at once.
using PatrolProgressFunction =
    std::function<void(std::int64_t pathsScanned, std::string_view relativePath)>;

/// Walks a realm into a snapshot: depth first, names, sizes and dates only. Never enters another
/// volume, never follows a link, counts a hard-linked file once, rolls sizes up into every folder,
/// and turns what it cannot see into issues instead of failing.
///
/// Keeps nothing between calls. Calls run one at a time: a second one waits for the first. Any
/// thread but the main one.
class SnapshotScanner {
public:
    /// Walks with the live file system, directory by directory through open descriptors.
    SnapshotScanner();

    /// Walks with `reader`; the same loop and the same rules. `clock` spaces the progress.
    explicit SnapshotScanner(DirectoryReader reader, SteadyClock clock = steadyTime);

    /// The snapshot of everything below `root`, which is standardised first; `capturedAt` goes
    /// into it unchanged. `progress` may be empty.
    ///
    /// Throws `CancelledError` at the next directory or child after a stop is requested, and
    /// `FileError` (or what the reader throws) when the root itself cannot be described or
    /// listed. Nothing partial is ever returned.
    ///
    /// Memory grows with the number of items, about 45 bytes each; depth costs no call stack.
    [[nodiscard]] ScanSnapshot scan(const FileURL& root, Date capturedAt,
                                    const PatrolProgressFunction& progress = {},
                                    std::stop_token stop = {});

private:
    /// Guards nothing but the order of the calls.
    Mutex oneAtATime_;
    DirectoryReader reader_;
    SteadyClock clock_ = steadyTime;
};

/// Why a directory could not be listed, from the error that its listing threw.
[[nodiscard]] ScanIssue::Reason issueReason(const std::exception& listingError);

}  // namespace gruk
