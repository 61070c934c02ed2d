#include "core/patrol/snapshot_entries_builder.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/patrol/path_sequence.h"
#include "core/patrol/snapshot_table.h"
#include "platform/foundation/text_order.h"

namespace gruk {

namespace {

using Index = SnapshotEntries::Index;

/// A column in another order.
template <typename T>
Column<T> reordered(Column<T> column, const std::vector<Index>& order)
{
    Column<T> result;
    for (const Index index : order) {
        result.push(column[index]);
    }
    return result;
}

/// Puts a walk in order: the children of each folder sorted among themselves, then every folder
/// followed by what is in it. Sorting whole paths would compare the same folders again and again.
class WalkOrder {
public:
    explicit WalkOrder(const SnapshotTable& table) : table_(table)
    {
        order_.reserve(table.size());
        parents_ = Column<Index>();
        findFirstChildren();
    }

    void run()
    {
        emitChildren(Index{0}, SnapshotTable::noIndex);
        while (!open_.empty()) {
            Level& level = open_.back();
            if (level.next == level.children.size()) {
                spare_.push_back(std::move(level.children));
                open_.pop_back();
                continue;
            }
            const Index index = level.children[level.next++];
            const auto place = static_cast<Index>(order_.size());
            order_.push_back(index);
            parents_.push(level.newParent);
            const Index first = firstChild_[index];
            if (first != SnapshotTable::noIndex) {
                emitChildren(first, place);
            }
        }
    }

    /// Former positions in the new order.
    std::vector<Index> order_;
    /// New positions of the parents, in the new order.
    Column<Index> parents_;

private:
    /// A folder whose children are being written out.
    struct Level {
        std::vector<Index> children;
        std::size_t next;
        Index newParent;
    };

    void findFirstChildren()
    {
        firstChild_.assign(table_.size(), SnapshotTable::noIndex);
        Index former = SnapshotTable::noIndex;
        for (Index index = 0; index < table_.size(); ++index) {
            const Index parent = table_.parents[index];
            if (parent != former && parent != SnapshotTable::noIndex) {
                GRUK_REQUIRE(firstChild_[parent] == SnapshotTable::noIndex,
                             "the children of a folder were not added in one run");
                firstChild_[parent] = index;
            }
            former = parent;
        }
    }

    void emitChildren(Index first, Index newParent)
    {
        if (first >= table_.size()) {
            return;
        }
        std::vector<Index> children;
        if (!spare_.empty()) {
            children = std::move(spare_.back());
            spare_.pop_back();
            children.clear();
        }
        const Index parent = table_.parents[first];
        for (Index at = first; at < table_.size() && table_.parents[at] == parent; ++at) {
            children.push_back(at);
        }
        std::sort(children.begin(), children.end(), [this](Index a, Index b) {
            const auto order = localizedStandardCompareNames(table_.name(a), table_.name(b));
            return order != 0 ? order < 0 : a < b;
        });
        const auto twice = std::unique(children.begin(), children.end(), [this](Index a, Index b) {
            return table_.name(a) == table_.name(b);
        });
        children.erase(twice, children.end());
        open_.push_back({std::move(children), 0, newParent});
    }

    const SnapshotTable& table_;
    std::vector<Index> firstChild_;
    std::vector<Level> open_;
    std::vector<std::vector<Index>> spare_;
};

/// Gives every directory the sum of what is below it. Folders stand before their content, so that
/// from the end on each total is whole before it is added to the one above.
void sumIntoDirectories(SnapshotTable& table)
{
    for (auto index = static_cast<Index>(table.size()); index-- > 0;) {
        const Index parent = table.parents[index];
        if (parent != SnapshotTable::noIndex) {
            Bytes& total = table.sizes.at(parent);
            total = checkedAdd(total, table.sizes[index]);
        }
    }
}

}  // namespace

bool isWellFormedEntryPath(std::string_view path, std::size_t start)
{
    // By hand: what is looked at is mostly one short name, a million times.
    for (std::size_t nameStart = start, at = start;; ++at) {
        if (at < path.size() && path[at] != '/') {
            if (path[at] == '\0') {
                return false;
            }
            continue;
        }
        const std::size_t length = at - nameStart;
        const bool isDots = length <= 2 && path.substr(nameStart, length) == "..";
        const bool isDot = length == 1 && path[nameStart] == '.';
        if (length == 0 || isDot || isDots || length > NameArena::longestName) {
            return false;
        }
        if (at >= path.size()) {
            return true;
        }
        nameStart = at + 1;
    }
}

/// Where the list of paths stands: the path before, and its ancestors that have entries.
struct SnapshotEntriesBuilder::PathState {
    struct Ancestor {
        Index index;
        std::size_t pathLength;
    };
    PathSequence sequence;
    std::vector<Ancestor> ancestors;
    bool isOrdered = true;

