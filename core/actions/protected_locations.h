#pragma once

#include <functional>

#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"

/// Where nothing may be moved. Places are compared by their standardised paths, whether or not
/// they are written as directories.

namespace gruk {

/// The top of the volume that holds a place.
using VolumeRoot = std::function<FileURL(const FileURL&)>;

/// Whether what stands at an authorised root is the very directory that was granted. Asked once an
/// operation, when that directory is open, so that none that comes later is taken for it; a no
/// refuses every move. May look at the disk; must not throw. Empty: whichever stands there is
/// meant.
using RootCheck = std::function<bool()>;

/// Whether `url` is `root` or lies below it; both standardised. "/data/photos2" is not inside
/// "/data/photos".
[[nodiscard]] bool isInsideRoot(const FileURL& url, const FileURL& root);

/// "/Volumes/{name}" for that place and everything below it; "/" everywhere else. Pure.
[[nodiscard]] FileURL defaultVolumeRoot(const FileURL& url);

/// The same, but the top of any mounted volume is its own, and so are "/" and the user's home by
/// whatever path they are reached. Of a link the link itself is meant. An item of which it cannot
/// be told what it is counts as such a place, unless it is closed to the user: then the look at its
/// identity tells. Reads the disk.
[[nodiscard]] FileURL liveVolumeRoot(const FileURL& url,
                                     const MoveCalls& calls = MoveCalls::live());

/// The same for a folder whose content is meant: a link to one of those places counts as that
/// place, and so does every folder of which it cannot be told.
[[nodiscard]] FileURL liveFolderVolumeRoot(const FileURL& url,
                                           const MoveCalls& calls = MoveCalls::live());

/// Whether `url` is "/", the user's home folder or `volumeRoot` itself. What lies below those is
/// not protected.
[[nodiscard]] bool isProtectedLocation(const FileURL& url, const FileURL& volumeRoot);

}  // namespace gruk
