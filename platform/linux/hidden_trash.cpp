#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/files/trash.h"
#include "platform/foundation/errors.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/mount_table.h"
#include "platform/linux/trash_folder.h"
#include "platform/linux/trash_way.h"

namespace gruk {

namespace {

/// File systems that the desktop's library takes for a part of the system, as far as a user's file
/// can lie on one.
///
/// Source: what GLib 2.74 calls a system file system, a system device and a system mount path.
constexpr std::array<std::string_view, 16> systemTypes{
    "afs",    "autofs", "cxfs",  "devtmpfs", "ecryptfs", "gfs",   "gfs2",   "gpfs",
    "lustre", "mfs",    "ncpfs", "ocfs2",    "overlay",  "ramfs", "rootfs", "tmpfs"};
constexpr std::array<std::string_view, 2> systemSources{"none", "sunrpc"};
constexpr std::array<std::string_view, 29> systemPlaces{
    "/",          "/bin",       "/boot",    "/dev",       "/etc",        "/home",
    "/lib",       "/lib64",     "/libexec", "/live/cow",  "/live/image", "/media",
    "/mnt",       "/net",       "/opt",     "/rescue",    "/root",       "/sbin",
    "/srv",       "/tmp",       "/usr",     "/usr/local", "/usr/src",    "/var",
    "/var/crash", "/var/local", "/var/log", "/var/mail",  "/var/tmp"};

template <typename List>
bool isAmong(const List& list, std::string_view text)
{
    return std::ranges::find(list, text) != list.end();
}

/// Whether the desktop's tools look for no Trash on that volume. An option of the mount may tell
/// them otherwise, which is not looked at: then the place that is named is true all the same.
bool hasNoShownTrash(const Mount& mount)
{
    return isAmong(systemTypes, mount.type) || isAmong(systemSources, mount.source)
           || isAmong(systemPlaces, mount.point) || mount.point.starts_with("/dev/");
}

/// The volume that is seen at `point`: what was mounted there last.
bool isSystemsAt(const std::string& point)
{
    const std::vector<Mount> mounts = readMountTable();
    const auto found = std::find_if(mounts.rbegin(), mounts.rend(),
                                    [&](const Mount& mount) { return mount.point == point; });
    return found != mounts.rend() && hasNoShownTrash(*found);
}

}  // namespace

std::optional<FileURL> hiddenTrash(const FileURL& url, const MoveCalls& calls)
{
    try {
        const OpenedParent parent = openWayTo(url, std::nullopt, trashing, calls);
        const int folder = parent.directory.number();
        const std::string here;
        const PlaceFacts around = factsOf({folder, here, url.path()}, trashing, calls);
        const auto trash = volumeTrashFor(folder, around, calls);
        if (!trash || !isSystemsAt(trash->volume)) {
            return std::nullopt;
        }
        return trash->place.appending("files", FileURL::Names::directory);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

}  // namespace gruk
