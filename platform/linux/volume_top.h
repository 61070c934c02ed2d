#pragma once

#include <cstdint>
#include <string>

#include "platform/files/move_calls.h"
#include "platform/linux/descriptor.h"

namespace gruk {

/// What an error of the search for a volume calls it.
inline constexpr const char* findingVolume = "find volume";

/// The directory at which a volume is mounted.
struct VolumeTop {
    Descriptor directory;
    std::string path;
};

/// Whether two items are shown by one mount: between any others a move is refused, even when both
/// show the same disk. By their devices where the system does not number its mounts.
[[nodiscard]] bool areOnOneMount(const PlaceFacts& a, const PlaceFacts& b);

/// Where the mount with that number is mounted; empty where the system's table has none such.
/// Throws `FileError` when the table cannot be read.
[[nodiscard]] std::string mountPointOf(std::uint64_t mount, const MoveCalls& calls);

/// The top of the mount that shows the open `directory`. Throws `FileError`.
[[nodiscard]] VolumeTop volumeTop(int directory, const MoveCalls& calls);

}  // namespace gruk
