#include "core/patrol/review_engine.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_map.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "core/patrol/byte_format.h"
#include "core/patrol/desktop_evidence.h"
#include "core/patrol/review_rules.h"

namespace gruk::ReviewEngine {

namespace {

using Index = SnapshotEntries::Index;
using Reason = ReviewFinding::Reason;

constexpr Bytes alwaysWorthALook = 1'000'000'000;
constexpr double shareWorthALook = 0.2;
constexpr double thirtyDays = 2'592'000;

constexpr double confidence(Reason reason)
{
    switch (reason) {
    case Reason::rapidGrowth:
        return 0.9;
    case Reason::duplicateDownload:
        return 0.95;
    case Reason::oldInstaller:
        return 0.85;
    case Reason::regenerableCache:
        break;
    }
    return 0.75;
}

/// The entries that no rule looks at, asked in ascending order.
class Unreviewed {
public:
    explicit Unreviewed(const std::vector<UnreviewedPaths::Run>& runs)
        : runs_(runs), next_(runs.begin())
    {
    }

    [[nodiscard]] bool covers(Index index)
    {
        while (next_ != runs_.end() && next_->end <= index) {
            ++next_;
        }
        return next_ != runs_.end() && next_->begin <= index;
    }

    /// Whether any begins between the two, of which `covers` has not been asked yet.
    [[nodiscard]] bool beginsBefore(Index end) const
    {
        return next_ != runs_.end() && next_->begin < end;
    }

private:
    const std::vector<UnreviewedPaths::Run>& runs_;
    std::vector<UnreviewedPaths::Run>::const_iterator next_;
};

/// One evaluation: each rule looks at an entry as it passes, and the most confident speaks.
class Evaluation {
public:
    Evaluation(const FileURL& root, const SnapshotEntries& entries,
               const std::vector<SnapshotDelta>& deltas, Date now, const UnreviewedPlaces& places)
        : root_(root), entries_(entries), now_(now),
          runs_(UnreviewedPaths(places, root).runs(entries)),
          evidence_(DesktopEvidence::locations(entries)), nextEvidence_(evidence_.begin())
    {
        takeGrowth(deltas);
    }

    std::vector<ReviewFinding> run()
    {
        Unreviewed unreviewed(runs_);
        for (PathCursor at(entries_); !at.isAtEnd(); at.advance()) {
            if (!unreviewed.covers(at.index())) {
                look(at, unreviewed);
            }
        }
        // They were found in the order of their paths, which a stable sort keeps among equals.
        std::stable_sort(
            findings_.begin(), findings_.end(), [](const ReviewFinding& a, const ReviewFinding& b) {
                return a.allocatedSize != b.allocatedSize ? a.allocatedSize > b.allocatedSize
                                                          : a.confidence > b.confidence;
            });
        return std::move(findings_);
    }

private:
    /// Growth of the paths that are files now; the sum of it decides the share of each.
    void takeGrowth(const std::vector<SnapshotDelta>& deltas)
    {
        boost::unordered_flat_map<std::string_view, Bytes> grown;
        for (const SnapshotDelta& delta : deltas) {
            if (delta.netBytes() > 0) {
                grown.emplace(delta.relativePath, delta.netBytes());
            }
        }
        if (grown.empty()) {
            return;
        }
        Bytes total = 0;
        std::vector<std::pair<Index, Bytes>> files;
        Unreviewed unreviewed(runs_);
        for (PathCursor at(entries_); !at.isAtEnd(); at.advance()) {
            if (entries_.isDirectory(at.index()) || unreviewed.covers(at.index())) {
                continue;
            }
            if (const auto found = grown.find(at.path()); found != grown.end()) {
                total = checkedAdd(total, found->second);
                files.emplace_back(at.index(), found->second);
            }
        }
        for (const auto& [index, growth] : files) {
            const bool isLargeShare =
                total >= 1
                && static_cast<double>(growth) / static_cast<double>(total) >= shareWorthALook;
            if (growth >= alwaysWorthALook || isLargeShare) {
                rapidGrowth_.emplace(index, growth);
            }
        }
    }

