#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <sys/stat.h>
#include <sys/vfs.h>

namespace gruk {

/// The number by which a file system names itself, where that is made from its UUID; none where it
/// is made from a device number or left out.
[[nodiscard]] std::optional<std::uint64_t> volumeNumber(const struct statfs& fileSystem);

/// Whether a file system keeps its inode numbers, so that one means the same file for ever.
[[nodiscard]] bool keepsInodeNumbers(const struct statfs& fileSystem);

/// Finds out by name what a file system does not tell by number: reads the table of mounts and,
/// for a disk, the system's list of disks. A value; one look at the table each.
class VolumeLookup {
public:
    /// For the volume that holds the item described by `answer`.
    explicit VolumeLookup(const struct statx& answer);

    /// The UUID or serial number of the disk; none where the system lists none.
    [[nodiscard]] const std::optional<std::string>& uuid() const { return uuid_; }
    /// The server's share; none on anything but a network.
    [[nodiscard]] const std::optional<std::string>& source() const { return source_; }
    /// Where it is mounted.
    [[nodiscard]] const std::optional<std::string>& mountPoint() const { return mountPoint_; }

private:
    std::optional<std::string> uuid_;
    std::optional<std::string> source_;
    std::optional<std::string> mountPoint_;
};

}  // namespace gruk
