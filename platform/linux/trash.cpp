#include "platform/files/trash.h"

#include <cerrno>
#include <cmath>
#include <ctime>
#include <deque>
#include <system_error>
#include <utility>

#include "platform/foundation/errors.h"
#include "platform/foundation/require.h"
#include "platform/linux/errno_error.h"
#include "platform/linux/guarded_move.h"
#include "platform/linux/guarded_path.h"
#include "platform/linux/move_records.h"
#include "platform/linux/persistently.h"
#include "platform/linux/small_file.h"
#include "platform/linux/trash_info.h"
#include "platform/linux/trash_way.h"
#include "platform/linux/volume_top.h"

namespace gruk {

namespace {

constexpr std::size_t longestInfo = 65'536;

std::string infoNameOf(const std::string& name)
{
    return name + std::string(trashInfoSuffix);
}

/// The number of an error that another name may mend; throws the one being handled otherwise.
int nameIsNoGood(const FileError& error)
{
    if (error.code() == std::errc::file_exists) {
        return EEXIST;
    }
    if (error.code() == std::errc::filename_too_long) {
        return ENAMETOOLONG;
    }
    throw;
}

/// What the info file of an item that goes now says.
std::string infoTextOf(const TrashWay& way)
{
    return trashInfoText({way.infoPath, deletionDateText(std::time(nullptr))});
}

/// Begins the info file of an item that is to have that name in its Trash. Throws.
SmallFileInMaking beginInfo(const TrashWay& way, const std::string& name, const std::string& text,
                            const MoveCalls& calls)
{
    const std::string infoName = infoNameOf(name);
    return {way.trash.info.number(), infoName, text, way.trash.path + "/info/" + infoName, calls};
}

/// Tries one name after the other: `attempt` answers 0 when the item has it, and throws when
/// another name would not help either. Returns the name, or throws when none is good.
template <typename Attempt>
std::string firstGoodName(const TrashWay& way, Attempt attempt)
{
    std::size_t limit = 0;
    for (std::size_t taken = 0; taken < nameAttempts;) {
        std::string name = nameInTrash(way, taken, limit);
        int result = 0;
        try {
            attempt(name);
            return name;
        } catch (const StrayedItemError&) {
            throw;
        } catch (const FileError& error) {
            result = nameIsNoGood(error);
        }
        if (result == EEXIST) {
            ++taken;
        } else if (++limit == nameLimitCount) {
            throwErrno(result, trashing, way.url.path());
        }
    }
    throwErrno(EEXIST, trashing, way.url.path());
}

/// One item's way into its Trash.
class Trashing {
public:
    Trashing(const TrashWay& way, const std::optional<ItemIdentity>& identity,
             const MoveCalls& calls, MoveBatch::Records& records)
        : way_(way), identity_(identity), calls_(calls), records_(records)
    {
    }

    /// Returns where the item is now. Throws.
    FileURL run()
    {
        if (const std::optional<std::string> name = moveAsPrepared()) {
            return arrived(*name);
        }
        const std::string text = infoTextOf(way_);
        return arrived(firstGoodName(way_, [&](const std::string& name) {
            SmallFileInMaking info = beginInfo(way_, name, text, calls_);
            info.finish();
            // So that it is there before the item, also after a power failure.
            const int directory = way_.trash.info.number();
            persistently([&] { return calls_.synchronizeDirectory(directory); });
            moveBeside(name, text, info.facts());
        }));
    }

private:
    /// Takes the name for which an info file stands already; none when there is none, or it is no
    /// good.
    std::optional<std::string> moveAsPrepared()
    {
        const std::optional<PreparedInfo> prepared =
            records_.takePrepared(way_.openTrash(), way_.url.path(), way_.infoPath);
        if (!prepared) {
            return std::nullopt;
        }
        try {
            moveBeside(prepared->name, prepared->text, prepared->written);
            return prepared->name;
        } catch (const StrayedItemError&) {
            throw;
        } catch (const FileError& error) {
            nameIsNoGood(error);
            return std::nullopt;
        }
    }

    /// Moves the item to that name, for which an info file stands. That goes before the item, so
    /// that nothing is ever in the Trash of which nobody knows where it was, and goes away again
    /// when the item cannot come. Throws.
    void moveBeside(const std::string& name, const std::string& text, const PlaceFacts& info)
    {
        const std::string path = way_.trash.path + "/files/" + name;
        try {
            moveBetween(way_.spot(), {way_.trash.files.number(), name, path}, identity_, calls_,
                        records_);
        } catch (const StrayedItemError&) {
            // The info file stays with the item that is there now: it names its place as well.
            records_.noteItemCame(way_.openTrash(), name, text);
            throw;
        } catch (const FileError&) {
            removeSmallFile(way_.trash.info.number(), infoNameOf(name), info, calls_);
            throw;
        }
        records_.noteItemCame(way_.openTrash(), name, text);
    }

