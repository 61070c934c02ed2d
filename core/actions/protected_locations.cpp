#include "core/actions/protected_locations.h"

#include <string>
#include <string_view>

#include "platform/files/known_folders.h"
#include "platform/files/metadata.h"
#include "platform/files/volumes.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// The folder itself, also where `folder` is a link to it.
FileURL itself(const FileURL& folder)
{
    return FileURL(folder.path() + "/.");
}

bool isSameItem(const FileURL& a, const FileURL& b)
{
    try {
        const ItemFacts one = itemFacts(a);
        const ItemFacts other = itemFacts(b);
        return one.deviceID == other.deviceID && one.inode == other.inode;
    } catch (const FileError&) {
        return false;
    }
}

/// The volume root of `url`, where `seen` is what is looked at.
FileURL volumeRootOf(const FileURL& url, const FileURL& seen)
{
    const FileURL place = url.standardized();
    const bool isTop = mountPoint(place).standardized().path() == place.path();
    return isTop || isSameItem(seen, itself(homeDirectory())) || isSameItem(seen, FileURL("/"))
               ? place
               : defaultVolumeRoot(url);
}

}  // namespace

bool isInsideRoot(const FileURL& url, const FileURL& root)
{
    return pathIsAtOrBelow(url.path(), root.path());
}

FileURL defaultVolumeRoot(const FileURL& url)
{
    constexpr std::string_view volumes = "/Volumes/";
    const std::string path = url.standardized().path();
    if (!path.starts_with(volumes) || path.size() == volumes.size()) {
        return FileURL::directory("/");
    }
    return FileURL::directory(path.substr(0, path.find('/', volumes.size())));
}

FileURL liveVolumeRoot(const FileURL& url)
{
    return volumeRootOf(url, url.standardized());
}

FileURL liveFolderVolumeRoot(const FileURL& url)
{
    return volumeRootOf(url, itself(url.standardized()));
}

bool isProtectedLocation(const FileURL& url, const FileURL& volumeRoot)
{
    const std::string path = url.standardized().path();
    return path == "/" || path == homeDirectory().standardized().path()
           || path == volumeRoot.standardized().path();
}

}  // namespace gruk
