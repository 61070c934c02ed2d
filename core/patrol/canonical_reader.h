#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/patrol/byte_window.h"
#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"

namespace gruk {

/// Reads a store in the one form that Gruk writes, and knows no other: several times as fast as a
/// reader of any JSON, with as strict an eye; entries in the text order, which Gruk writes them in,
/// are part of it. What is not of that form is left to
/// `GeneralReader`, which has the last word on whether it is a store at all. One thread.
class CanonicalReader {
public:
    /// Borrows `file`.
    explicit CanonicalReader(FileReader& file) : file_(file), window_(file) {}

    /// Checks the whole file; none when any byte of it is not of the form. A large file is checked
    /// in two halves at once, each on a thread of its own.
    [[nodiscard]] std::optional<std::vector<StoredSnapshot>> check();

    /// Builds the snapshot whose text begins at `offset`; none when it is not of the form. Throws
    /// `InvalidEntryPath` when its paths do not make up a snapshot.
    [[nodiscard]] std::optional<ScanSnapshot> build(std::uint64_t offset);

private:
    using Found = std::optional<std::vector<StoredSnapshot>>;

    Found checkFromStart(std::optional<std::uint64_t> stop);
    Found checkToEnd(std::uint64_t start);
    Found checkSnapshots(std::optional<std::uint64_t> stop);
    std::optional<std::uint64_t> findSnapshotAfter(std::uint64_t offset);

    template <typename Entries>
    bool readSnapshot(ScanSnapshot& snapshot, Entries& entries);
    template <typename Entries>
    bool readEntries(Entries& entries);
    bool readHead(ScanSnapshot& snapshot);
    bool readIssues(std::vector<ScanIssue>& issues);

    FileReader& file_;
    ByteWindow window_;
};

}  // namespace gruk
