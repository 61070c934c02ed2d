#include "platform/linux/directory_identity.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/vfs.h>

#include "platform/linux/errno_error.h"
#include "platform/linux/volume_lookup.h"

namespace gruk {

namespace {

constexpr unsigned wantedFacts = STATX_TYPE | STATX_INO | STATX_BTIME | STATX_MNT_ID;
constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
/// Beyond this a birth time is no date but a broken record, and leaves 64 bits of nanoseconds.
constexpr std::int64_t latestSecond = 9'000'000'000;

/// What two system calls tell of an open directory.
struct Facts {
    struct statx item {};
    struct statfs fileSystem {};
};

/// False with `errno` set when the system refuses.
bool readFacts(const Descriptor& directory, Facts& facts)
{
    return ::statx(directory.number(), "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, wantedFacts,
                   &facts.item)
               == 0
           && ::fstatfs(directory.number(), &facts.fileSystem) == 0;
}

std::optional<std::int64_t> birthOf(const struct statx& item)
{
    const std::int64_t seconds = item.stx_btime.tv_sec;
    if ((item.stx_mask & STATX_BTIME) == 0 || seconds < -latestSecond || seconds > latestSecond) {
        return std::nullopt;
    }
    return seconds * nanosecondsPerSecond + item.stx_btime.tv_nsec;
}

/// The part of the identity for which the volume need not be looked up.
DirectoryIdentity ownIdentity(const Facts& facts)
{
    DirectoryIdentity identity;
    identity.fileSystemKind = static_cast<std::uint32_t>(facts.fileSystem.f_type);
    identity.isMountRoot = (facts.item.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    if (keepsInodeNumbers(facts.fileSystem)) {
        identity.inode = facts.item.stx_ino;
        identity.born = birthOf(facts.item);
    }
    identity.volumeNumber = volumeNumber(facts.fileSystem);
    return identity;
}

bool isSameItem(const DirectoryIdentity& known, const DirectoryIdentity& found)
{
    if (found.fileSystemKind != known.fileSystemKind || found.inode != known.inode) {
        return false;
    }
    // Without an inode the path alone names it, and the path must begin at the same place.
    return known.inode ? known.born == found.born : known.isMountRoot == found.isMountRoot;
}

/// Compares by the first thing that was known of the volume. What has become known since, or no
/// longer is, says nothing.
bool isSameVolume(const DirectoryIdentity& known, const DirectoryIdentity& found,
                  const struct statx& item)
{
    if (known.volumeNumber) {
        return known.volumeNumber == found.volumeNumber;
    }
    const VolumeLookup lookup(item);
    if (known.volumeUUID) {
        return known.volumeUUID == lookup.uuid();
    }
    if (known.volumeSource) {
        return known.volumeSource == lookup.source();
    }
    return !known.mountPoint || known.mountPoint == lookup.mountPoint();
}

}  // namespace

Descriptor openPlace(const std::string& path)
{
    int number = -1;
    do {
        number = ::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    } while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

DirectoryIdentity identityOf(const Descriptor& directory, const std::string& path)
{
    Facts facts;
    if (!readFacts(directory, facts)) {
        throwErrno(errno, "examine", path);
    }
    DirectoryIdentity identity = ownIdentity(facts);
    const VolumeLookup lookup(facts.item);
    identity.volumeUUID = lookup.uuid();
    identity.volumeSource = lookup.source();
    if (!identity.volumeNumber && !identity.volumeUUID && !identity.volumeSource) {
        identity.mountPoint = lookup.mountPoint();
    }
    return identity;
}

bool isSameDirectory(const Descriptor& directory, const DirectoryIdentity& known)
{
    Facts facts;
    if (!readFacts(directory, facts)) {
        return false;
    }
    const DirectoryIdentity found = ownIdentity(facts);
    return isSameItem(known, found) && isSameVolume(known, found, facts.item);
}

}  // namespace gruk
