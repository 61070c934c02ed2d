#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What is mounted where, as the kernel tells this process. Reading it touches no mount, so that
/// none that hangs can block.

namespace gruk {

struct Mount {
    std::uint64_t id = 0;
    /// Where it is mounted: bytes of a path.
    std::string point;
    /// The kind of file system, such as "ext4" or "fuse.sshfs".
    std::string type;
    /// What is mounted: a device, or a server's share; the file system decides the words.
    std::string source;
};

/// Every mount in order of mounting; empty when the kernel does not tell.
[[nodiscard]] std::vector<Mount> mountTable();

/// The same for who must know whether the kernel told. Throws `FileError`.
[[nodiscard]] std::vector<Mount> readMountTable();

/// The mounts that the text of the kernel's table names; lines that do not read as they should are
/// passed over.
[[nodiscard]] std::vector<Mount> parseMountTable(std::string_view text);

/// Whether a file system of this kind is somewhere else on the network.
[[nodiscard]] bool isNetworkType(const std::string& type);

}  // namespace gruk