    FileURL arrived(const std::string& name) const
    {
        const bool isDirectory = way_.facts.item.type == ItemType::directory;
        if (isDirectory) {
            noteFolder(name);
        }
        return FileURL::directory(way_.trash.path)
            .appending("files/" + name,
                       isDirectory ? FileURL::Names::directory : FileURL::Names::item);
    }

    /// A size that is not noted costs nobody more than a walk of their own.
    void noteFolder(const std::string& name) const
    {
        PlaceFacts info;
        const std::string infoName = infoNameOf(name);
        const int result = persistently([&] {
            return calls_.facts(way_.trash.info.number(), infoName.c_str(), LastLink::refused,
                                info);
        });
        if (result == 0) {
            const double seconds = std::floor(info.item.modified.secondsSince1970);
            records_.noteFolderCame(way_.openTrash(), name, static_cast<std::int64_t>(seconds));
        }
    }

    const TrashWay& way_;
    const std::optional<ItemIdentity>& identity_;
    const MoveCalls& calls_;
    MoveBatch::Records& records_;
};

/// Info files that are on their way to the disk together.
class Preparation {
public:
    Preparation(const MoveCalls& calls, MoveBatch::Records& records)
        : calls_(calls), records_(records)
    {
    }

    /// Begins with one item; one that cannot go is left to the move, which tells why.
    void begin(const FileURL& url, const MoveConditions& conditions)
    {
        // Each holds five descriptors.
        constexpr std::size_t mostAtOnce = 32;
        if (begun_.size() == mostAtOnce) {
            finish();
        }
        try {
            TrashWay way =
                openTrashWay(url, {conditions.within, std::nullopt, conditions.batch}, calls_);
            std::string text = infoTextOf(way);
            std::optional<SmallFileInMaking> info;
            std::string name = firstGoodName(way, [&](const std::string& candidate) {
                info.emplace(beginInfo(way, candidate, text, calls_));
            });
            begun_.push_back({std::move(way), std::move(name), std::move(text), *std::move(info)});
        } catch (const FileError&) {  // NOLINT(bugprone-empty-catch): the move tells
        }
    }

    /// Waits until those begun are on the disk, with their names.
    void finish()
    {
        for (Begun& one : begun_) {
            try {
                one.info.finish();
                records_.keepPrepared(one.way.openTrash(), one.way.url.path(),
                                      {one.way.infoPath, one.name, one.text, one.info.facts()});
                records_.noteNames(one.way.trash.info.number());
            } catch (const FileError&) {  // NOLINT(bugprone-empty-catch): the move tells
            }
        }
        begun_.clear();
        records_.synchronizeNames();
    }

private:
    struct Begun {
        TrashWay way;
        std::string name;
        std::string text;
        SmallFileInMaking info;
    };

    const MoveCalls& calls_;
    MoveBatch::Records& records_;
    std::deque<Begun> begun_;
};

/// The info file of an item in a Trash, with what is open of that Trash.
struct FoundInfo {
    Descriptor base;
    Descriptor info;
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
    if (!found.info.isOpen()) {
        return std::nullopt;
    }
    const auto file = readSmallFile(found.info.number(), infoNameOf(spot.name), longestInfo, calls);
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

}  // namespace

FileURL trashItem(const FileURL& url, const MoveConditions& conditions, const MoveCalls& calls)
{
    const TrashWay way = openTrashWay(url, conditions, calls);
    const BatchOrOwn batch(conditions.batch, calls);
    return Trashing(way, conditions.identity, calls, batch.records()).run();
}

void prepareToTrash(const std::vector<FileURL>& urls, const MoveConditions& conditions,
                    const MoveCalls& calls)
{
    GRUK_REQUIRE(conditions.batch != nullptr, "what is prepared belongs to a batch");
    Preparation preparation(calls, conditions.batch->records());
    for (const FileURL& url : urls) {
        preparation.begin(url, conditions);
    }
    preparation.finish();
}

void restoreTrashedItem(const FileURL& trashed, const FileURL& original,
                        const MoveConditions& conditions, const MoveCalls& calls)
{
    const OpenedParent source = openWayTo(trashed, std::nullopt, "restore", calls);
    const OpenedParent target = openWayTo(original, conditions, "restore", calls);
    const Spot from{source.directory.number(), source.name, trashed.path()};
    const std::optional<FoundInfo> found = findInfo(from, original, target, calls);
    const BatchOrOwn batch(conditions.batch, calls);
    moveBetween(from, {target.directory.number(), target.name, original.path()},
                conditions.identity, calls, batch.records());
    if (found) {
        batch.records().noteItemLeft({found->base, source.directory, found->info}, source.name,
                                     found->facts);
    }
}

}  // namespace gruk
