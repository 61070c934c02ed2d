#include "platform/linux/guarded_move.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "platform/linux/errno_error.h"
#include "platform/linux/move_records.h"
#include "platform/linux/persistently.h"

namespace gruk {

namespace {

constexpr const char* moving = "move";

int examine(const Spot& spot, PlaceFacts& facts, const MoveCalls& calls)
{
    return persistently(
        [&] { return calls.facts(spot.directory, spot.name.c_str(), LastLink::refused, facts); });
}

bool isAt(const Spot& spot, const ItemIdentity& identity, const MoveCalls& calls)
{
    PlaceFacts facts;
    return examine(spot, facts, calls) == 0 && identityFrom(facts.item) == identity;
}

/// Whether the item has come to `to` although the call said otherwise: a server may have done it
/// and lost its answer, and a call that is repeated then finds nothing to move.
bool hasArrived(const Spot& from, const Spot& to, const ItemIdentity& moved, const MoveCalls& calls)
{
    PlaceFacts facts;
    return isAt(to, moved, calls) && examine(from, facts, calls) == -ENOENT;
}

/// An empty thing of our own that holds a free name until an item is moved over it.
class PlaceHolder {
public:
    PlaceHolder(const Spot& spot, ItemType type, const MoveCalls& calls)
        : spot_(spot), calls_(calls), isDirectory_(type == ItemType::directory)
    {
    }

    /// 0 or the negative error number; then there is none.
    int make()
    {
        const int result = isDirectory_ ? makeDirectory() : makeFile();
        isMade_ = result >= 0;
        return result;
    }

    /// Whether it still stands there and nobody put anything into it.
    [[nodiscard]] bool isUntouched() const
    {
        PlaceFacts facts;
        return examine(spot_, facts, calls_) == 0 && identityFrom(facts.item) == identity_
               && (isDirectory_ || facts.item.logicalSize == 0);
    }

    /// Takes it away if it is still the one that was made.
    void remove() const
    {
        if (isMade_ && isUntouched()) {
            const auto& call = isDirectory_ ? calls_.removeDirectory : calls_.remove;
            persistently([&] { return call(spot_.directory, spot_.name.c_str()); });
        }
    }

private:
    int makeDirectory()
    {
        constexpr unsigned ownerOnly = 0700;
        const int result = persistently(
            [&] { return calls_.makeDirectory(spot_.directory, spot_.name.c_str(), ownerOnly); });
        // One that cannot be looked at is left: it may be another one's by now.
        return result == 0 ? learn(spot_.directory, spot_.name) : result;
    }

    int makeFile()
    {
        constexpr unsigned ownerOnly = 0600;
        const int descriptor = persistently(
            [&] { return calls_.createExclusive(spot_.directory, spot_.name.c_str(), ownerOnly); });
        if (descriptor < 0) {
            return descriptor;
        }
        int result = learn(descriptor, std::string());
        if (result < 0) {
            result = learn(spot_.directory, spot_.name);
        }
        calls_.close(descriptor);
        return result;
    }

    /// Without its identity it cannot be told from what others make.
    int learn(int directory, const std::string& name)
    {
        PlaceFacts facts;
        const int result = persistently(
            [&] { return calls_.facts(directory, name.c_str(), LastLink::refused, facts); });
        identity_ = identityFrom(facts.item);
        return result;
    }

