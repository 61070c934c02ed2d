#pragma once

#include <cstdint>

namespace gruk {

/// What proves that an item is still the one that was reviewed. Size and dates are no part of it:
/// an item that grew is still the reviewed one; another put there under its name is not. Kept in
/// memory only: device numbers do not outlive a restart. A plain value.
struct FileIdentity {
    enum class Kind : std::uint8_t { file, directory, symbolicLink, other };

    /// The file system's number.
    std::uint64_t deviceID = 0;
    /// The item's number within that file system.
    std::uint64_t inode = 0;
    Kind kind = Kind::other;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

}  // namespace gruk
