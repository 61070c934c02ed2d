#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/files/item_facts.h"

namespace gruk {

/// What every metadata call of Gruk asks for: the fields of `ItemFacts` and nothing else.
inline constexpr unsigned statxMask = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_INO | STATX_SIZE
                                      | STATX_BLOCKS | STATX_ATIME | STATX_MTIME | STATX_BTIME;

/// How every metadata call of Gruk asks: about the item itself, never through a link, without
/// triggering an automatic mount, and without making a network server flush first.
inline constexpr int statxFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;

/// The moment of a timestamp. A double holds today's dates to about a quarter of a microsecond; the
/// last fractions of a second are not rounded up into the next.
[[nodiscard]] inline Date dateFrom(const struct statx_timestamp& stamp)
{
    const auto second = static_cast<double>(stamp.tv_sec);
    const double moment = second + static_cast<double>(stamp.tv_nsec) / 1e9;
    return {moment < second + 1 ? moment : std::nextafter(second + 1, second)};
}

/// The type of an item from its mode.
[[nodiscard]] inline ItemType itemTypeFrom(unsigned mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return ItemType::regularFile;
    case S_IFDIR:
        return ItemType::directory;
    case S_IFLNK:
        return ItemType::symbolicLink;
    default:
        return ItemType::other;
    }
}

/// The facts of an item out of an answer to `statxMask`. A field that the file system does not
/// keep is zero, but for the birth time, which is none.
[[nodiscard]] inline ItemFacts factsFrom(const struct statx& answer)
{
    ItemFacts facts;
    facts.type = itemTypeFrom(answer.stx_mode);
    // 2^53 blocks are more than any file system holds; the product stays in range.
    facts.allocatedSize = static_cast<Bytes>(answer.stx_blocks & ((1ULL << 53) - 1)) * 512;
    facts.logicalSize = static_cast<Bytes>(answer.stx_size & ~(1ULL << 63));
    facts.inode = answer.stx_ino;
    facts.deviceID =
        static_cast<std::int32_t>((answer.stx_dev_major << 20U) | answer.stx_dev_minor);
    facts.linkCount = answer.stx_nlink;
    facts.modified = dateFrom(answer.stx_mtime);
    facts.accessed = dateFrom(answer.stx_atime);
    if ((answer.stx_mask & STATX_BTIME) != 0) {
        facts.created = dateFrom(answer.stx_btime);
    }
    return facts;
}

}  // namespace gruk
