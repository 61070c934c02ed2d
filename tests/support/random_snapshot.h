#pragma once

#include <string>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/realm/seeded_generator.h"

namespace gruk::test {

/// Small random snapshots for comparing an implementation with a naive one: nested trees with
/// mixed case, digits, accents, other scripts, bytes that are no text, names that the review rules
/// know, orphans ("a/b" without "a"), and many equal sizes. The same for the same generator.

/// Up to `count` entries with distinct paths, in no order. Folders may lack, and a path may be
/// anything: nothing makes the tree consistent, since no rule may rely on it.
[[nodiscard]] std::vector<SnapshotEntry> randomEntries(SeededGenerator& draw, std::size_t count);

/// The same entries as of a later patrol: some gone, some resized, some redated, some new.
[[nodiscard]] std::vector<SnapshotEntry> laterEntries(SeededGenerator& draw,
                                                      std::vector<SnapshotEntry> entries);

/// Issues at paths of `entries`, below them, above them and elsewhere; often none.
[[nodiscard]] std::vector<ScanIssue> randomIssues(SeededGenerator& draw,
                                                  const std::vector<SnapshotEntry>& entries);

/// A complete snapshot of "/realm".
[[nodiscard]] ScanSnapshot snapshotOf(const std::vector<SnapshotEntry>& entries,
                                      std::vector<ScanIssue> issues = {});

}  // namespace gruk::test
