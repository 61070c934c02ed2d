#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/snapshot_entry.h"

namespace gruk {

class SnapshotTable;

/// The entries of one snapshot: a list of `SnapshotEntry` values, always in the text order of
/// their paths and without a duplicate, so that every folder stands right before its subtree.
///
/// A million entries are held in about 45 bytes each: every name once, the parent by its position,
/// the whole path made when asked for. Immutable and shared: a copy costs nothing, and any thread
/// may read.
class SnapshotEntries {
public:
    /// The position of an entry.
    using Index = std::uint32_t;
    /// No entry: the parent of what lies at the top level.
    static constexpr Index noIndex = 0xffff'ffff;

    SnapshotEntries();

    /// `entries` in any order. Each path must be well formed and stand once; anything else is a
    /// programming error and stops the program. (The builder reports it instead.)
    explicit SnapshotEntries(const std::vector<SnapshotEntry>& entries);
    SnapshotEntries(std::initializer_list<SnapshotEntry> entries);

    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool empty() const noexcept { return size() == 0; }

    /// The entry at a position, its path made anew: for the few, not for a loop over all.
    [[nodiscard]] SnapshotEntry operator[](std::size_t position) const;

    /// The entry that holds this one: the nearest ancestor that has an entry.
    [[nodiscard]] Index parent(Index index) const;
    /// The path from the parent on; one component wherever the parent folder has an entry.
    [[nodiscard]] std::string_view name(Index index) const;
    [[nodiscard]] Bytes allocatedSize(Index index) const;
    [[nodiscard]] std::optional<Date> modifiedAt(Index index) const;
    [[nodiscard]] FileKind kind(Index index) const;
    [[nodiscard]] bool isDirectory(Index index) const;
    [[nodiscard]] std::string relativePath(Index index) const;

    /// Whether the path has no "/": the realm's top level.
    [[nodiscard]] bool isTopLevel(Index index) const;
    /// One past the last entry whose path lies below this one. Logarithmic.
    [[nodiscard]] Index subtreeEnd(Index index) const;
    /// The entry whose parent is `parent` (`noIndex` for the top level) and whose name is exactly
    /// that. Logarithmic.
    [[nodiscard]] std::optional<Index> findChild(Index parent, std::string_view name) const;
    /// The entry of exactly that path. Logarithmic for each component.
    [[nodiscard]] std::optional<Index> find(std::string_view relativePath) const;

    /// The columns behind the list, for the loops over all of it that must be quick.
    [[nodiscard]] const SnapshotTable& table() const noexcept { return *table_; }

    /// Sum of the top level, which is the size of the realm. Skips what lies below it.
    [[nodiscard]] Bytes totalBytes() const;

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = SnapshotEntry;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = SnapshotEntry;

        Iterator(const SnapshotEntries* entries, std::size_t position)
            : entries_(entries), position_(position)
        {
        }
        SnapshotEntry operator*() const { return (*entries_)[position_]; }
        Iterator& operator++()
        {
            ++position_;
            return *this;
        }
        friend bool operator==(const Iterator&, const Iterator&) = default;

    private:
        const SnapshotEntries* entries_;
        std::size_t position_;
    };

    [[nodiscard]] Iterator begin() const { return {this, 0}; }
    [[nodiscard]] Iterator end() const { return {this, size()}; }

    /// Equal when every entry is, in the same order.
    friend bool operator==(const SnapshotEntries& a, const SnapshotEntries& b);

private:
    friend class SnapshotEntriesBuilder;
    friend class PathCursor;
    explicit SnapshotEntries(std::shared_ptr<const SnapshotTable> table);

    std::shared_ptr<const SnapshotTable> table_;
};

/// Walks all entries in order with their paths, at the cost of appending one name a step.
///
///     for (PathCursor at(entries); !at.isAtEnd(); at.advance()) { use(at.index(), at.path()); }
class PathCursor {
public:
    explicit PathCursor(const SnapshotEntries& entries);

    [[nodiscard]] bool isAtEnd() const { return index_ >= end_; }
    void advance();
    [[nodiscard]] SnapshotEntries::Index index() const { return index_; }
    /// The relative path; valid until the next step.
    [[nodiscard]] std::string_view path() const { return path_; }
    /// The last part of the path, as `SnapshotEntries::name`.
    [[nodiscard]] std::string_view name() const
    {
        return std::string_view(path_).substr(nameStart_);
    }

private:
    void makePath();

    struct Ancestor {
        SnapshotEntries::Index index;
        std::size_t pathLength;
    };

    std::shared_ptr<const SnapshotTable> table_;
    SnapshotEntries::Index index_ = 0;
    SnapshotEntries::Index end_ = 0;
    std::string path_;
    std::size_t nameStart_ = 0;
    std::vector<Ancestor> ancestors_;
};

}  // namespace gruk
