#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/move_calls.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/linux/descriptor.h"

/// The file "directorysizes" of a Trash, in which programs keep the sizes of the folders there, so
/// that they need not be walked each time. A cache: whatever fails here is not told, and whoever
/// finds no line for a folder walks it.
///
/// Source: the Trash specification 1.0 of the free desktops.

namespace gruk {

/// How far folders are walked for their sizes before that is left to others: all of one batch
/// together, and no folder below a certain depth, since each level holds a descriptor.
struct WalkLimits {
    std::size_t items = 20'000;
    std::chrono::milliseconds time{250};
    std::size_t depth = 100;
};

/// What the folder `name` in the open `directory` takes on the disk with everything in it, a file
/// of several names once; none when the limits are reached or something in it cannot be read.
[[nodiscard]] std::optional<Bytes> sizeOnDisk(int directory, const std::string& name,
                                              const WalkLimits& limits,
                                              const MoveCalls& calls = MoveCalls::live());

/// The text without the lines of the folder `name`, and with one that says its `size`, if it is
/// given, and `written`, when its info file was (seconds since 1970). Other lines stay as they
/// are, byte for byte.
[[nodiscard]] std::string withSizeOf(std::string_view text, std::string_view name,
                                     std::optional<Bytes> size, std::int64_t written);

/// A folder that came to a Trash, and when its info file was written; none when it has left.
struct SizeNote {
    std::string name;
    std::optional<std::int64_t> written;
};

/// Brings the file of the Trash that is open as `base` up to date in one go: walks the folders in
/// the open `files` that came, as far as the limits for all of them together allow, and drops the
/// lines of the others and of those that have left.
void noteDirectorySizes(const Descriptor& base, const Descriptor& files,
                        const std::vector<SizeNote>& notes, const MoveCalls& calls);

}  // namespace gruk
