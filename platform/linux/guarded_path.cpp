#include "platform/linux/guarded_path.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>

#include "platform/linux/errno_error.h"
#include "platform/linux/move_records.h"
#include "platform/linux/persistently.h"

namespace gruk {

namespace {

void dropSeparators(std::string_view& path)
{
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
}

/// Follows `path` from the root in pieces that one call takes each.
OpenedDirectory followWay(std::string_view path, const MoveCalls& calls)
{
    OpenedDirectory at = openDirectoryIn(AT_FDCWD, "/", LastLink::followed, calls);
    dropSeparators(path);
    while (at.error == 0 && !path.empty()) {
        const std::string_view piece = nextPathPiece(path);
        at = openDirectoryIn(at.directory.number(), std::string(piece), LastLink::followed, calls);
        path.remove_prefix(piece.size());
        dropSeparators(path);
    }
    return at;
}

/// Goes down the names of `path` from `at`, each of which must be a directory itself.
OpenedDirectory descend(OpenedDirectory at, std::string_view path, const MoveCalls& calls)
{
    dropSeparators(path);
    while (at.error == 0 && !path.empty()) {
        const std::string name(path.substr(0, path.find('/')));
        if (name == "..") {
            return {Descriptor(), EINVAL};
        }
        at = openDirectoryIn(at.directory.number(), name, LastLink::refused, calls);
        path.remove_prefix(name.size());
        dropSeparators(path);
    }
    return at;
}

}  // namespace

OpenedDirectory openDirectoryIn(int directory, const std::string& name, LastLink link,
                                const MoveCalls& calls)
{
    const int result =
        persistently([&] { return calls.openDirectory(directory, name.c_str(), link); });
    return result < 0 ? OpenedDirectory{Descriptor(), -result}
                      : OpenedDirectory{Descriptor(result), 0};
}

OpenedDirectory openDirectoryAt(std::string_view path, const MoveCalls& calls)
{
    if (nextPathPiece(path).size() == path.size()) {
        return openDirectoryIn(AT_FDCWD, std::string(path), LastLink::followed, calls);
    }
    return followWay(path, calls);
}

OpenedParent openWayTo(const FileURL& url, const std::optional<FileURL>& within,
                       const char* operation, const MoveCalls& calls)
{
    return openWayTo(url, MoveConditions{within, std::nullopt, nullptr}, operation, calls);
}

OpenedParent openWayTo(const FileURL& url, const MoveConditions& conditions, const char* operation,
                       const MoveCalls& calls)
{
    const std::optional<FileURL>& within = conditions.within;
    const std::string& path = url.path();
    const std::string name(url.lastPathComponent());
    if (name == "/" || name == "." || name == "..") {
        throwErrno(EINVAL, operation, path);
    }
    const std::string_view way = std::string_view(path).substr(0, path.size() - name.size());
    const bool isBelow = within && path != within->path() && pathIsAtOrBelow(path, within->path());
    OpenedDirectory parent = openDirectoryAt(isBelow ? within->path() : way, calls);
    if (isBelow && parent.error == 0 && conditions.batch != nullptr) {
        conditions.batch->records().requireRoot(parent.directory, *within, operation);
    }
    if (isBelow) {
        parent = descend(std::move(parent), way.substr(within->path().size()), calls);
    }
    if (parent.error != 0) {
        throwErrno(parent.error, operation, path);
    }
    return {std::move(parent.directory), name};
}

}  // namespace gruk
