#include "core/actions/protected_locations.h"

#include <string>
#include <string_view>

#include "platform/files/known_folders.h"
#include "platform/files/volumes.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// The folder itself, also where `folder` is a link to it.
FileURL itself(const FileURL& folder)
{
    return FileURL(folder.path() + "/.");
}

/// Whether `place` is the top of a volume, or `seen`, which is what is looked at, is home or "/".
/// Throws when that cannot be told.
bool isTop(const FileURL& place, const FileURL& seen, const MoveCalls& calls)
{
    return mountPoint(place, calls).standardized().path() == place.path()
           || isOneItem(seen, itself(homeDirectory()), calls)
           || isOneItem(seen, FileURL("/"), calls);
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

FileURL liveVolumeRoot(const FileURL& url, const MoveCalls& calls)
{
    const FileURL place = url.standardized();
    try {
        return isTop(place, place, calls) ? place : defaultVolumeRoot(url);
    } catch (const FileError& error) {
        return meaning(error) == ErrorMeaning::accessRefused ? defaultVolumeRoot(url) : place;
    }
}

FileURL liveFolderVolumeRoot(const FileURL& url, const MoveCalls& calls)
{
    const FileURL place = url.standardized();
    try {
        return isTop(place, itself(place), calls) ? place : defaultVolumeRoot(url);
    } catch (const FileError&) {
        return place;
    }
}

bool isProtectedLocation(const FileURL& url, const FileURL& volumeRoot)
{
    const std::string path = url.standardized().path();
    return path == "/" || path == homeDirectory().standardized().path()
           || path == volumeRoot.standardized().path();
}

}  // namespace gruk
