#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <sys/syscall.h>
#include <unistd.h>

#include "platform/linux/errno_error.h"

namespace gruk {

/// Reads the names in open directories by the system's own call, many at a time.
class DirectoryRecords {
public:
    /// Calls `visit(name, type)` for everything in the directory but "." and "..", in the system's
    /// order: `name` is ended by a NUL and stands until the visit ends, `type` is one of the `DT_`
    /// constants. Throws `FileError` for `path()` when the directory cannot be read to its end.
    template <typename Visit, typename Path>
    void list(int directory, Visit visit, Path path)
    {
        for (;;) {
            const long length =
                ::syscall(SYS_getdents64, directory, buffer_.data(), buffer_.size());
            if (length < 0 && errno == EINTR) {
                continue;
            }
            if (length < 0) {
                throwErrno(errno, "list", path());
            }
            if (length == 0 || visitAll(static_cast<std::size_t>(length), visit) == lastPlace) {
                return;
            }
        }
    }

private:
    /// What one call fills; larger gains nothing.
    static constexpr std::size_t bufferSize = 65'536;
    /// Behind this place nothing can stand. File systems that hash names (ext4, btrfs) give it as
    /// the place behind their last entry, which saves asking once more for nothing in every
    /// directory.
    static constexpr std::int64_t lastPlace = std::numeric_limits<std::int64_t>::max();

    /// The fixed part of the kernel's `struct linux_dirent64`; the name follows, ended by a NUL.
    struct Record {
        std::uint64_t inode;
        std::int64_t next;
        std::uint16_t length;
        std::uint8_t type;
    };
    static constexpr std::size_t nameOffset = 19;

    static bool isDotOrDotDot(const char* name)
    {
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }

    /// Returns the place in the directory behind the last record.
    template <typename Visit>
    std::int64_t visitAll(std::size_t length, Visit& visit)
    {
        Record record{};
        for (std::size_t at = 0; at < length;) {
            std::memcpy(&record, buffer_.data() + at, nameOffset);
            const char* name = buffer_.data() + at + nameOffset;
            at += record.length;
            if (!isDotOrDotDot(name)) {
                visit(name, record.type);
            }
        }
        return record.next;
    }

    std::vector<char> buffer_ = std::vector<char>(bufferSize);
};

}  // namespace gruk
