#include "platform/files/trash.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <ctime>
#include <random>
#include <system_error>

#include "platform/foundation/errors.h"
#include "platform/linux/directory_sizes.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/persistently.h"
#include "platform/linux/small_file.h"
#include "platform/linux/trash_folder.h"
#include "platform/linux/trash_info.h"
#include "platform/linux/volume_top.h"

namespace gruk {

namespace {

constexpr const char* operation = "move to Trash";
constexpr std::size_t longestInfo = 65'536;

/// How long a name may be, most often and on file systems that encrypt names.
constexpr std::array<std::size_t, 2> nameLimits{255, 143};

[[noreturn]] void refuse(const std::string& path, std::errc code, std::string_view words)
{
    throw FileError(std::make_error_code(code), operation, path, words);
}

/// What tells the n-th name for an item from the others: nothing, "2", "3" and so on; after many
/// that are taken a number that hardly anybody has.
std::string markOf(std::size_t attempt)
{
    constexpr std::size_t countedAttempts = 100;
    if (attempt == 0) {
        return {};
    }
    if (attempt < countedAttempts) {
        return std::to_string(attempt + 1);
    }
    std::random_device source;
    return std::to_string(source());
}

/// The item that goes to a Trash.
struct Item {
    const FileURL& url;
    const OpenedParent& parent;
    PlaceFacts facts;
    /// Where its parent is, when no link is followed; empty where the system cannot tell.
    std::string parentPath;

    [[nodiscard]] Spot spot() const { return {parent.directory.number(), parent.name, url.path()}; }
};

/// One item's way into one Trash.
class Trashing {
public:
    Trashing(const Item& item, const TrashFolder& trash,
             const std::optional<ItemIdentity>& identity, const MoveCalls& calls)
        : item_(item), trash_(trash), identity_(identity), calls_(calls),
          text_(trashInfoText({infoPath(), deletionDateText(std::time(nullptr))}))
    {
    }

    /// Returns where the item is now. Throws.
    FileURL run()
    {
        refuseTheTrashItself();
        constexpr std::size_t attempts = 150;
        std::size_t limit = 0;
        for (std::size_t taken = 0; taken < attempts;) {
            const std::string name = trashName(item_.parent.name, markOf(taken),
                                               nameLimits.at(limit) - trashInfoSuffix.size());
            const int result = moveAs(name);
            if (result == 0) {
                return arrived(name);
            }
            if (result == EEXIST) {
                ++taken;
            } else if (++limit == nameLimits.size()) {
                throwErrno(result, operation, item_.url.path());
            }
        }
        throwErrno(EEXIST, operation, item_.url.path());
    }

private:
    /// What the info file says of where the item was. On a volume that counts from its top; the
    /// path as the user knows it, if it leads there as it reads, else the true one.
    std::string infoPath() const
    {
        const std::string& path = item_.url.path();
        if (!trash_.volume) {
            return path;
        }
        for (const std::string& candidate : {path, item_.parentPath + "/" + item_.parent.name}) {
            const std::string& top = *trash_.volume;
            if (candidate != top && pathIsAtOrBelow(candidate, top)) {
                return candidate.substr(top == "/" ? 1 : top.size() + 1);
            }
        }
        return path;
    }

    /// What is in a Trash is there already; and a Trash cannot be put into itself.
    void refuseTheTrashItself() const
    {
        std::string trash;
        if (calls_.pathOf(trash_.base.number(), trash) < 0 || item_.parentPath.empty()) {
            return;
        }
        if (pathIsAtOrBelow(item_.parentPath, trash)) {
            refuse(item_.url.path(), std::errc::invalid_argument, "it is in the Trash already");
        }
        const FileURL itself = FileURL(item_.parentPath).appending(item_.parent.name);
        if (pathIsAtOrBelow(trash, itself.path())) {
            refuse(item_.url.path(), std::errc::invalid_argument, "the Trash itself is in it");
        }
    }

    /// Tries one name: 0 when the item has it now, `EEXIST` or `ENAMETOOLONG` when the name is no
    /// good. Throws whatever else goes wrong. The info file stands before the item comes, so that
    /// nothing is ever in the Trash of which nobody knows where it was.
    int moveAs(const std::string& name)
    {
        const std::string infoName = name + std::string(trashInfoSuffix);
        const int info = trash_.info.number();
        const std::string path = trash_.path + "/files/" + name;
        try {
            written_ =
                makeSmallFile(info, infoName, text_, trash_.path + "/info/" + infoName, calls_);
            // So that it is there before the item, also after a power failure.
            persistently([&] { return calls_.synchronizeDirectory(info); });
        } catch (const FileError& error) {
            return nameIsNoGood(error);
        }
        try {
            moveBetween(item_.spot(), {trash_.files.number(), name, path}, identity_, calls_);
            return 0;
        } catch (const StrayedItemError&) {
            // The info file stays with the item that is there now: it names its place as well.
            throw;
        } catch (const FileError& error) {
            removeSmallFile(info, infoName, written_, calls_);
            return nameIsNoGood(error);
        }
    }

    /// The number of an error that another name may mend; throws the one being handled otherwise.
    static int nameIsNoGood(const FileError& error)
    {
        if (error.code() == std::errc::file_exists) {
            return EEXIST;
        }
        if (error.code() == std::errc::filename_too_long) {
            return ENAMETOOLONG;
        }
        throw;
    }

