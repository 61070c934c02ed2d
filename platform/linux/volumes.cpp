#include "platform/files/volumes.h"

#include <cerrno>
#include <climits>
#include <optional>

#include "platform/files/moves.h"
#include "platform/foundation/errors.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/persistently.h"
#include "platform/linux/volume_top.h"

namespace gruk {

namespace {

/// Whether the error says that there is no such item, and not that it cannot be looked at.
bool saysNothingIsThere(const FileError& error)
{
    return error.code() == std::errc::no_such_file_or_directory
           || error.code() == std::errc::not_a_directory;
}

FileURL topOver(const FileURL& url, const MoveCalls& calls)
{
    const OpenedParent parent = openWayTo(url, std::nullopt, findingVolume, calls);
    const Spot spot{parent.directory.number(), parent.name, url.path()};
    const PlaceFacts item = factsOf(spot, findingVolume, calls);
    // The table alone decides, so that no other mount is touched.
    if (const std::string path = mountPointOf(item.mount, calls); !path.empty()) {
        return FileURL::directory(path);
    }
    OpenedDirectory inside;
    if (item.item.type == ItemType::directory) {
        inside = openDirectoryIn(spot.directory, spot.name, LastLink::refused, calls);
    }
    return FileURL::directory(
        volumeTop(inside.directory.isOpen() ? inside.directory.number() : spot.directory, calls)
            .path);
}

}  // namespace

FileURL mountPoint(const FileURL& url, const MoveCalls& calls)
{
    if (url == FileURL()) {
        return {};
    }
    try {
        return topOver(url, calls);
    } catch (const FileError& error) {
        if (saysNothingIsThere(error)) {
            return {};
        }
        throw;
    }
}

std::set<std::string> mountedNames(const FileURL& directory, const MoveCalls& calls)
{
    const OpenedDirectory opened = openDirectoryAt(directory.path(), calls);
    if (opened.error != 0) {
        throwErrno(opened.error, findingVolume, directory.path());
    }
    std::string place;
    int result = persistently([&] { return calls.pathOf(opened.directory.number(), place); });
    std::set<std::string> names;
    if (result == -ENAMETOOLONG && directory.path().size() >= PATH_MAX) {
        // Nothing can be mounted by such a path.
        return names;
    }
    if (result >= 0) {
        result = persistently([&] {
            return calls.mounts([&](std::uint64_t, const std::string& point) {
                const FileURL top(point);
                if (top.deletingLastPathComponent().path() == place) {
                    names.emplace(top.lastPathComponent());
                }
            });
        });
    }
    if (result < 0) {
        throwErrno(-result, findingVolume, directory.path());
    }
    return names;
}

bool isOneItem(const FileURL& a, const FileURL& b, const MoveCalls& calls)
{
    try {
        return requiredIdentity(a, calls) == requiredIdentity(b, calls);
    } catch (const FileError& error) {
        if (saysNothingIsThere(error)) {
            return false;
        }
        throw;
    }
}

}  // namespace gruk
