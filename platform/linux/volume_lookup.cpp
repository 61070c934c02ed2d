#include "platform/linux/volume_lookup.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <linux/magic.h>
#include <sys/sysmacros.h>

#include "platform/linux/directory_stream.h"
#include "platform/linux/mount_table.h"

namespace gruk {

namespace {

constexpr const char* disksByUUID = "/dev/disk/by-uuid";
constexpr std::string_view devices = "/dev/";

// Kinds that <linux/magic.h> has no name for.
constexpr std::uint64_t bcachefsMagic = 0xCA45'1A4E;
constexpr std::uint64_t zfsMagic = 0x2FC1'2FC1;

std::uint64_t kindOf(const struct statfs& fileSystem)
{
    // The field is signed on some machines, and magic numbers use its highest bit.
    return static_cast<std::uint32_t>(fileSystem.f_type);
}

/// Whether a name is one that the system's list of disks would have.
bool isPlainName(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c <= '~'; });
}

/// The UUID under which the system lists the disk with that number.
std::optional<std::string> uuidOfDisk(dev_t device)
{
    const DirectoryStream listing(::opendir(disksByUUID));
    if (!listing) {
        return std::nullopt;
    }
    while (const dirent* item = ::readdir(listing.get())) {
        struct stat facts {};
        const std::string_view name = item->d_name;
        if (name != "." && name != ".." && isPlainName(name)
            && ::fstatat(::dirfd(listing.get()), item->d_name, &facts, 0) == 0
            && S_ISBLK(facts.st_mode) && facts.st_rdev == device) {
            return std::string(name);
        }
    }
    return std::nullopt;
}

/// The number of the disk behind a mount: its device number or, where that was made up for the
/// mount, the one of the disk that it was mounted from.
std::optional<dev_t> diskOf(const struct statx& answer, const Mount* mount)
{
    if (answer.stx_dev_major != 0) {
        return makedev(answer.stx_dev_major, answer.stx_dev_minor);
    }
    struct stat facts {};
    if (mount != nullptr && mount->source.starts_with(devices)
        && ::stat(mount->source.c_str(), &facts) == 0 && S_ISBLK(facts.st_mode)) {
        return facts.st_rdev;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::uint64_t> volumeNumber(const struct statfs& fileSystem)
{
    switch (kindOf(fileSystem)) {
    case EXT4_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case bcachefsMagic:
    case zfsMagic: {
        const auto low = static_cast<std::uint32_t>(fileSystem.f_fsid.__val[0]);
        const auto high = static_cast<std::uint32_t>(fileSystem.f_fsid.__val[1]);
        const std::uint64_t number = std::uint64_t{high} << 32U | low;
        return number == 0 ? std::nullopt : std::optional(number);
    }
    default:
        return std::nullopt;
    }
}

bool keepsInodeNumbers(const struct statfs& fileSystem)
{
    switch (kindOf(fileSystem)) {
    case MSDOS_SUPER_MAGIC:
    case EXFAT_SUPER_MAGIC:
    case FUSE_SUPER_MAGIC:
    case CIFS_SUPER_MAGIC:
    case SMB_SUPER_MAGIC:
    case SMB2_SUPER_MAGIC:
        return false;
    default:
        return true;
    }
}

VolumeLookup::VolumeLookup(const struct statx& answer)
{
    const std::vector<Mount> mounts = mountTable();
    const auto found = std::find_if(mounts.begin(), mounts.end(), [&](const Mount& mount) {
        return (answer.stx_mask & STATX_MNT_ID) != 0 && mount.id == answer.stx_mnt_id;
    });
    const Mount* mount = found == mounts.end() ? nullptr : &*found;
    if (const std::optional<dev_t> disk = diskOf(answer, mount)) {
        uuid_ = uuidOfDisk(*disk);
    }
    if (mount != nullptr) {
        mountPoint_ = mount->point;
        if (isNetworkType(mount->type)) {
            source_ = mount->source;
        }
    }
}

}  // namespace gruk