    const Spot& spot_;
    const MoveCalls& calls_;
    bool isDirectory_;
    bool isMade_ = false;
    ItemIdentity identity_;
};

/// The nearest to "never replace" that a file system without it has. A directory can only take the
/// place of an empty one, so nothing but our own place-holder can be lost. For anything else there
/// is a moment between the last look at the place-holder and the move in which another program
/// would have to write into a file that it did not make. The other way, to link to the new name
/// and remove the old one, has such a moment too, and there a file that was just saved anew under
/// the old name would be deleted.
int moveOverPlaceHolder(const Spot& from, const Spot& to, const PlaceFacts& item,
                        const MoveCalls& calls)
{
    if (item.item.type == ItemType::directory && pathIsAtOrBelow(to.path, from.path)) {
        return -EINVAL;
    }
    PlaceHolder holder(to, item.item.type, calls);
    if (const int result = holder.make(); result < 0) {
        return result;
    }
    // Not "taken", which would be an invitation to try another name and leave one more behind.
    int result = -EBUSY;
    if (holder.isUntouched()) {
        result = persistently([&] {
            return calls.moveOver(from.directory, from.name.c_str(), to.directory, to.name.c_str());
        });
    }
    if (result < 0) {
        holder.remove();
    }
    return result == -ENOTEMPTY || result == -ENOTDIR || result == -EISDIR ? -EEXIST : result;
}

[[noreturn]] void refuseFolder(const Spot& folder, int error, std::string_view words)
{
    throw FileError(std::error_code(error, std::generic_category()), moving, folder.path, words);
}

/// A folder would take the volumes that are mounted in it along, and whoever empties the Trash
/// would empty those disks. A folder of which that cannot be told stays. Only one whose path is
/// beyond what a call can tell passes: nothing can be mounted by such a path.
void requireNoVolumeIn(const Spot& folder, const MoveCalls& calls)
{
    constexpr std::string_view unknown = "whether a volume is mounted in it cannot be told";
    std::string parent;
    const int told = persistently([&] { return calls.pathOf(folder.directory, parent); });
    if (told == -ENAMETOOLONG && folder.path.size() >= PATH_MAX) {
        return;
    }
    if (told < 0) {
        refuseFolder(folder, -told, unknown);
    }
    const std::string itself = FileURL(parent).appending(folder.name).path();
    bool isMounted = false;
    const int listed = persistently([&] {
        return calls.mounts([&](std::uint64_t, const std::string& point) {
            isMounted = isMounted || pathIsAtOrBelow(point, itself);
        });
    });
    if (isMounted) {
        refuseFolder(folder, EBUSY, "a volume is mounted in it");
    }
    if (listed < 0) {
        refuseFolder(folder, -listed, unknown);
    }
}

bool saysNotSupported(int result)
{
    return result == -EINVAL || result == -ENOSYS || result == -EOPNOTSUPP;
}

/// Moves the item, which is `item`; 0 or the negative error number, and then it has not moved.
int transfer(const Spot& from, const Spot& to, const PlaceFacts& item, const MoveCalls& calls)
{
    int result = persistently([&] {
        return calls.moveWithoutReplacing(from.directory, from.name.c_str(), to.directory,
                                          to.name.c_str());
    });
    if (saysNotSupported(result)) {
        result = moveOverPlaceHolder(from, to, item, calls);
    }
    return result < 0 && hasArrived(from, to, identityFrom(item.item), calls) ? 0 : result;
}

/// A move that is done stays done when its names cannot be made durable: after a power failure
/// they are the former ones or the new ones, as the file system keeps them. So no error is told.
void noteNames(const Spot& from, const Spot& to, MoveBatch::Records& records)
{
    records.noteNames(to.directory);
    if (from.directory != to.directory) {
        records.noteNames(from.directory);
    }
}

[[noreturn]] void throwChanged(const std::string& path, std::string_view words)
{
    throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), moving, path,
                    words);
}

/// Whether what arrived is the item that was meant, seen as `before` right before the move. A file
/// system in layers gives an item of a lower one another birth time when it moves it; then a size
/// and a date that are still the same tell.
bool isTheOneMeant(const ItemFacts& arrived, const ItemFacts& before, ItemIdentity meant)
{
    if (arrived.modified == before.modified && arrived.logicalSize == before.logicalSize) {
        meant.created.reset();
    }
    return identityFrom(arrived) == meant;
}

/// Looks once more at what arrived. Another item than the one that was meant goes back; so does
/// one that cannot be looked at, but if it can neither be looked at nor put back it is taken for
/// the one that was there a moment before, and the move stands.
void confirm(const Spot& from, const Spot& to, const ItemIdentity& identity,
             const PlaceFacts& before, const MoveCalls& calls)
{
    PlaceFacts arrived;
    const int seen = examine(to, arrived, calls);
    if (seen == 0 && isTheOneMeant(arrived.item, before.item, identity)) {
        return;
    }
    const int result = transfer(to, from, arrived, calls);
    if (result == 0) {
        if (seen < 0) {
            throwErrno(-seen, moving, from.path);
        }
        throwChanged(from.path, "another item was put in its place; it was left there");
    }
    if (seen == 0) {
        throw StrayedItemError(from.path, to.path);
    }
}

}  // namespace

ItemIdentity identityFrom(const ItemFacts& facts)
{
    return {facts.deviceID, facts.inode, facts.type, facts.created};
}

PlaceFacts factsOf(const Spot& spot, const char* tried, const MoveCalls& calls)
{
    PlaceFacts facts;
    if (const int result = examine(spot, facts, calls); result < 0) {
        throwErrno(-result, tried, spot.path);
    }
    return facts;
}

void requireIdentity(const PlaceFacts& found, const std::optional<ItemIdentity>& meant,
                     const std::string& path)
{
    if (meant && identityFrom(found.item) != *meant) {
        throwChanged(path, "another item stands there now");
    }
}

void moveBetween(const Spot& from, const Spot& to, const std::optional<ItemIdentity>& identity,
                 const MoveCalls& calls, MoveBatch::Records& records)
{
    const PlaceFacts item = factsOf(from, moving, calls);
    requireIdentity(item, identity, from.path);
    if (item.item.type == ItemType::directory) {
        requireNoVolumeIn(from, calls);
    }
    if (const int result = transfer(from, to, item, calls); result < 0) {
        throwErrno(-result, moving, result == -EEXIST ? to.path : from.path);
    }
    // Also of an item that goes back.
    noteNames(from, to, records);
    if (identity) {
        confirm(from, to, *identity, item, calls);
    }
}

}  // namespace gruk
