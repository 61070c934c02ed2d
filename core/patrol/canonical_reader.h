#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/patrol/byte_window.h"
#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"

namespace gruk {

/// Reads a store in the one form that Gruk writes, and knows no other: several times as fast as a
/// reader of any JSON, with as strict an eye. What is not of that form is left to
/// `GeneralReader`, which has the last word on whether it is a store at all. One thread.
class CanonicalReader {
public:
    /// Reads from where `file` stands. Borrowed.
    explicit CanonicalReader(FileReader& file) : window_(file) {}

    /// Checks the whole file from its start; none when any byte of it is not of the form.
    [[nodiscard]] std::optional<std::vector<StoredSnapshot>> check();

    /// Builds the snapshot whose text begins at `offset`; none when it is not of the form. Throws
    /// `InvalidEntryPath` when its paths do not make up a snapshot.
    [[nodiscard]] std::optional<ScanSnapshot> build(std::uint64_t offset);

private:
    template <typename Entries>
    bool readSnapshot(ScanSnapshot& snapshot, Entries& entries);
    template <typename Entries>
    bool readEntries(Entries& entries);
    bool readHead(ScanSnapshot& snapshot);
    bool readIssues(std::vector<ScanIssue>& issues);

    ByteWindow window_;
};

}  // namespace gruk