    FileURL arrived(const std::string& name) const
    {
        const bool isDirectory = item_.facts.item.type == ItemType::directory;
        if (isDirectory) {
            noteSize(name);
        }
        return FileURL::directory(trash_.path)
            .appending("files/" + name,
                       isDirectory ? FileURL::Names::directory : FileURL::Names::item);
    }

    /// After the move, which must not wait for a walk; and a size that is not noted costs nobody
    /// more than a walk of their own.
    void noteSize(const std::string& name) const
    {
        PlaceFacts info;
        const std::string infoName = name + std::string(trashInfoSuffix);
        const int result = persistently([&] {
            return calls_.facts(trash_.info.number(), infoName.c_str(), LastLink::refused, info);
        });
        if (result == 0) {
            const double seconds = std::floor(info.item.modified.secondsSince1970);
            noteDirectorySize(trash_.base, trash_.files, name, static_cast<std::int64_t>(seconds),
                              calls_);
        }
    }

    const Item& item_;
    const TrashFolder& trash_;
    const std::optional<ItemIdentity>& identity_;
    const MoveCalls& calls_;
    std::string text_;
    PlaceFacts written_;
};

/// The info file of an item in a Trash, with what is open of that Trash.
struct FoundInfo {
    Descriptor base;
    Descriptor info;
    std::string name;
    PlaceFacts facts;
};

/// Whether the info file of a Trash, open as `base`, names the place `original`: as it reads, or as
/// it is, in the open folder `target`, when no link is followed.
bool namesPlace(const TrashInfo& info, const Descriptor& base, const FileURL& original,
                const OpenedParent& target, const MoveCalls& calls)
{
    std::string named = info.path;
    if (!named.starts_with('/')) {
        named = FileURL(volumeTop(base.number(), calls).path).appending(named).path();
    }
    std::string folder;
    const bool isKnown = calls.pathOf(target.directory.number(), folder) >= 0;
    return named == original.path()
           || (isKnown && named == FileURL(folder).appending(target.name).path());
}

/// Finds the info file that belongs to what stands as `spot` in a Trash: the one of its name in the
/// folder beside. Throws `FileError` when it says that the item came from another place: then it is
/// not the one that went there, and its way back is not this one.
std::optional<FoundInfo> findInfo(const Spot& spot, const FileURL& original,
                                  const OpenedParent& target, const MoveCalls& calls)
{
    if (FileURL(spot.path).deletingLastPathComponent().lastPathComponent() != "files") {
        return std::nullopt;
    }
    FoundInfo found;
    found.base = openDirectoryIn(spot.directory, "..", LastLink::refused, calls).directory;
    if (!found.base.isOpen()) {
        return std::nullopt;
    }
    found.info = openDirectoryIn(found.base.number(), "info", LastLink::refused, calls).directory;
    found.name = spot.name + std::string(trashInfoSuffix);
    if (!found.info.isOpen()) {
        return std::nullopt;
    }
    const auto file = readSmallFile(found.info.number(), found.name, longestInfo, calls);
    const auto info = file ? parseTrashInfo(file->text) : std::nullopt;
    if (!info) {
        return std::nullopt;
    }
    if (!namesPlace(*info, found.base, original, target, calls)) {
        throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), "restore",
                        spot.path, "another item has its place in the Trash");
    }
    found.facts = file->facts;
    return found;
}

/// Removes the info file of an item that has left the Trash, unless something took its name there
/// meanwhile.
void forget(const FoundInfo& found, const Spot& left, const MoveCalls& calls)
{
    PlaceFacts facts;
    const int result = persistently(
        [&] { return calls.facts(left.directory, left.name.c_str(), LastLink::refused, facts); });
    if (result == -ENOENT) {
        removeSmallFile(found.info.number(), found.name, found.facts, calls);
        dropDirectorySize(found.base, left.name, calls);
    }
}

}  // namespace

FileURL trashItem(const FileURL& url, const MoveConditions& conditions, const MoveCalls& calls)
{
    const OpenedParent parent = openWayTo(url, conditions.within, operation, calls);
    Item item{url, parent, {}, {}};
    item.facts = factsOf(item.spot(), operation, calls);
    requireIdentity(item.facts, conditions.identity, url.path());
    const std::string here;
    const PlaceFacts around =
        factsOf({parent.directory.number(), here, url.path()}, operation, calls);
    if (!areOnOneMount(item.facts, around)) {
        refuse(url.path(), std::errc::device_or_resource_busy, "a volume is mounted there");
    }
    if (calls.pathOf(parent.directory.number(), item.parentPath) < 0) {
        item.parentPath.clear();
    }
    const TrashFolder trash = openTrashFor(parent.directory.number(), around, url.path(), calls);
    return Trashing(item, trash, conditions.identity, calls).run();
}

void restoreTrashedItem(const FileURL& trashed, const FileURL& original,
                        const MoveConditions& conditions, const MoveCalls& calls)
{
    const OpenedParent source = openWayTo(trashed, std::nullopt, "restore", calls);
    const OpenedParent target = openWayTo(original, conditions.within, "restore", calls);
    const Spot from{source.directory.number(), source.name, trashed.path()};
    const std::optional<FoundInfo> info = findInfo(from, original, target, calls);
    moveBetween(from, {target.directory.number(), target.name, original.path()},
                conditions.identity, calls);
    if (info) {
        forget(*info, from, calls);
    }
}

}  // namespace gruk
