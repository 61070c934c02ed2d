#pragma once

#include <cstdint>

#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// What lies under one directory. A file of several names counts once in the bytes, and once a
/// name in `fileCount`.
struct DirectoryStats {
    /// Bytes on disk of all files; directories themselves count nothing.
    Bytes allocated = 0;
    /// The length of the same files.
    Bytes logical = 0;
    std::int64_t fileCount = 0;
    /// Directories that could not be listed for lack of permission.
    std::int64_t restrictedCount = 0;

    friend bool operator==(const DirectoryStats&, const DirectoryStats&) = default;
};

/// How far a walk has come.
struct ScanProgress {
    std::int64_t filesSeen = 0;
    /// Bytes on disk.
    Bytes bytesSeen = 0;

    friend bool operator==(const ScanProgress&, const ScanProgress&) = default;
};

}  // namespace gruk
