#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/snapshot_delta.h"
#include "core/patrol/snapshot_entries.h"
#include "platform/files/own_folders.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// What a review does not speak of, wherever in a realm it lies or the realm in it: Gruk's own
/// folders and journals, and every Trash. Their bytes count in all totals.
///
/// A Trash is known by its place or by its name: ".Trash-{number}", ".Trash/{number}" and
/// ".local/share/Trash", of whichever user and volume. A plain value; any thread.
struct UnreviewedPlaces {
    OwnFolders ownFolders;
    /// Trashes that no name tells.
    std::vector<FileURL> trashes;

    friend bool operator==(const UnreviewedPlaces&, const UnreviewedPlaces&) = default;
};

/// These places as the paths of one realm have them. Made once for many questions; any thread.
class UnreviewedPaths {
public:
    using Index = SnapshotEntries::Index;

    /// Entries one after another: a place, and all that is in it.
    struct Run {
        Index begin;
        Index end;
    };

    UnreviewedPaths(const UnreviewedPlaces& places, const FileURL& root);

    /// Whether the relative path is, or lies in, what is Gruk's own.
    [[nodiscard]] bool isOwn(std::string_view relativePath) const;
    /// Whether it is, or lies in, any of the places.
    [[nodiscard]] bool contains(std::string_view relativePath) const;

    /// What of a snapshot is not reviewed, in order. One look at each name.
    [[nodiscard]] std::vector<Run> runs(const SnapshotEntries& entries) const;

    /// The changes without Gruk's own, and without those of folders above in which nothing else
    /// changed.
    [[nodiscard]] std::vector<SnapshotDelta>
    withoutOwnChanges(std::vector<SnapshotDelta> deltas) const;

private:
    /// Places seen from the root.
    struct Seen {
        Seen(const std::vector<FileURL>& places, std::string_view root);
        [[nodiscard]] bool contains(std::string_view relativePath) const;
        [[nodiscard]] bool names(std::string_view name) const;

        /// The root is one of them, or lies in one.
        bool holdRoot = false;
        std::vector<std::string> relativePaths;
    };

    [[nodiscard]] bool mayBegin(const SnapshotEntries& entries, Index index) const;
    [[nodiscard]] bool isTrashByName(std::string_view relativePath) const;

    std::string root_;
    Seen own_;
    Seen trashes_;
    /// By its first byte, whether the name of any place begins so.
    std::array<bool, 256> firstBytes_{};
};

}  // namespace gruk
