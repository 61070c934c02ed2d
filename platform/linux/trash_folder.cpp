#include "platform/linux/trash_folder.h"

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

#include "platform/files/known_folders.h"
#include "platform/foundation/errors.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/persistently.h"
#include "platform/linux/place_facts.h"
#include "platform/linux/volume_top.h"

namespace gruk {

namespace {

constexpr const char* findingTrash = "find Trash";
constexpr unsigned ownerOnly = 0700;
constexpr unsigned stickyBit = 01000;

/// Opens a directory of the user's own by its name, and makes it when it is missing.
OpenedDirectory openOrMake(const Descriptor& parent, const std::string& name, LastLink link,
                           const MoveCalls& calls)
{
    OpenedDirectory opened = openDirectoryIn(parent.number(), name, link, calls);
    if (opened.error != ENOENT) {
        return opened;
    }
    const int made =
        persistently([&] { return calls.makeDirectory(parent.number(), name.c_str(), ownerOnly); });
    if (made < 0 && made != -EEXIST) {
        return {Descriptor(), -made};
    }
    return openDirectoryIn(parent.number(), name, link, calls);
}

/// The same for a directory that must be the user's: in a folder that others may write to, one of
/// theirs could lie in wait. So the Trash specification 1.0 has it, and a file system that knows no
/// owners is told by it, too.
OpenedDirectory openOrMakeOwned(const Descriptor& parent, const std::string& name,
                                const MoveCalls& calls)
{
    OpenedDirectory opened = openOrMake(parent, name, LastLink::refused, calls);
    PlaceFacts facts;
    if (opened.error == 0) {
        opened.error = -readPlaceFacts(opened.directory.number(), "", facts, calls);
    }
    if (opened.error == 0 && facts.owner != ::geteuid()) {
        opened.error = EPERM;
    }
    return opened;
}

/// Opens the two folders of a Trash; 0 or the positive error number. At home they are the user's by
/// being there, also where a server calls the owner by another number.
int openParts(TrashFolder& trash, const MoveCalls& calls)
{
    const auto open = [&](const std::string& name) {
        return trash.volume ? openOrMakeOwned(trash.base, name, calls)
                            : openOrMake(trash.base, name, LastLink::refused, calls);
    };
    OpenedDirectory files = open("files");
    OpenedDirectory info = files.error == 0 ? open("info") : OpenedDirectory();
    trash.files = std::move(files.directory);
    trash.info = std::move(info.directory);
    return files.error != 0 ? files.error : info.error;
}

/// The Trash at home as far as it is there.
struct HomeTrash {
    Descriptor nearest;
    /// What is missing below it, from the top down.
    std::vector<std::string> missing;
    /// Why it cannot be used, whatever is done; else 0.
    int obstacle = 0;
};

/// Errors that come from what stands on the way, and not from the state of the machine.
bool isObstacle(int error)
{
    return error == ENOTDIR || error == ELOOP || error == EACCES || error == EPERM;
}

HomeTrash lookForHomeTrash(FileURL place, const MoveCalls& calls)
{
    HomeTrash home;
    for (;;) {
        OpenedDirectory opened = openDirectoryAt(place.path(), calls);
        if (opened.error == 0) {
            home.nearest = std::move(opened.directory);
            return home;
        }
        if ((opened.error != ENOENT && !isObstacle(opened.error)) || place == FileURL()) {
            throwErrno(opened.error, findingTrash, place.path());
        }
        if (isObstacle(opened.error)) {
            home.obstacle = opened.error;
        }
        home.missing.emplace(home.missing.begin(), place.lastPathComponent());
        place = place.deletingLastPathComponent();
    }
}

/// Makes what is missing and opens the Trash at `place`. Throws.
TrashFolder openHomeTrash(HomeTrash home, const FileURL& place, const MoveCalls& calls)
{
    if (home.obstacle != 0) {
        throwErrno(home.obstacle, findingTrash, place.path());
    }
    TrashFolder trash;
    trash.base = std::move(home.nearest);
    trash.path = place.path();
    for (const std::string& name : home.missing) {
        OpenedDirectory next = openOrMake(trash.base, name, LastLink::followed, calls);
        trash.base = std::move(next.directory);
        if (next.error != 0) {
            throwErrno(next.error, findingTrash, place.path());
        }
    }
    if (const int error = openParts(trash, calls); error != 0) {
        throwErrno(error, findingTrash, place.path());
    }
    return trash;
}

/// The folder for the Trashes of all users at the top of a volume; none unless it is fit for that.
OpenedDirectory openShared(const VolumeTop& top, const MoveCalls& calls)
{
    OpenedDirectory shared =
        openDirectoryIn(top.directory.number(), ".Trash", LastLink::refused, calls);
    PlaceFacts facts;
    if (shared.error == 0) {
        shared.error = -readPlaceFacts(shared.directory.number(), "", facts, calls);
    }
    if (shared.error == 0 && (facts.permissions & stickyBit) == 0) {
        shared.error = EPERM;
    }
    return shared;
}

/// Opens the Trash `name` in `parent` with its parts; 0 or the positive error number.
int openVolumeTrash(TrashFolder& trash, const Descriptor& parent, const std::string& name,
                    const MoveCalls& calls)
{
    OpenedDirectory base = openOrMakeOwned(parent, name, calls);
    if (base.error != 0) {
        return base.error;
    }
    trash.base = std::move(base.directory);
    return openParts(trash, calls);
}

/// The name of the user's own Trash in the folder for those of all users, and at the top of a
/// volume.
std::string nameInShared()
{
    return std::to_string(::geteuid());
}

std::string nameAtTop()
{
    return ".Trash-" + nameInShared();
}

/// Whether a Trash of that name is there and the user's, or could be made.
bool isUsable(const Descriptor& parent, const std::string& name, const MoveCalls& calls)
{
    const OpenedDirectory opened = openDirectoryIn(parent.number(), name, LastLink::refused, calls);
    PlaceFacts facts;
    return opened.error == ENOENT
           || (opened.error == 0 && readPlaceFacts(opened.directory.number(), "", facts, calls) == 0
               && facts.owner == ::geteuid());
}

TrashFolder trashOfVolume(int parent, const std::string& path, const MoveCalls& calls)
{
    const VolumeTop top = volumeTop(parent, calls);
    const std::string user = nameInShared();
    const FileURL place = FileURL::directory(top.path);
    TrashFolder trash;
    trash.volume = top.path;
    if (const OpenedDirectory shared = openShared(top, calls);
        shared.error == 0 && openVolumeTrash(trash, shared.directory, user, calls) == 0) {
        trash.path = place.appending(".Trash/" + user).path();
        return trash;
    }
    const std::string name = nameAtTop();
    if (const int error = openVolumeTrash(trash, top.directory, name, calls); error != 0) {
        const std::string reason = std::generic_category().message(error);
        throw FileError(std::make_error_code(std::errc::cross_device_link), findingTrash, path,
                        "its volume has no Trash: " + reason);
    }
    trash.path = place.appending(name).path();
    return trash;
}

/// The Trash at home, if a move of what is shown with those facts can reach it. Throws.
std::optional<HomeTrash> reachableHomeTrash(const std::optional<FileURL>& place,
                                            const PlaceFacts& facts, const MoveCalls& calls)
{
    if (!place) {
        return std::nullopt;
    }
    HomeTrash home = lookForHomeTrash(*place, calls);
    PlaceFacts nearest;
    if (const int result = readPlaceFacts(home.nearest.number(), "", nearest, calls); result < 0) {
        throwErrno(-result, findingTrash, place->path());
    }
    return areOnOneMount(nearest, facts) ? std::optional(std::move(home)) : std::nullopt;
}

std::optional<FileURL> homeTrashPlace()
{
    const auto data = applicationSupportDirectory();
    return data ? std::optional(data->appending("Trash", FileURL::Names::directory)) : std::nullopt;
}

}  // namespace

TrashFolder openTrashFor(int parent, const PlaceFacts& facts, const std::string& path,
                         const MoveCalls& calls)
{
    const std::optional<FileURL> place = homeTrashPlace();
    if (auto home = reachableHomeTrash(place, facts, calls)) {
        return openHomeTrash(*std::move(home), *place, calls);
    }
    return trashOfVolume(parent, path, calls);
}

std::optional<VolumeTrash> volumeTrashFor(int parent, const PlaceFacts& facts,
                                          const MoveCalls& calls)
{
    if (reachableHomeTrash(homeTrashPlace(), facts, calls)) {
        return std::nullopt;
    }
    const VolumeTop top = volumeTop(parent, calls);
    const OpenedDirectory shared = openShared(top, calls);
    const bool isShared = shared.error == 0 && isUsable(shared.directory, nameInShared(), calls);
    const std::string name = isShared ? ".Trash/" + nameInShared() : nameAtTop();
    return VolumeTrash{FileURL::directory(top.path).appending(name, FileURL::Names::directory),
                       top.path};
}

}  // namespace gruk
