#include "core/actions/own_items.h"

#include <algorithm>
#include <utility>

#include "platform/files/moves.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

std::optional<ItemIdentity> identityUnlessClosed(const FileURL& url, const MoveCalls& calls)
{
    try {
        return requiredIdentity(url, calls);
    } catch (const FileError& error) {
        const bool isMissing =
            meaning(error) != ErrorMeaning::other || error.code() == std::errc::not_a_directory;
        if (!isMissing) {
            throw;
        }
        return std::nullopt;
    }
}

/// The directory that `path` leads to, also where it ends in a link.
FileURL behind(const FileURL& path)
{
    return FileURL(path.path() + "/.");
}

bool isAmong(const std::vector<ItemIdentity>& known, const std::optional<ItemIdentity>& item)
{
    return item && std::ranges::find(known, *item) != known.end();
}

}  // namespace

OwnItems::OwnItems(OwnFolders folders) : folders_(std::move(folders)) {}

OwnItems::OwnItems(OwnFolders folders, const MoveCalls& calls)
    : folders_(std::move(folders)),
      look_([calls](const FileURL& url) { return identityUnlessClosed(url, calls); })
{
}

bool OwnItems::contain(const FileURL& place) const
{
    const FileURL standard = place.standardized();
    if (folders_.contains(standard)) {
        return true;
    }
    if (!look_ || folders_.folders().empty()) {
        return false;
    }
    try {
        learn();
        return isInside(standard);
    } catch (const FileError&) {
        return true;
    }
}

bool OwnItems::moveWith(const FileURL& item) const
{
    const FileURL standard = item.standardized();
    const bool holdsOne = std::ranges::any_of(folders_.folders(), [&](const FileURL& folder) {
        return pathIsAtOrBelow(folder.path(), standard.path());
    });
    if (holdsOne || folders_.contains(standard)) {
        return true;
    }
    if (!look_ || folders_.folders().empty()) {
        return false;
    }
    try {
        learn();
        return isAmong(holders_, look_(standard)) || isInside(standard.deletingLastPathComponent());
    } catch (const FileError&) {
        return true;
    }
}

void OwnItems::learn() const
{
    if (isLearned_) {
        return;
    }
    for (const FileURL& folder : folders_.folders()) {
        if (const auto identity = look_(behind(folder))) {
            owned_.push_back(*identity);
        }
        for (FileURL above = folder; above != FileURL();
             above = above.deletingLastPathComponent()) {
            if (const auto identity = look_(above)) {
                holders_.push_back(*identity);
            }
        }
    }
    isLearned_ = true;
}

bool OwnItems::isInside(const FileURL& directory) const
{
    if (const auto known = inside_.find(directory.path()); known != inside_.end()) {
        return known->second;
    }
    const bool isTop = directory.path() == "/";
    const bool result = !isTop
                        && (isAmong(owned_, look_(behind(directory)))
                            || isInside(directory.deletingLastPathComponent()));
    return inside_[directory.path()] = result;
}

}  // namespace gruk
