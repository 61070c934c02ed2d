#include "platform/files/volumes.h"

#include "platform/foundation/errors.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/volume_top.h"

namespace gruk {

FileURL mountPoint(const FileURL& url)
{
    const MoveCalls& calls = MoveCalls::live();
    if (url == FileURL()) {
        return {};
    }
    try {
        const OpenedParent parent = openWayTo(url, std::nullopt, "find volume", calls);
        const Spot spot{parent.directory.number(), parent.name, url.path()};
        const PlaceFacts item = factsOf(spot, "find volume", calls);
        std::string path;
        // The table alone decides, so that no other mount is touched.
        if (item.mount != 0 && calls.mountPoint(item.mount, path) == 0) {
            return FileURL::directory(path);
        }
        OpenedDirectory inside;
        if (item.item.type == ItemType::directory) {
            inside = openDirectoryIn(spot.directory, spot.name, LastLink::refused, calls);
        }
        return FileURL::directory(
            volumeTop(inside.directory.isOpen() ? inside.directory.number() : spot.directory, calls)
                .path);
    } catch (const FileError&) {
        return {};
    }
}

}  // namespace gruk
