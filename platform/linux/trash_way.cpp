#include "platform/linux/trash_way.h"

#include <array>
#include <random>
#include <system_error>
#include <utility>

#include "platform/foundation/errors.h"
#include "platform/linux/trash_info.h"
#include "platform/linux/volume_top.h"

namespace gruk {

namespace {

/// How long a name may be, most often and on file systems that encrypt names.
constexpr std::array<std::size_t, nameLimitCount> nameLimits{255, 143};

[[noreturn]] void refuseTrashing(const std::string& path, std::errc code, std::string_view words)
{
    throw FileError(std::make_error_code(code), trashing, path, words);
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

std::string infoPathOf(const TrashWay& way)
{
    const std::string& path = way.url.path();
    if (!way.trash.volume) {
        return path;
    }
    for (const std::string& candidate : {path, way.parentPath + "/" + way.parent.name}) {
        const std::string& top = *way.trash.volume;
        if (candidate != top && pathIsAtOrBelow(candidate, top)) {
            return candidate.substr(top == "/" ? 1 : top.size() + 1);
        }
    }
    return path;
}

/// What is in a Trash is there already; and a Trash cannot be put into itself.
void refuseTheTrashItself(const TrashWay& way, const MoveCalls& calls)
{
    std::string trash;
    if (calls.pathOf(way.trash.base.number(), trash) < 0 || way.parentPath.empty()) {
        return;
    }
    if (pathIsAtOrBelow(way.parentPath, trash)) {
        refuseTrashing(way.url.path(), std::errc::invalid_argument, "it is in the Trash already");
    }
    const FileURL itself = FileURL(way.parentPath).appending(way.parent.name);
    if (pathIsAtOrBelow(trash, itself.path())) {
        refuseTrashing(way.url.path(), std::errc::invalid_argument, "the Trash itself is in it");
    }
}

}  // namespace

TrashWay openTrashWay(const FileURL& url, const MoveConditions& conditions, const MoveCalls& calls)
{
    TrashWay way{url, openWayTo(url, conditions, trashing, calls), {}, {}, {}, {}};
    way.facts = factsOf(way.spot(), trashing, calls);
    requireIdentity(way.facts, conditions.identity, url.path());
    const int parent = way.parent.directory.number();
    const std::string here;
    const PlaceFacts around = factsOf({parent, here, url.path()}, trashing, calls);
    if (!areOnOneMount(way.facts, around)) {
        refuseTrashing(url.path(), std::errc::device_or_resource_busy, "a volume is mounted there");
    }
    if (calls.pathOf(parent, way.parentPath) < 0) {
        way.parentPath.clear();
    }
    way.trash = openTrashFor(parent, around, url.path(), calls);
    refuseTheTrashItself(way, calls);
    way.infoPath = infoPathOf(way);
    return way;
}

std::string nameInTrash(const TrashWay& way, std::size_t taken, std::size_t limit)
{
    return trashName(way.parent.name, markOf(taken), nameLimits.at(limit) - trashInfoSuffix.size());
}

}  // namespace gruk
