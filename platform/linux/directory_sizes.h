#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/move_calls.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/linux/descriptor.h"

/// The file "directorysizes" of a Trash, in which programs keep the sizes of the folders there, so
/// that they need not be walked each time. A cache: whatever fails here is not told, and whoever
/// finds no line for a folder walks it.
///
/// Source: the Trash specification 1.0 of the free desktops.

namespace gruk {

/// How far a folder is walked for its size before that is left to others.
struct WalkLimits {
    std::size_t items = 20'000;
    std::chrono::milliseconds time{250};
};

/// What the folder takes on the disk with everything in it, a file of several names once; none
/// when the limits are reached or something in it cannot be read.
[[nodiscard]] std::optional<Bytes> sizeOnDisk(const FileURL& folder, const WalkLimits& limits);

/// The text without the lines of the folder `name`, and with one that says its `size`, if it is
/// given, and `written`, when its info file was (seconds since 1970). Other lines stay as they
/// are, byte for byte.
[[nodiscard]] std::string withSizeOf(std::string_view text, std::string_view name,
                                     std::optional<Bytes> size, std::int64_t written);

/// Walks the folder `name` in the open `files` and notes its size in the Trash that is open as
/// `base`; drops its line when the walk comes to no end.
void noteDirectorySize(const Descriptor& base, const Descriptor& files, const std::string& name,
                       std::int64_t written, const MoveCalls& calls);

/// Drops the line of the folder `name`, if there is one.
void dropDirectorySize(const Descriptor& base, const std::string& name, const MoveCalls& calls);

}  // namespace gruk
