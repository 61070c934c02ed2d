#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/descriptor.h"

/// Which directory this is, in terms that survive a restart. The number of a device does not: the
/// next start may deal them out anew.

namespace gruk {

/// What tells one directory from every other. A field is none where the file system has nothing
/// that could be relied on.
struct DirectoryIdentity {
    /// The kind of file system, as a number of the kernel's.
    std::uint64_t fileSystemKind = 0;
    /// Whether it is the top of what is mounted there.
    bool isMountRoot = false;
    /// None on file systems that make inode numbers up each time they are mounted.
    std::optional<std::uint64_t> inode;
    /// Nanoseconds since 1970, of file systems that keep it.
    std::optional<std::int64_t> born;

    // The volume, by whatever is known of it.
    /// The number by which the file system names itself, where it is made from its UUID.
    std::optional<std::uint64_t> volumeNumber;
    /// The UUID or serial number, as the system lists it for disks.
    std::optional<std::string> volumeUUID;
    /// What is mounted, of a share on the network.
    std::optional<std::string> volumeSource;
    /// Where it is mounted, when nothing else is known.
    std::optional<std::string> mountPoint;
};

/// Opens the directory at `path`, following links, without asking for the right to list it. None
/// with `errno` set on failure.
[[nodiscard]] Descriptor openPlace(const std::string& path);

/// Everything that can be found out about the open directory. Throws `FileError` with `path`.
[[nodiscard]] DirectoryIdentity identityOf(const Descriptor& directory, const std::string& path);

/// Whether the open directory is the one that `known` describes. Two system calls where the volume
/// names itself; otherwise it looks the volume up. False also when the system refuses to tell.
[[nodiscard]] bool isSameDirectory(const Descriptor& directory, const DirectoryIdentity& known);

}  // namespace gruk
