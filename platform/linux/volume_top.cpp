#include "platform/linux/volume_top.h"

#include <system_error>
#include <utility>

#include "platform/foundation/errors.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/persistently.h"
#include "platform/linux/place_facts.h"

namespace gruk {

namespace {

[[noreturn]] void fail(int directory, int error, const MoveCalls& calls)
{
    std::string path;
    calls.pathOf(directory, path);
    throwErrno(error, findingVolume, path);
}

/// What the system's table says of the mount, if that is what is found there: another mount may
/// lie on top of it, and the table may have changed since.
VolumeTop topByTable(const PlaceFacts& inside, const MoveCalls& calls)
{
    VolumeTop top;
    top.path = mountPointOf(inside.mount, calls);
    if (top.path.empty()) {
        return {};
    }
    top.directory = openDirectoryAt(top.path, calls).directory;
    PlaceFacts facts;
    const bool isFound = top.directory.isOpen()
                         && readPlaceFacts(top.directory.number(), "", facts, calls) == 0
                         && areOnOneMount(facts, inside);
    return isFound ? std::move(top) : VolumeTop();
}

/// A disk that was pulled out while something on it is open still has its top, whose path leads to
/// another volume by now: what is put there would be found by nobody who knows it by its path.
void requireReachable(const VolumeTop& top, const PlaceFacts& inside, const MoveCalls& calls)
{
    const OpenedDirectory reached = openDirectoryAt(top.path, calls);
    PlaceFacts facts;
    const bool isReached = reached.error == 0
                           && readPlaceFacts(reached.directory.number(), "", facts, calls) == 0
                           && areOnOneMount(facts, inside);
    if (!isReached) {
        throw FileError(std::make_error_code(std::errc::no_such_device), findingVolume, top.path,
                        "its volume is not mounted any more");
    }
}

/// Goes up until the next directory is of another mount, or the same one: above the root there is
/// only the root.
VolumeTop topByClimbing(int directory, PlaceFacts here, const MoveCalls& calls)
{
    OpenedDirectory at = openDirectoryIn(directory, ".", LastLink::refused, calls);
    while (at.error == 0) {
        OpenedDirectory above =
            openDirectoryIn(at.directory.number(), "..", LastLink::refused, calls);
        PlaceFacts facts;
        if (above.error == 0) {
            above.error = -readPlaceFacts(above.directory.number(), "", facts, calls);
        }
        const bool isSame =
            facts.item.inode == here.item.inode && facts.item.deviceID == here.item.deviceID;
        if (above.error == 0 && (isSame || !areOnOneMount(facts, here))) {
            VolumeTop top{std::move(at.directory), {}};
            const int result = calls.pathOf(top.directory.number(), top.path);
            if (result < 0) {
                fail(directory, -result, calls);
            }
            requireReachable(top, here, calls);
            return top;
        }
        at = std::move(above);
        here = facts;
    }
    fail(directory, at.error, calls);
}

}  // namespace

bool areOnOneMount(const PlaceFacts& a, const PlaceFacts& b)
{
    return a.mount != 0 && b.mount != 0 ? a.mount == b.mount : a.item.deviceID == b.item.deviceID;
}

std::string mountPointOf(std::uint64_t mount, const MoveCalls& calls)
{
    std::string path;
    const int result = mount == 0 ? 0 : persistently([&] {
        return calls.mounts([&](std::uint64_t number, const std::string& point) {
            if (number == mount) {
                path = point;
            }
        });
    });
    if (result < 0) {
        throwErrno(-result, findingVolume, path);
    }
    return path;
}

VolumeTop volumeTop(int directory, const MoveCalls& calls)
{
    PlaceFacts facts;
    if (const int result = readPlaceFacts(directory, "", facts, calls); result < 0) {
        fail(directory, -result, calls);
    }
    VolumeTop top = topByTable(facts, calls);
    return top.directory.isOpen() ? std::move(top) : topByClimbing(directory, facts, calls);
}

}  // namespace gruk
