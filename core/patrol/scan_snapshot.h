#pragma once

#include <string>
#include <vector>

#include "core/patrol/scan_issue.h"
#include "core/patrol/snapshot_entries.h"
#include "platform/foundation/date.h"
#include "platform/foundation/uuid.h"

namespace gruk {

/// What one patrol remembers of a realm: every path with its size, and what could not be seen.
/// A plain value; the entries are shared, so that a copy is cheap.
struct ScanSnapshot {
    UUID id;
    /// The bytes of the realm's standardised path.
    std::string rootPath;
    /// When the walk began.
    Date capturedAt;
    SnapshotEntries entries;
    /// In the text order of their paths.
    std::vector<ScanIssue> issues;
    /// True when the walk reached its end, also one with issues.
    bool isComplete = false;

    friend bool operator==(const ScanSnapshot&, const ScanSnapshot&) = default;
};

}  // namespace gruk
