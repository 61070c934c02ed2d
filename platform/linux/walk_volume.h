#pragma once

#include <cstdint>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include "platform/linux/statx_facts.h"

namespace gruk {

/// Which volume the children of a walk lie on, told by the number of a device. Mostly an item's own
/// device; but an overlay of layers on different disks gives its files the devices of their layers,
/// so that below a root on one its mount stands for the device.
class WalkVolume {
public:
    /// The walk begins at the open directory `root`.
    explicit WalkVolume(int root)
    {
        struct statx answer {};
        if (::statx(root, "", statxFlags | AT_EMPTY_PATH, statxMask | STATX_MNT_ID, &answer) != 0) {
            return;
        }
        device_ = factsFrom(answer).deviceID;
        struct statfs system {};
        if ((answer.stx_mask & STATX_MNT_ID) != 0 && ::fstatfs(root, &system) == 0
            && system.f_type == OVERLAYFS_SUPER_MAGIC) {
            isOverlay_ = true;
            mount_ = answer.stx_mnt_id;
        }
    }

    /// The number of the volume itself; 0 where it cannot be told.
    [[nodiscard]] std::int32_t number() const { return device_; }

    /// What a child must be asked for.
    [[nodiscard]] unsigned mask() const
    {
        return isOverlay_ ? statxMask | STATX_MNT_ID : statxMask;
    }

    /// The volume of a child with that `device`, that `answer` is about.
    [[nodiscard]] std::int32_t volumeOf(const struct statx& answer, std::int32_t device) const
    {
        if (!isOverlay_ || (answer.stx_mask & STATX_MNT_ID) == 0) {
            return device;
        }
        if (answer.stx_mnt_id == mount_) {
            return device_;
        }
        // The same overlay, mounted here once more: another volume, for all its device.
        return device == device_ ? ~device : device;
    }

private:
    std::int32_t device_ = 0;
    bool isOverlay_ = false;
    std::uint64_t mount_ = 0;
};

}  // namespace gruk
