#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"
#include "platform/files/file_reader.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// Reads one open store. What is not a store of version 1 is refused with
/// `SnapshotStoreError::corruptStore`; so is a file that cannot be read. One thread.
namespace SnapshotDecoder {

/// Checks every byte of the file from its start on and tells what is there.
[[nodiscard]] StoreContents check(FileReader& file);

/// Builds those of the file's snapshots, given in its order, and hands each to `take`. `contents`
/// is what `check` found.
void build(FileReader& file, const StoreContents& contents,
           const std::vector<StoredSnapshot>& wanted, FunctionRef<void(ScanSnapshot&&)> take);

}  // namespace SnapshotDecoder
}  // namespace gruk
