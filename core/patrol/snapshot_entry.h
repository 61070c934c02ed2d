#pragma once

#include <optional>
#include <string>

#include "core/patrol/file_kind.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/date.h"

namespace gruk {

/// One path inside a realm. A plain value.
struct SnapshotEntry {
    /// Components joined by "/", no leading "/"; the realm root itself has no entry.
    std::string relativePath;
    /// Of a file its allocated bytes, or 0 when another path of the same hard-linked file already
    /// accounts for them; of a directory the sum of all files below it.
    Bytes allocatedSize = 0;
    std::optional<Date> modifiedAt;
    FileKind kind = FileKind::other;
    bool isDirectory = false;

    friend bool operator==(const SnapshotEntry&, const SnapshotEntry&) = default;
};

}  // namespace gruk
