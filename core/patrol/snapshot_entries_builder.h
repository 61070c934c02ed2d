#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string_view>

#include "core/patrol/snapshot_entries.h"

namespace gruk {

/// A path that no snapshot can hold, or one that stands twice.
class InvalidEntryPath : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override
    {
        return "A snapshot holds a path that is malformed or stands twice.";
    }
};

/// Whether a snapshot can hold that path: one or more components joined by "/", none of them
/// empty, "." or "..", without NUL, none longer than 65,535 bytes. Looks at the components that
/// begin at `start` only.
[[nodiscard]] bool isWellFormedEntryPath(std::string_view path, std::size_t start = 0);

/// Builds `SnapshotEntries`, either from a walk (`add`, children of one folder in one run) or from
/// a list of paths (`addPath`). Use one of the two. One thread.
class SnapshotEntriesBuilder {
public:
    using Index = SnapshotEntries::Index;

    SnapshotEntriesBuilder();
    ~SnapshotEntriesBuilder();
    SnapshotEntriesBuilder(const SnapshotEntriesBuilder&) = delete;
    SnapshotEntriesBuilder& operator=(const SnapshotEntriesBuilder&) = delete;

    /// Adds a child `name` of the entry `parent` (`noIndex` for the top level) and returns its
    /// position for now. All children of one parent must be added one after another.
    Index add(Index parent, std::string_view name, Bytes allocatedSize,
              std::optional<Date> modifiedAt, FileKind kind, bool isDirectory);

    /// Adds an entry by its whole path. Cheapest when paths come in the text order. Throws
    /// `InvalidEntryPath` unless the path is well formed.
    void addPath(std::string_view relativePath, Bytes allocatedSize, std::optional<Date> modifiedAt,
                 FileKind kind, bool isDirectory);

    [[nodiscard]] std::size_t size() const noexcept;

    /// The relative path of an entry added by `add`, by its position for now.
    [[nodiscard]] std::string relativePath(Index index) const;
    /// The name of an entry added by `add`.
    [[nodiscard]] std::string_view name(Index index) const;

    /// Puts the entries in order. The builder is empty afterwards.
    ///
    /// Of a walk every directory gets the sum of the files below it, and a name that a folder
    /// listed twice (as a system may while the folder changes) is kept once, as it came first. Of
    /// a list of paths the sizes stay as they are, and `InvalidEntryPath` is thrown when a path
    /// stands twice.
    [[nodiscard]] SnapshotEntries finish();

private:
    SnapshotEntries finishWalk();
    SnapshotEntries finishPaths();

    struct PathState;
    std::unique_ptr<SnapshotTable> table_;
    std::unique_ptr<PathState> paths_;
};

}  // namespace gruk
