#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/patrol/file_kind.h"
#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// One of the largest things in a realm.
struct HeavyItem {
    /// The relative path.
    std::string id;
    std::string relativePath;
    Bytes allocatedSize = 0;
    bool isDirectory = false;
    FileKind kind = FileKind::other;
    /// Current size less the size before; none when the path was not there before.
    std::optional<Bytes> byteDeltaSincePrevious;
    /// Whole days from its last change to the snapshot; none without a modification date.
    std::optional<std::int64_t> daysUntouched;
    /// Whether the snapshot before had nothing at that path. One that could not see the place
    /// cannot tell.
    bool isNew = false;

    friend bool operator==(const HeavyItem&, const HeavyItem&) = default;
};

}  // namespace gruk
