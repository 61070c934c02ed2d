#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "core/browse/directory_stats.h"
#include "core/browse/observer_list.h"
#include "core/patrol/file_entry.h"

namespace gruk {

/// One row of the browsed folder: an item that stays what it was when the folder was listed, and
/// what the walk below it has found so far. Held by `shared_ptr`; the main thread only.
class ScanNode {
public:
    /// Told of every change of any of the nodes of one listing.
    using Siblings = ObserverList<const ScanNode&>;

    /// `entry` may be part of a listing that it keeps alive; `siblings` may be none.
    explicit ScanNode(std::shared_ptr<const FileEntry> entry,
                      std::shared_ptr<const Siblings> siblings = nullptr)
        : entry_(std::move(entry)), siblings_(std::move(siblings))
    {
    }

    [[nodiscard]] const FileEntry& entry() const { return *entry_; }
    [[nodiscard]] const FileURL& id() const { return entry_->id; }

    /// What lies under a directory; none until its walk has ended well.
    [[nodiscard]] const std::optional<DirectoryStats>& aggregate() const { return aggregate_; }
    /// Whether a walk for this node runs or waits for its turn.
    [[nodiscard]] bool isComputing() const { return isComputing_; }
    /// The latest word of the walk; stays when it has ended.
    [[nodiscard]] const std::optional<ScanProgress>& progress() const { return progress_; }

    /// What it came to when the folder was listed before; only while it is measured anew.
    [[nodiscard]] std::optional<Bytes> formerSize() const
    {
        return isComputing_ ? formerSize_ : std::nullopt;
    }
    /// Whether its walk failed: what is known of its size, if anything, is not all.
    [[nodiscard]] bool hasFailed() const
    {
        return entry_->isDirectory && !aggregate_ && !isComputing_;
    }

    /// Bytes on disk: a file's own, a directory's as far as its walk has come; of one that is
    /// measured anew, what it came to before. None: unknown yet.
    [[nodiscard]] std::optional<Bytes> knownSize() const
    {
        if (!entry_->isDirectory) {
            return entry_->allocatedSize;
        }
        if (aggregate_) {
            return aggregate_->allocated;
        }
        if (const auto former = formerSize()) {
            return former;
        }
        return progress_ ? std::optional(progress_->bytesSeen) : std::nullopt;
    }
    /// The same, with 0 for unknown.
    [[nodiscard]] Bytes displaySize() const { return knownSize().value_or(0); }

    /// Calls `function` after every change of this node, until the subscription ends.
    [[nodiscard]] Subscription subscribe(std::function<void()> function)
    {
        return observers_.subscribe(std::move(function));
    }

    /// Before its walk, for a row that stands in the place of one that was measured.
    void recallSize(std::optional<Bytes> formerSize) { formerSize_ = formerSize; }

    /// The steps of a walk, taken by whoever runs it.
    void beginComputing()
    {
        isComputing_ = true;
        tell();
    }
    void report(const ScanProgress& progress)
    {
        progress_ = progress;
        tell();
    }
    /// The walk ended: with its result, or with none when it failed or was cancelled.
    void endComputing(const std::optional<DirectoryStats>& result)
    {
        if (result) {
            aggregate_ = result;
        }
        isComputing_ = false;
        tell();
    }

private:
    void tell() const
    {
        observers_.tell();
        if (siblings_) {
            siblings_->tell(*this);
        }
    }

    std::shared_ptr<const FileEntry> entry_;
    std::shared_ptr<const Siblings> siblings_;
    std::optional<DirectoryStats> aggregate_;
    std::optional<ScanProgress> progress_;
    std::optional<Bytes> formerSize_;
    bool isComputing_ = false;
    ObserverList<> observers_;
};

}  // namespace gruk
