#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/foundation/date.h"
#include "platform/foundation/uuid.h"

namespace gruk {

/// What is known of a snapshot in the store's file without building it.
struct StoredSnapshot {
    UUID id;
    std::string rootPath;
    Date capturedAt;
    /// Its place among the snapshots of the file, from 0.
    std::size_t ordinal = 0;
    /// Where its text stands in the file, from its "{" to behind its "}"; both 0 when the file is
    /// not in the form that Gruk writes.
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// What checking a whole store found.
struct StoreContents {
    /// In the file's order.
    std::vector<StoredSnapshot> snapshots;
    /// Whether the file is in the form that Gruk writes, so that the text of a snapshot can be
    /// taken over as it stands.
    bool isCanonical = false;
};

}  // namespace gruk
