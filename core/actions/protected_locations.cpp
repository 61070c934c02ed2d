#include "core/actions/protected_locations.h"

#include <string>
#include <string_view>

#include "platform/files/known_folders.h"
#include "platform/files/volumes.h"

namespace gruk {

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
    const FileURL top = mountPoint(url).standardized();
    return top.path() == url.standardized().path() ? top : defaultVolumeRoot(url);
}

bool isProtectedLocation(const FileURL& url, const FileURL& volumeRoot)
{
    const std::string path = url.standardized().path();
    return path == "/" || path == homeDirectory().standardized().path()
           || path == volumeRoot.standardized().path();
}

}  // namespace gruk
