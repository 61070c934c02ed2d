#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"
#include "platform/files/atomic_file.h"
#include "platform/files/file_reader.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// Writes a store's snapshots one after another. One thread.
class StoreWriter {
public:
    /// The path under which a snapshot is to stand from now on; none leaves it its own.
    using NewRoot = FunctionRef<std::optional<std::string>(const StoredSnapshot&)>;

    /// Writes what stands before the first of them. `file` outlives this object.
    explicit StoreWriter(AtomicFile& file);

    void add(const ScanSnapshot& snapshot);

    /// Takes those snapshots over from an older store, in their order: as the bytes that they are
    /// where that can be. `contents` is what the check of `from` found. Throws
    /// `SnapshotStoreError::corruptStore` when they are not there any more.
    void keep(FileReader& from, const StoreContents& contents,
              const std::vector<StoredSnapshot>& snapshots);
    void keep(FileReader& from, const StoreContents& contents,
              const std::vector<StoredSnapshot>& snapshots, NewRoot newRoot);

    /// Writes what stands behind the last of them.
    void finish();

private:
    void separate();
    /// The text of a snapshot as it stands.
    void copy(FileReader& from, std::uint64_t begin, std::uint64_t end);
    /// The same under another path.
    void copyAs(FileReader& from, const StoredSnapshot& snapshot, std::string_view rootPath);

    AtomicFile& file_;
    bool isFirst_ = true;
    std::vector<char> buffer_;
};

}  // namespace gruk
