#include "platform/files/moves.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>

#include "platform/foundation/errors.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/move_records.h"
#include "platform/linux/persistently.h"
#include "platform/linux/small_file.h"

namespace gruk {

namespace {

/// The facts of what is at `url`; throws `FileError`.
PlaceFacts look(const FileURL& url, LastLink link, const MoveCalls& calls)
{
    PlaceFacts facts;
    const auto ask = [&](int directory, const std::string& name) {
        return persistently([&] { return calls.facts(directory, name.c_str(), link, facts); });
    };
    int result = ask(AT_FDCWD, url.path());
    if (result == -ENAMETOOLONG) {
        const OpenedParent parent = openWayTo(url, std::nullopt, "examine", calls);
        result = ask(parent.directory.number(), parent.name);
    }
    if (result < 0) {
        throwErrno(-result, "examine", url.path());
    }
    return facts;
}

bool isDirectory(int directory, const ListedName& child, const MoveCalls& calls)
{
    if (child.type) {
        return *child.type == ItemType::directory;
    }
    PlaceFacts facts;
    const std::string name(child.name);
    return persistently([&] {
               return calls.facts(directory, name.c_str(), LastLink::refused, facts);
           }) == 0
           && facts.item.type == ItemType::directory;
}

/// Whether what stands at the end of the way is a file of the program's own.
bool isOwn(const OpenedParent& way, const OwnContent& own, const MoveCalls& calls)
{
    const auto file = readSmallFile(way.directory.number(), way.name, own.longest, calls);
    return file && own.isOurs(file->text);
}

}  // namespace

StrayedItemError::StrayedItemError(const std::string& path, const std::string& place)
    : FileError(std::make_error_code(std::errc::no_such_file_or_directory), "move", path,
                "another item was put in its place, and is now at " + place),
      place_(place)
{
}

bool itemStands(const FileURL& url, const MoveCalls& calls)
{
    try {
        static_cast<void>(look(url, LastLink::refused, calls));
    } catch (const FileError&) {
        return false;
    }
    return true;
}

bool itemIsReachable(const FileURL& url, const MoveCalls& calls)
{
    try {
        static_cast<void>(look(url, LastLink::followed, calls));
    } catch (const FileError&) {
        return false;
    }
    return true;
}

std::vector<FileURL> itemsIn(const FileURL& directory, HiddenItems hidden, const MoveCalls& calls)
{
    const OpenedDirectory opened = openDirectoryAt(directory.path(), calls);
    if (opened.error != 0) {
        throwErrno(opened.error, "list", directory.path());
    }
    const int number = opened.directory.number();
    std::vector<FileURL> items;
    const int result = calls.list(number, [&](const ListedName& child) {
        if (hidden == HiddenItems::listed || !child.name.starts_with('.')) {
            items.push_back(directory.appending(child.name, isDirectory(number, child, calls)
                                                                ? FileURL::Names::directory
                                                                : FileURL::Names::item));
        }
    });
    if (result < 0) {
        throwErrno(-result, "list", directory.path());
    }
    return items;
}

void makeDirectory(const FileURL& url, const MoveConditions& conditions, const MoveCalls& calls)
{
    constexpr unsigned everything = 0777;
    const OpenedParent parent = openWayTo(url, conditions, "make directory", calls);
    const int result = persistently([&] {
        return calls.makeDirectory(parent.directory.number(), parent.name.c_str(), everything);
    });
    if (result < 0) {
        throwErrno(-result, "make directory", url.path());
    }
}

void moveItem(const FileURL& from, const FileURL& to, const MoveConditions& conditions,
              const MoveCalls& calls)
{
    const OpenedParent source = openWayTo(from, conditions, "move", calls);
    const OpenedParent target = openWayTo(to, conditions, "move", calls);
    const BatchOrOwn batch(conditions.batch, calls);
    moveBetween({source.directory.number(), source.name, from.path()},
                {target.directory.number(), target.name, to.path()}, conditions.identity, calls,
                batch.records());
}

std::optional<ItemIdentity> itemIdentity(const FileURL& url, const MoveCalls& calls)
{
    try {
        return requiredIdentity(url, calls);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

ItemIdentity requiredIdentity(const FileURL& url, const MoveCalls& calls)
{
    return identityFrom(look(url, LastLink::refused, calls).item);
}

std::optional<std::string> readOwnFile(const FileURL& url, std::size_t longest,
                                       const MoveCalls& calls, const std::optional<FileURL>& within)
{
    try {
        const OpenedParent parent = openWayTo(url, within, "read", calls);
        auto file = readSmallFile(parent.directory.number(), parent.name, longest, calls);
        return file ? std::optional(std::move(file->text)) : std::nullopt;
    } catch (const FileError&) {
        return std::nullopt;
    }
}

void replaceOwnFile(const FileURL& target, std::string_view bytes, const MoveConditions& conditions,
                    const MoveCalls& calls, const OwnContent& own)
{
    const OpenedParent parent = openWayTo(target, conditions, "write", calls);
    const bool isGuarded =
        conditions.within && pathIsAtOrBelow(target.path(), conditions.within->path());
    // The open directory, wherever it may be put meanwhile, under a path that a call can take.
    const FileURL reached("/proc/self/fd/" + std::to_string(parent.directory.number()) + "/"
                          + parent.name);
    const auto refuseOthers = [&] {
        PlaceFacts facts;
        const int result = persistently([&] {
            return calls.facts(parent.directory.number(), parent.name.c_str(), LastLink::refused,
                               facts);
        });
        if (isGuarded && result == 0 && facts.item.type == ItemType::symbolicLink) {
            throwErrno(ELOOP, "write", target.path());
        }
        if (own.isOurs && result != -ENOENT && !isOwn(parent, own, calls)) {
            throw FileError(std::make_error_code(std::errc::file_exists), "write", target.path(),
                            "a file that is not Gruk's has this name");
        }
    };
    refuseOthers();
    try {
        AtomicFile file(reached, calls.files,
                        isGuarded ? AtomicFile::TargetLink::replaced
                                  : AtomicFile::TargetLink::followed);
        file.write(bytes);
        refuseOthers();
        file.commit();
    } catch (const FileError& error) {
        if (error.path() == target.path()) {
            throw;
        }
        throw FileError(error.code(), error.operation(), target.path());
    }
}

}  // namespace gruk
