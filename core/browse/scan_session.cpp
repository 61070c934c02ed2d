#include "core/browse/scan_session.h"

#include <algorithm>
#include <exception>
#include <string_view>
#include <utility>

#include "core/browse/touched_places.h"
#include "platform/foundation/text_order.h"
#include "platform/foundation/text_search.h"

namespace gruk {

namespace {

/// Up to one row in so many is put into its place alone; of more, all are sorted anew.
constexpr std::size_t fewOf = 8;

/// A folder that cannot be listed shows as an empty one.
std::vector<FileEntry> listed(const DirectoryReader& listing, const FileURL& url)
{
    try {
        return listing(url);
    } catch (const std::exception&) {
        return {};
    }
}

bool isSamePlace(const FileURL& a, const FileURL& b)
{
    return a.standardized().path() == b.standardized().path();
}

/// The positions of the names that contain `text`.
std::vector<std::uint32_t> matching(const std::vector<std::string>& searchKeys,
                                    const std::string& text)
{
    std::vector<std::uint32_t> positions;
    const std::string part = searchKey(text);
    for (std::uint32_t i = 0; i < searchKeys.size(); ++i) {
        if (searchKeyContains(searchKeys[i], part)) {
            positions.push_back(i);
        }
    }
    return positions;
}

std::vector<std::uint32_t> nameRanksOf(const ScanSession::Nodes& nodes)
{
    std::vector<std::string_view> names;
    names.reserve(nodes.size());
    for (const auto& node : nodes) {
        names.push_back(node->entry().name());
    }
    return localizedNameRanks(names);
}

std::vector<std::string> searchKeysOf(const ScanSession::Nodes& nodes)
{
    std::vector<std::string> keys;
    keys.reserve(nodes.size());
    for (const auto& node : nodes) {
        keys.push_back(searchKey(node->entry().name()));
    }
    return keys;
}

}  // namespace

ScanSession::ScanSession(std::shared_ptr<ScanEngine> engine, std::shared_ptr<TaskPool> pool,
                         std::shared_ptr<RunLoop> loop, DirectoryReader listing)
    : listing_(std::move(listing)),
      aggregateTasks_(std::move(engine), std::move(pool), std::move(loop))
{
}

void ScanSession::open(const FileURL& url)
{
    // A copy: what is opened may be one of the nodes or visits that go.
    const FileURL destination = url;
    if (directory_ && !isSamePlace(*directory_, destination)) {
        breadcrumbs_.push_back(*directory_);
    }
    goTo(destination);
}

void ScanSession::goBack()
{
    if (breadcrumbs_.empty()) {
        return;
    }
    const FileURL destination = std::move(breadcrumbs_.back());
    breadcrumbs_.pop_back();
    goTo(destination);
}

void ScanSession::goTo(const FileURL& folder)
{
    directory_ = folder;
    ++visit_;
    nodesSubscription_.end();
    aggregateTasks_.cancel();
    if (filteredFolder_ && !isSamePlace(*filteredFolder_, folder)) {
        filteredFolder_.reset();
        filterText_.clear();
    }
    show(std::make_shared<const Listing>(listed(listing_, folder)));
}

void ScanSession::reset()
{
    nodesSubscription_.end();
    aggregateTasks_.cancel();
    nodes_.clear();
    directory_.reset();
    breadcrumbs_.clear();
    nameRanks_.clear();
    searchKeys_.clear();
    ++visit_;
    aggregateTasks_.invalidate();
    change(Change::folder);
}

void ScanSession::renew(const std::vector<FileURL>& touched, Look look)
{
    const bool isLookedAt = directory_
                            && (look == Look::always
                                || TouchedPlaces(touched).reach(directory_->standardized().path()));
    if (!isLookedAt) {
        aggregateTasks_.renew(touched, nullptr, nullptr);
        return;
    }
    aggregateTasks_.renew(
        touched, [listing = listing_, folder = *directory_] { return listed(listing, folder); },
        [this, visit = visit_](const std::shared_ptr<const Listing>& listing) {
            if (visit_ == visit) {
                show(listing, sizesByPath());
            }
        });
}

std::unordered_map<std::string, Bytes> ScanSession::sizesByPath() const
{
    std::unordered_map<std::string, Bytes> sizes;
    for (const auto& node : nodes_) {
        if (node->aggregate() || node->formerSize()) {
            sizes.emplace(node->id().path(), node->displaySize());
        }
    }
    return sizes;
}

void ScanSession::setSortOrder(SortOrder order)
{
    if (order != sortOrder_) {
        sortOrder_ = order;
        change(Change::arrangement);
    }
}

void ScanSession::setFilterText(const std::string& text)
{
    if (text != filterText_) {
        filterText_ = text;
        filteredFolder_ = directory_;
        change(Change::arrangement);
    }
}

const ScanSession::Rows& ScanSession::displayedNodes() const
{
    if (isArranged_ && changedCount_ == 0) {
        return displayed_;
    }
    if (!isArranged_ || changedCount_ > order_.size() / fewOf) {
        arrange();
    } else {
        rearrange(
            order_, hasChanged_, [this](std::uint32_t position) { return keyOf(position); },
            sortOrder_);
    }
    hasChanged_.assign(nodes_.size(), false);
    changedCount_ = 0;
    isArranged_ = true;
    displayed_.resize(order_.size());
    std::transform(order_.begin(), order_.end(), displayed_.begin(),
                   [this](std::uint32_t position) { return nodes_[position].get(); });
    return displayed_;
}

Subscription ScanSession::subscribe(std::function<void(Change)> function)
{
    return observers_.subscribe(std::move(function));
}

void ScanSession::show(const std::shared_ptr<const Listing>& listing,
                       const std::unordered_map<std::string, Bytes>& formerSizes)
{
    nodesSubscription_.end();
    aggregateTasks_.cancelWalks();
    const auto siblings = std::make_shared<ScanNode::Siblings>();
    nodes_.clear();
    nodes_.reserve(listing->size());
    nameRanks_.clear();
    searchKeys_.clear();
    for (const FileEntry& entry : *listing) {
        nodes_.push_back(std::make_shared<ScanNode>(
            std::shared_ptr<const FileEntry>(listing, &entry), siblings));
        if (entry.isDirectory) {
            if (const auto former = formerSizes.find(entry.id.path());
                former != formerSizes.end()) {
                nodes_.back()->recallSize(former->second);
            }
            aggregateTasks_.walk(nodes_.back());
        }
    }
    // A node's place is its entry's in the listing.
    nodesSubscription_ = siblings->subscribe([this, listing](const ScanNode& node) {
        follow(static_cast<std::size_t>(&node.entry() - listing->data()));
    });
    change(Change::folder);
}

void ScanSession::follow(std::size_t position)
{
    if (isArranged_ && !hasChanged_[position]) {
        hasChanged_[position] = true;
        ++changedCount_;
    }
    observers_.tell(Change::node);
}

void ScanSession::change(Change change)
{
    isArranged_ = false;
    observers_.tell(change);
}

void ScanSession::arrange() const
{
    if (sortOrder_ == SortOrder::name && nameRanks_.size() != nodes_.size()) {
        nameRanks_ = nameRanksOf(nodes_);
    }
    if (!filterText_.empty() && searchKeys_.size() != nodes_.size()) {
        searchKeys_ = searchKeysOf(nodes_);
    }
    const bool isFiltered = !filterText_.empty();
    const std::vector<std::uint32_t> matches =
        isFiltered ? matching(searchKeys_, filterText_) : std::vector<std::uint32_t>();
    std::vector<SortKey> rows(isFiltered ? matches.size() : nodes_.size());
    for (std::uint32_t i = 0; i < rows.size(); ++i) {
        rows[i] = keyOf(isFiltered ? matches[i] : i);
    }
    order_ = arranged(rows, sortOrder_);
    if (isFiltered) {
        std::transform(order_.begin(), order_.end(), order_.begin(),
                       [&](std::uint32_t row) { return matches[row]; });
    }
}

SortKey ScanSession::keyOf(std::uint32_t position) const
{
    const ScanNode& node = *nodes_[position];
    return {node.knownSize(), node.entry().dateLastOpened,
            nameRanks_.empty() ? 0 : nameRanks_[position]};
}

}  // namespace gruk
