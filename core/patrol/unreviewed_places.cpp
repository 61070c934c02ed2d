#include "core/patrol/unreviewed_places.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>

#include "core/patrol/journal_names.h"
#include "platform/foundation/ascii.h"

namespace gruk {

namespace {

constexpr std::string_view trashOfAUser = ".Trash-";
constexpr std::string_view trashOfAll = ".Trash";
constexpr std::string_view trashAtHome = ".local/share/Trash";

std::string_view lastComponent(std::string_view path)
{
    return path.substr(path.rfind('/') + 1);
}

bool isJournal(std::string_view name)
{
    return name == JournalNames::organise || name == JournalNames::stash;
}

/// Whether the path is, or leads through, what only a Trash is called. `path` is absolute.
bool leadsThroughATrash(std::string_view path)
{
    for (std::size_t start = 1; start < path.size();) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        const std::string_view name = path.substr(start, end - start);
        const std::string_view rest = path.substr(start);
        if ((name.starts_with(trashOfAUser) && isNumber(name.substr(trashOfAUser.size())))
            || pathIsAtOrBelow(rest, trashAtHome)) {
            return true;
        }
        start = end + 1;
        if (name == trashOfAll && start < path.size()
            && isNumber(path.substr(start, path.find('/', start) - start))) {
            return true;
        }
    }
    return false;
}

/// Calls `use` with the path of each folder above `path`.
template <typename Use>
void forEachFolderAbove(std::string_view path, Use use)
{
    for (std::size_t slash = path.rfind('/'); slash != std::string_view::npos && slash > 0;
         slash = path.rfind('/', slash - 1)) {
        use(path.substr(0, slash));
    }
}

}  // namespace

UnreviewedPaths::Seen::Seen(const std::vector<FileURL>& places, std::string_view root)
{
    const std::string below = root == "/" ? std::string(root) : std::string(root) + "/";
    for (const FileURL& url : places) {
        const std::string place = url.standardized().path();
        holdRoot = holdRoot || pathIsAtOrBelow(root, place);
        if (place.size() > below.size() && place.starts_with(below)) {
            relativePaths.push_back(place.substr(below.size()));
        }
    }
}

bool UnreviewedPaths::Seen::contains(std::string_view relativePath) const
{
    return holdRoot || std::ranges::any_of(relativePaths, [&](const std::string& place) {
               return pathIsAtOrBelow(relativePath, place);
           });
}

bool UnreviewedPaths::Seen::names(std::string_view name) const
{
    return std::ranges::any_of(
        relativePaths, [&](const std::string& place) { return lastComponent(place) == name; });
}

UnreviewedPaths::UnreviewedPaths(const UnreviewedPlaces& places, const FileURL& root)
    : root_(root.standardized().path()), own_(places.ownFolders.folders(), root_),
      trashes_(places.trashes, root_)
{
    trashes_.holdRoot = trashes_.holdRoot || leadsThroughATrash(root_);
    std::string firsts = "0123456789.";
    firsts += lastComponent(trashAtHome).front();
    for (const Seen* seen : {&own_, &trashes_}) {
        for (const std::string& path : seen->relativePaths) {
            firsts += lastComponent(path).front();
        }
    }
    for (const char first : firsts) {
        firstBytes_[static_cast<unsigned char>(first)] = true;
    }
}

bool UnreviewedPaths::isOwn(std::string_view relativePath) const
{
    return own_.contains(relativePath) || isJournal(lastComponent(relativePath));
}

bool UnreviewedPaths::contains(std::string_view relativePath) const
{
    return isOwn(relativePath) || trashes_.contains(relativePath) || isTrashByName(relativePath);
}

bool UnreviewedPaths::isTrashByName(std::string_view relativePath) const
{
    // With the root, in which the name may begin.
    std::string path = root_;
    path.append(root_ == "/" ? "" : "/").append(relativePath);
    return leadsThroughATrash(path);
}

/// Whether the path of the entry is worth a look: asked of every entry, by its name alone.
bool UnreviewedPaths::mayBegin(const SnapshotEntries& entries, Index index) const
{
    const std::string_view name = entries.name(index);
    // A folder without an entry is part of the name of what lies in it.
    if (name.find('/') != std::string_view::npos) {
        return true;
    }
    if (!firstBytes_[static_cast<unsigned char>(name.front())]) {
        return false;
    }
    if (name.front() >= '0' && name.front() <= '9') {
        const Index parent = entries.parent(index);
        if (parent == SnapshotEntries::noIndex || entries.name(parent).ends_with(trashOfAll)) {
            return true;
        }
    }
    return name.starts_with(trashOfAUser) || isJournal(name) || name == lastComponent(trashAtHome)
           || own_.names(name) || trashes_.names(name);
}

std::vector<UnreviewedPaths::Run> UnreviewedPaths::runs(const SnapshotEntries& entries) const
{
    std::vector<Run> runs;
    const auto size = static_cast<Index>(entries.size());
    if (own_.holdRoot || trashes_.holdRoot) {
        runs.push_back({0, size});
        return runs;
    }
    for (Index index = 0; index < size;) {
        if (mayBegin(entries, index) && contains(entries.relativePath(index))) {
            runs.push_back({index, entries.subtreeEnd(index)});
            index = runs.back().end;
        } else {
            ++index;
        }
    }
    return runs;
}

std::vector<SnapshotDelta>
UnreviewedPaths::withoutOwnChanges(std::vector<SnapshotDelta> deltas) const
{
    boost::unordered_flat_map<std::string, Bytes> ownChange;
    for (const SnapshotDelta& delta : deltas) {
        const std::string_view path = delta.relativePath;
        const std::size_t slash = path.rfind('/');
        // What lies in a folder of Gruk's own is counted with the folder.
        if (slash != std::string_view::npos && isOwn(path)
            && !own_.contains(path.substr(0, slash))) {
            forEachFolderAbove(path, [&](std::string_view folder) {
                Bytes& change = ownChange[std::string(folder)];
                change = checkedAdd(change, delta.netBytes());
            });
        }
    }
    std::erase_if(deltas, [&](const SnapshotDelta& delta) {
        const auto above = ownChange.find(delta.relativePath);
        return isOwn(delta.relativePath)
               || (above != ownChange.end() && above->second == delta.netBytes());
    });
    return deltas;
}

}  // namespace gruk
