#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/files/own_folders.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// What no service may move: the program's own folders, what is in them, and what would take them
/// along. A program that moved its memory away would have none. For one operation, on one thread.
class OwnItems {
public:
    /// Nothing is the program's own.
    OwnItems() = default;
    /// Compares paths alone.
    explicit OwnItems(OwnFolders folders);
    /// Looks at the disk, too, so that the folders are known by whatever path they are reached.
    /// What cannot be told there counts as the program's own, unless it is closed to the user: then
    /// it cannot be moved either.
    OwnItems(OwnFolders folders, const MoveCalls& calls);

    /// Whether `place` is one of the folders or lies below one.
    [[nodiscard]] bool contain(const FileURL& place) const;
    /// Whether moving the item at `item` would take something of them from its place: it is one of
    /// them, lies below one, or holds one; or it is a link on the way to one.
    [[nodiscard]] bool moveWith(const FileURL& item) const;

private:
    /// What stands at a place; none where nothing does or it is closed to the user. Throws.
    using Look = std::function<std::optional<ItemIdentity>(const FileURL&)>;

    void learn() const;
    /// Whether the directory at that path is one of the folders, or any of those above it is.
    [[nodiscard]] bool isInside(const FileURL& directory) const;

    OwnFolders folders_;
    /// Empty where the disk is not looked at.
    Look look_;
    // What was learned of the disk, at the first question.
    mutable bool isLearned_ = false;
    mutable std::vector<ItemIdentity> owned_;
    /// The folders themselves and all that are above them.
    mutable std::vector<ItemIdentity> holders_;
    /// Directories that were asked about.
    mutable std::map<std::string, bool> inside_;
};

}  // namespace gruk
