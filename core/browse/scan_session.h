#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/browse/aggregate_tasks.h"
#include "core/browse/observer_list.h"
#include "core/browse/scan_engine.h"
#include "core/browse/scan_node.h"
#include "core/browse/sort_order.h"
#include "core/patrol/metadata_reader.h"

namespace gruk {

/// The folder that is being browsed: its children, whose sizes arrive while it is looked at, the
/// folders visited before it, and how it is arranged. Failures are not reported: a folder that
/// cannot be listed is empty, a child that cannot be walked keeps an unknown size.
///
/// The main thread only. Walks run on the pool, one at a time (`AggregateTasks`).
class ScanSession {
public:
    using Nodes = std::vector<std::shared_ptr<ScanNode>>;
    /// Some of them, borrowed, in another order.
    using Rows = std::vector<ScanNode*>;

    enum class Change {
        /// Another folder, or the same listed afresh: `currentDirectory`, `nodes`, `breadcrumbs`.
        folder,
        /// `sortOrder` or `filterText`.
        arrangement,
        /// Something about one of `nodes`.
        node
    };

    /// `listing` lists the folder that is opened; it is called on the main thread, since a folder
    /// shows at once.
    ScanSession(std::shared_ptr<ScanEngine> engine, std::shared_ptr<TaskPool> pool,
                std::shared_ptr<RunLoop> loop, DirectoryReader listing = MetadataReader::entries);

    /// Goes to a folder: one directory read here, then a walk for each child that is a directory.
    /// The folder left goes on the stack of visits. Opening the current one again lists it afresh.
    /// A filter stays with the folder that it was typed in.
    void open(const FileURL& url);
    /// Goes to the folder that was left last; does nothing when there is none.
    void goBack();
    /// No folder, no visits, no walks, and an engine that has forgotten. The arrangement stays.
    void reset();

    /// Which folder is listed anew: one that what was touched reaches, or whichever is shown.
    enum class Look { ifReached, always };

    /// To be told of what came, went or changed on the disk: its sizes and those around it are
    /// forgotten and, when it reaches the folder that is shown, that is listed anew on the pool and
    /// what was forgotten is measured. Rows show what they came to before until then.
    void renew(const std::vector<FileURL>& touched, Look look = Look::ifReached);

    [[nodiscard]] const std::optional<FileURL>& currentDirectory() const { return directory_; }
    /// In the order of the listing.
    [[nodiscard]] const Nodes& nodes() const { return nodes_; }
    /// The visits that `goBack` goes through, the latest last. No path; for that there is
    /// `BreadcrumbTrail`.
    [[nodiscard]] const std::vector<FileURL>& breadcrumbs() const { return breadcrumbs_; }

    [[nodiscard]] SortOrder sortOrder() const { return sortOrder_; }
    void setSortOrder(SortOrder order);
    /// Taken as typed, blanks and all. Empty: no filter.
    [[nodiscard]] const std::string& filterText() const { return filterText_; }
    void setFilterText(const std::string& text);

    /// The nodes whose name contains `filterText`, in the current order. What is returned is true
    /// now, and stands until the next call after a change. Costs a sort of numbers when another
    /// folder or arrangement was chosen since the last call, little more than a copy of the list
    /// when a few sizes came, else nothing.
    [[nodiscard]] const Rows& displayedNodes() const;

    /// Calls `function` after every change until the subscription ends.
    [[nodiscard]] Subscription subscribe(std::function<void(Change)> function);

private:
    using Listing = AggregateTasks::Listing;

    void goTo(const FileURL& folder);
    /// Shows what is in the folder; `formerSizes` by path.
    void show(const std::shared_ptr<const Listing>& listing,
              const std::unordered_map<std::string, Bytes>& formerSizes = {});
    [[nodiscard]] std::unordered_map<std::string, Bytes> sizesByPath() const;
    void change(Change change);
    void follow(std::size_t position);
    void arrange() const;
    [[nodiscard]] SortKey keyOf(std::uint32_t position) const;

    DirectoryReader listing_;
    /// Tells one visit to a folder from the others, so that a late look reaches no other.
    std::uint64_t visit_ = 0;
    AggregateTasks aggregateTasks_;
    std::optional<FileURL> directory_;
    Nodes nodes_;
    std::vector<FileURL> breadcrumbs_;
    SortOrder sortOrder_ = SortOrder::sizeDescending;
    std::string filterText_;
    /// Where it was typed.
    std::optional<FileURL> filteredFolder_;

    /// Made when first needed, once a listing: the places of the names in the text order, and the
    /// names as they are searched.
    mutable std::vector<std::uint32_t> nameRanks_;
    mutable std::vector<std::string> searchKeys_;
    /// `displayed_` as places in `nodes_`.
    mutable std::vector<std::uint32_t> order_;
    mutable Rows displayed_;
    mutable bool isArranged_ = true;
    /// The nodes that changed since then, by their places, and how many they are.
    mutable std::vector<bool> hasChanged_;
    mutable std::size_t changedCount_ = 0;

    ObserverList<Change> observers_;
    /// To the nodes of the current listing.
    Subscription nodesSubscription_;
};

}  // namespace gruk
