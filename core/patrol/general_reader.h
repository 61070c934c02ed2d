#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"
#include "platform/files/file_reader.h"

namespace gruk {

/// Reads a store in any form that JSON allows: white space, another order of keys, keys that are
/// not known (which are passed over), escapes. As strict as can be about all that is known: every
/// key but `modifiedAt` is required, none may stand twice, and each value must be of its type.
///
/// Memory grows with the one snapshot being built, not with the file.
namespace GeneralReader {

/// Called for each snapshot as it ends, in the order of the file. Its entries and issues are only
/// there if it was wanted.
using OnSnapshot = std::function<void(const StoredSnapshot&, ScanSnapshot&&)>;

/// Whether the snapshot with that ordinal is to be built.
using IsWanted = std::function<bool(std::size_t)>;

/// Reads from where `file` stands to its end. False when it is not a store of version 1; what was
/// handed on until then is then void.
[[nodiscard]] bool read(FileReader& file, const IsWanted& isWanted, const OnSnapshot& onSnapshot);

}  // namespace GeneralReader
}  // namespace gruk
