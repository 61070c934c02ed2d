#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"
#include "platform/files/file_reader.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// Reads one open store. Everything that is not a store of version 1 is refused with
/// `SnapshotStoreError::corruptStore`; so is a file that cannot be read. One thread.
class SnapshotDecoder {
public:
    /// Borrows `file`, which stands at its start. Checks every byte of it; `snapshots` tells what
    /// is there.
    explicit SnapshotDecoder(FileReader& file);

    /// All snapshots of the file, in its order.
    [[nodiscard]] const std::vector<StoredSnapshot>& snapshots() const { return snapshots_; }

    /// Whether the file is in the form that Gruk writes, so that the text of a snapshot can be
    /// taken over as it stands.
    [[nodiscard]] bool isCanonical() const { return isCanonical_; }

    /// Builds those of the snapshots, given in the file's order, and hands each to `take`.
    void build(const std::vector<StoredSnapshot>& wanted, FunctionRef<void(ScanSnapshot&&)> take);

private:
    void check();

    FileReader& file_;
    std::vector<StoredSnapshot> snapshots_;
    bool isCanonical_ = false;
};

}  // namespace gruk