    /// Makes `ancestors` those of `path`, the former path and its ancestors being the candidates;
    /// returns where the rest of the path begins. `size` is how many entries there are.
    std::size_t enter(std::string_view path, std::size_t shared, std::size_t size)
    {
        if (size > 0) {
            ancestors.push_back({static_cast<Index>(size - 1), sequence.former().size()});
        }
        while (!ancestors.empty()) {
            const std::size_t length = ancestors.back().pathLength;
            if (length <= shared && length < path.size() && path[length] == '/') {
                return length + 1;
            }
            ancestors.pop_back();
        }
        return 0;
    }
};

SnapshotEntriesBuilder::SnapshotEntriesBuilder() : table_(std::make_unique<SnapshotTable>()) {}

SnapshotEntriesBuilder::~SnapshotEntriesBuilder() = default;

SnapshotEntriesBuilder::Index SnapshotEntriesBuilder::add(Index parent, std::string_view name,
                                                          Bytes allocatedSize,
                                                          std::optional<Date> modifiedAt,
                                                          FileKind kind, bool isDirectory)
{
    return table_->push(parent, table_->names.add(name), allocatedSize, modifiedAt, kind,
                        isDirectory);
}

void SnapshotEntriesBuilder::addPath(std::string_view relativePath, Bytes allocatedSize,
                                     std::optional<Date> modifiedAt, FileKind kind,
                                     bool isDirectory)
{
    if (!paths_) {
        paths_ = std::make_unique<PathState>();
    }
    PathState& state = *paths_;
    // What this path has in common with the former one was looked at then.
    const PathSequence::Difference at = state.sequence.difference(relativePath);
    if (!isWellFormedEntryPath(relativePath, at.start)) {
        throw InvalidEntryPath();
    }
    state.isOrdered = state.isOrdered && state.sequence.precedes(relativePath, at);
    const std::size_t nameStart = state.enter(relativePath, at.shared, table_->size());
    const std::string_view name = relativePath.substr(nameStart);
    if (name.size() > NameArena::longestName) {
        throw InvalidEntryPath();
    }
    const Index parent =
        state.ancestors.empty() ? SnapshotTable::noIndex : state.ancestors.back().index;
    table_->push(parent, table_->names.add(name), allocatedSize, modifiedAt, kind, isDirectory);
    state.sequence.take(relativePath, at);
}

std::size_t SnapshotEntriesBuilder::size() const noexcept
{
    return table_->size();
}

std::string SnapshotEntriesBuilder::relativePath(Index index) const
{
    std::vector<std::string_view> names;
    for (Index at = index; at != SnapshotTable::noIndex; at = table_->parents[at]) {
        names.push_back(table_->name(at));
    }
    std::string path;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        path.append(path.empty() ? "" : "/").append(*name);
    }
    return path;
}

std::string_view SnapshotEntriesBuilder::name(Index index) const
{
    return table_->name(index);
}

SnapshotEntries SnapshotEntriesBuilder::finish()
{
    SnapshotEntries entries = paths_ ? finishPaths() : finishWalk();
    table_ = std::make_unique<SnapshotTable>();
    paths_.reset();
    return entries;
}

SnapshotEntries SnapshotEntriesBuilder::finishWalk()
{
    Column<Index> parents;
    std::vector<Index> order;
    {
        WalkOrder walk(*table_);
        walk.run();
        order = std::move(walk.order_);
        parents = std::move(walk.parents_);
    }
    // One column at a time, so that only one stands twice in memory.
    SnapshotTable& table = *table_;
    table.parents = std::move(parents);
    table.sizes = reordered(std::move(table.sizes), order);
    table.dates = reordered(std::move(table.dates), order);
    table.nameOffsets = reordered(std::move(table.nameOffsets), order);
    table.marks = reordered(std::move(table.marks), order);
    sumIntoDirectories(table);
    return SnapshotEntries(std::shared_ptr<const SnapshotTable>(std::move(table_)));
}

SnapshotEntries SnapshotEntriesBuilder::finishPaths()
{
    SnapshotEntries asGiven(std::shared_ptr<const SnapshotTable>(std::move(table_)));
    if (paths_->isOrdered) {
        return asGiven;
    }
    // Another program's file, or a list made by hand: rare and small enough to be done simply.
    std::vector<SnapshotEntry> list(asGiven.begin(), asGiven.end());
    asGiven = SnapshotEntries();
    std::sort(list.begin(), list.end(), [](const SnapshotEntry& a, const SnapshotEntry& b) {
        return localizedStandardCompare(a.relativePath, b.relativePath) < 0;
    });
    SnapshotEntriesBuilder ordered;
    for (const SnapshotEntry& entry : list) {
        ordered.addPath(entry.relativePath, entry.allocatedSize, entry.modifiedAt, entry.kind,
                        entry.isDirectory);
    }
    if (ordered.paths_ && !ordered.paths_->isOrdered) {
        throw InvalidEntryPath();
    }
    return ordered.finish();
}

}  // namespace gruk
