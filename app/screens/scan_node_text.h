#pragma once

#include <cstdint>

#include <QString>

#include "core/browse/scan_session.h"

/// What the Browse page puts into words. Pure.
namespace gruk::ScanNodeText {

/// As far as it is known. Empty for a folder that is being measured and has shown nothing yet; of
/// one that could not be measured to its end "at least" what was found, or a dash.
[[nodiscard]] QString size(const ScanNode& node);
/// The same for assistive technology, which hears of work that goes on too.
[[nodiscard]] QString spokenSize(const ScanNode& node);

/// The day in the user's own time, "3 May 2026"; "Not available" without one.
[[nodiscard]] QString lastOpened(const FileEntry& entry);

/// Folders in or below this one that may not be looked into, in a sentence; empty for none.
[[nodiscard]] QString restrictedNote(const ScanNode& node);

/// What one folder comes to, as far as is known.
struct FolderSums {
    /// Its direct children, hidden ones too and whatever the filter shows.
    std::int64_t items = 0;
    /// On disk: the children's sizes, as the rows show them.
    Bytes bytes = 0;
    /// Folders below it that could not be listed for lack of permission.
    std::int64_t restricted = 0;
    /// Whether some child is still being measured.
    bool areGrowing = false;
    /// Whether some child could not be measured to its end.
    bool areIncomplete = false;

    friend bool operator==(const FolderSums&, const FolderSums&) = default;
};

[[nodiscard]] FolderSums sums(const ScanSession::Nodes& nodes);

/// "{n} items · {size} scanned · {k} restricted", with "at least" before a size that is not all,
/// and a dash for one of which nothing is known.
[[nodiscard]] QString footer(const FolderSums& sums);

}  // namespace gruk::ScanNodeText
