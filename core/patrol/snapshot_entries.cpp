#include "core/patrol/snapshot_entries.h"

#include <algorithm>

#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/snapshot_table.h"
#include "platform/foundation/text_order.h"

namespace gruk {

namespace {

/// What the path of `index` is made of, written from the end of `path` forward.
void appendPath(const SnapshotTable& table, SnapshotTable::Index index, std::string& path)
{
    std::size_t length = 0;
    for (auto at = index; at != SnapshotTable::noIndex; at = table.parents[at]) {
        length += table.name(at).size() + 1;
    }
    const std::size_t start = path.size();
    path.resize(start + length - 1);
    std::size_t end = path.size();
    for (auto at = index; at != SnapshotTable::noIndex; at = table.parents[at]) {
        const std::string_view name = table.name(at);
        end -= name.size();
        std::copy(name.begin(), name.end(), path.begin() + static_cast<std::ptrdiff_t>(end));
        if (end > start) {
            --end;
            path[end] = '/';
        }
    }
}

std::shared_ptr<const SnapshotTable> emptyTable()
{
    static const auto table = std::make_shared<const SnapshotTable>();
    return table;
}

}  // namespace

SnapshotEntries::SnapshotEntries() : table_(emptyTable()) {}

SnapshotEntries::SnapshotEntries(std::shared_ptr<const SnapshotTable> table)
    : table_(std::move(table))
{
}

SnapshotEntries::SnapshotEntries(const std::vector<SnapshotEntry>& entries)
{
    try {
        SnapshotEntriesBuilder builder;
        for (const SnapshotEntry& entry : entries) {
            builder.addPath(entry.relativePath, entry.allocatedSize, entry.modifiedAt, entry.kind,
                            entry.isDirectory);
        }
        *this = builder.finish();
    } catch (const InvalidEntryPath& error) {
        GRUK_REQUIRE(false, error.what());
    }
}

SnapshotEntries::SnapshotEntries(std::initializer_list<SnapshotEntry> entries)
    : SnapshotEntries(std::vector<SnapshotEntry>(entries))
{
}

std::size_t SnapshotEntries::size() const noexcept
{
    return table_->size();
}

SnapshotEntry SnapshotEntries::operator[](std::size_t position) const
{
    GRUK_REQUIRE(position < size(), "a position past the end of a snapshot");
    const auto index = static_cast<Index>(position);
    return {relativePath(index), allocatedSize(index), modifiedAt(index), kind(index),
            isDirectory(index)};
}

SnapshotEntries::Index SnapshotEntries::parent(Index index) const
{
    return table_->parents[index];
}

std::string_view SnapshotEntries::name(Index index) const
{
    return table_->name(index);
}

Bytes SnapshotEntries::allocatedSize(Index index) const
{
    return table_->sizes[index];
}

std::optional<Date> SnapshotEntries::modifiedAt(Index index) const
{
    return table_->modified(index);
}

FileKind SnapshotEntries::kind(Index index) const
{
    return table_->kind(index);
}

bool SnapshotEntries::isDirectory(Index index) const
{
    return table_->isDirectory(index);
}

std::string SnapshotEntries::relativePath(Index index) const
{
    std::string path;
    appendPath(*table_, index, path);
    return path;
}

bool SnapshotEntries::isTopLevel(Index index) const
{
    return parent(index) == noIndex && name(index).find('/') == std::string_view::npos;
}

SnapshotEntries::Index SnapshotEntries::subtreeEnd(Index index) const
{
    const SnapshotTable& table = *table_;
    const auto liesBelow = [&](Index at) {
        while (at != noIndex && at > index) {
            at = table.parents[at];
        }
        return at == index;
    };
    // What lies below stands in one run: its end is sought in growing steps, then between two.
    Index inside = index;
    auto outside = static_cast<Index>(size());
    for (std::size_t step = 1; step < outside - inside; step *= 2) {
        const Index at = inside + static_cast<Index>(step);
        (liesBelow(at) ? inside : outside) = at;
    }
    while (outside - inside > 1) {
        const Index middle = inside + (outside - inside) / 2;
        (liesBelow(middle) ? inside : outside) = middle;
    }
    return outside;
}

std::optional<SnapshotEntries::Index> SnapshotEntries::findChild(Index parent,
                                                                 std::string_view name) const
{
    const SnapshotTable& table = *table_;
    Index low = parent == noIndex ? 0 : parent + 1;
    auto high = static_cast<Index>(size());
    while (low < high) {
        const Index middle = low + (high - low) / 2;
        // The child of `parent` that holds the one in the middle, if one does: parents stand
        // before what is in them.
        Index child = middle;
        Index above = table.parents[child];
        while (above != parent && above != noIndex && (parent == noIndex || above > parent)) {
            child = above;
            above = table.parents[child];
        }
        const auto order = above == parent ? localizedStandardCompare(table.name(child), name)
                                           : std::strong_ordering::greater;
        if (order == 0) {
            return child;
        }
        if (order < 0) {
            low = middle + 1;
        } else {
            high = child;
        }
    }
    return std::nullopt;
}

std::optional<SnapshotEntries::Index> SnapshotEntries::find(std::string_view relativePath) const
{
    Index parent = noIndex;
    std::size_t start = 0;
    for (std::size_t end = 0; end < relativePath.size();) {
        // A folder without an entry is part of the name of what lies in it.
        end = std::min(relativePath.find('/', end + 1), relativePath.size());
        const auto found = findChild(parent, relativePath.substr(start, end - start));
        if (found) {
            if (end == relativePath.size()) {
                return found;
            }
            parent = *found;
            start = end + 1;
        }
    }
    return std::nullopt;
}

Bytes SnapshotEntries::totalBytes() const
{
    Bytes total = 0;
    for (Index index = 0; index < size(); index = subtreeEnd(index)) {
        if (isTopLevel(index)) {
            total = checkedAdd(total, allocatedSize(index));
        }
    }
    return total;
}

bool operator==(const SnapshotEntries& a, const SnapshotEntries& b)
{
    if (a.table_ == b.table_) {
        return true;
    }
    if (a.size() != b.size()) {
        return false;
    }
    // Both are in order and each parent is the nearest ancestor, so equal paths have equal
    // parents and names.
    for (SnapshotEntries::Index i = 0; i < a.size(); ++i) {
        if (a.parent(i) != b.parent(i) || a.name(i) != b.name(i)
            || a.allocatedSize(i) != b.allocatedSize(i) || a.modifiedAt(i) != b.modifiedAt(i)
            || a.kind(i) != b.kind(i) || a.isDirectory(i) != b.isDirectory(i)) {
            return false;
        }
    }
    return true;
}

PathCursor::PathCursor(const SnapshotEntries& entries)
    : table_(entries.table_), end_(static_cast<SnapshotEntries::Index>(entries.size()))
{
    if (!isAtEnd()) {
        makePath();
    }
}

void PathCursor::advance()
{
    const auto former = index_;
    ++index_;
    if (isAtEnd()) {
        return;
    }
    const auto parent = table_->parents[index_];
    if (parent == former) {
        ancestors_.push_back({former, path_.size()});
    } else {
        while (!ancestors_.empty() && ancestors_.back().index != parent) {
            ancestors_.pop_back();
        }
    }
    makePath();
}

void PathCursor::makePath()
{
    if (ancestors_.empty()) {
        path_.clear();
    } else {
        path_.resize(ancestors_.back().pathLength);
        path_ += '/';
    }
    nameStart_ = path_.size();
    path_ += table_->name(index_);
}

}  // namespace gruk