    /// Asks the rules in falling order of confidence; the first that applies speaks.
    void look(const PathCursor& at, const Unreviewed& unreviewed)
    {
        const Index index = at.index();
        // The topmost of a cache stands for all that is in it, also where another rule speaks.
        const bool isCache =
            index >= cacheEnd_ && (isDesktopEvidence(index) || isRegenerableCache(at.path()));
        if (isCache) {
            cacheEnd_ = entries_.subtreeEnd(index);
        }
        if (!entries_.isDirectory(index) && lookAtFile(at)) {
            return;
        }
        // Whoever took a cache away would take along what it holds.
        if (isCache && !unreviewed.beginsBefore(cacheEnd_)) {
            add(at, Reason::regenerableCache,
                "This is in a known cache or build location and can usually be regenerated by its "
                "app.");
        }
    }

    /// Asked in ascending order.
    bool isDesktopEvidence(Index index)
    {
        while (nextEvidence_ != evidence_.end() && nextEvidence_->index < index) {
            ++nextEvidence_;
        }
        return nextEvidence_ != evidence_.end() && nextEvidence_->index == index;
    }

    bool lookAtFile(const PathCursor& at)
    {
        const Index index = at.index();
        if (const auto sibling = siblingOfDuplicate(at)) {
            add(at, Reason::duplicateDownload,
                "A same-size sibling named " + *sibling
                    + " exists beside this numbered duplicate.");
            return true;
        }
        if (const auto growth = rapidGrowth_.find(index); growth != rapidGrowth_.end()) {
            add(at, Reason::rapidGrowth,
                "This item grew by " + ByteFormat::string(growth->second)
                    + " since the previous patrol.");
            findings_.back().byteDelta = growth->second;
            return true;
        }
        const auto modified = entries_.modifiedAt(index);
        if (entries_.kind(index) == FileKind::installer && modified
            && now_.secondsSince1970 - modified->secondsSince1970 >= thirtyDays) {
            add(at, Reason::oldInstaller,
                "This installer has not changed in more than 30 days. Review it if the app is "
                "already installed.");
            return true;
        }
        return false;
    }

    /// The name of the file beside it that this one seems to be a second download or a copy of.
    [[nodiscard]] std::optional<std::string> siblingOfDuplicate(const PathCursor& at) const
    {
        const std::size_t nameStart =
            at.name().rfind('/') + 1;  // 0 but where a folder has no entry.
        const std::string_view name = at.name().substr(nameStart);
        auto sibling = originalOfDuplicateName(name);
        if (!sibling) {
            sibling = originalOfDesktopCopyName(name);
        }
        if (!sibling) {
            return std::nullopt;
        }
        const auto other = entries_.findChild(
            entries_.parent(at.index()), std::string(at.name().substr(0, nameStart)) + *sibling);
        if (!other || entries_.isDirectory(*other)
            || entries_.allocatedSize(*other) != entries_.allocatedSize(at.index())) {
            return std::nullopt;
        }
        return sibling;
    }

    void add(const PathCursor& at, Reason reason, std::string explanation)
    {
        ReviewFinding finding;
        finding.id = std::string(rawString(reason)) + ":" + std::string(at.path());
        finding.url =
            root_.appending(at.path(), entries_.isDirectory(at.index()) ? FileURL::Names::directory
                                                                        : FileURL::Names::item);
        finding.allocatedSize = entries_.allocatedSize(at.index());
        finding.reason = reason;
        finding.explanation = std::move(explanation);
        finding.confidence = confidence(reason);
        findings_.push_back(std::move(finding));
    }

    const FileURL& root_;
    const SnapshotEntries& entries_;
    Date now_;
    const std::vector<UnreviewedPaths::Run> runs_;
    const std::vector<DesktopEvidence::Location> evidence_;
    std::vector<DesktopEvidence::Location>::const_iterator nextEvidence_;
    boost::unordered_flat_map<Index, Bytes> rapidGrowth_;
    /// The end of the subtree of the last cache found: nothing before it is a cache of its own.
    Index cacheEnd_ = 0;
    std::vector<ReviewFinding> findings_;
};

}  // namespace

std::vector<ReviewFinding> evaluate(const FileURL& root, const SnapshotEntries& entries,
                                    const std::vector<SnapshotDelta>& deltas, Date now,
                                    const UnreviewedPlaces& unreviewed)
{
    return Evaluation(root, entries, deltas, now, unreviewed).run();
}

}  // namespace gruk::ReviewEngine
