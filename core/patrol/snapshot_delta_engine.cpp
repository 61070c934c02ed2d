#include "core/patrol/snapshot_delta_engine.h"

#include <algorithm>
#include <boost/unordered/unordered_flat_set.hpp>
#include <string_view>

#include "platform/foundation/text_order.h"

namespace gruk::SnapshotDeltaEngine {

namespace {

/// The places that one of two walks could not see, asked by path.
class UncertainPlaces {
public:
    UncertainPlaces(const std::vector<ScanIssue>& previous, const std::vector<ScanIssue>& current)
    {
        add(previous);
        add(current);
    }

    /// Whether the figures of that path cannot be trusted: it is, or lies in, a place that was
    /// not seen, or it is a directory that holds one.
    [[nodiscard]] bool touch(std::string_view path, bool isDirectory) const
    {
        if (places_.empty()) {
            return false;
        }
        if (places_.contains(path) || (isDirectory && above_.contains(path))) {
            return true;
        }
        for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
             slash = path.find('/', slash + 1)) {
            if (places_.contains(path.substr(0, slash))) {
                return true;
            }
        }
        return false;
    }

private:
    void add(const std::vector<ScanIssue>& issues)
    {
        for (const ScanIssue& issue : issues) {
            const std::string_view path = issue.relativePath;
            places_.insert(path);
            for (std::size_t slash = path.find('/'); slash != std::string_view::npos;
                 slash = path.find('/', slash + 1)) {
                above_.insert(path.substr(0, slash));
            }
        }
    }

    // Views into the snapshots' issues, which outlive the comparison.
    boost::unordered_flat_set<std::string_view> places_;
    boost::unordered_flat_set<std::string_view> above_;
};

/// One path with its sizes on both sides.
struct Pair {
    std::string_view path;
    const Bytes* previous;
    const Bytes* current;
    bool isDirectory;
};

void appendIfChanged(const Pair& pair, const UncertainPlaces& uncertain,
                     std::vector<SnapshotDelta>& deltas)
{
    using Change = SnapshotDelta::Change;
    const Bytes previous = pair.previous != nullptr ? *pair.previous : 0;
    const Bytes current = pair.current != nullptr ? *pair.current : 0;
    if (previous == current || uncertain.touch(pair.path, pair.isDirectory)) {
        return;
    }
    Change change = previous >= current ? Change::shrunk : Change::grown;
    if (pair.previous == nullptr) {
        change = Change::added;
    } else if (pair.current == nullptr) {
        change = Change::removed;
    }
    deltas.push_back({std::string(pair.path), change, previous, current});
}

/// Which side has the earlier path; a side that has ended has none.
std::strong_ordering earlier(const PathCursor& previous, const PathCursor& current)
{
    if (previous.isAtEnd()) {
        return std::strong_ordering::greater;
    }
    if (current.isAtEnd()) {
        return std::strong_ordering::less;
    }
    return localizedStandardCompare(previous.path(), current.path());
}

}  // namespace

std::vector<SnapshotDelta> compare(const ScanSnapshot& previous, const ScanSnapshot& current)
{
    if (!previous.isComplete || !current.isComplete) {
        throw SnapshotDeltaError(SnapshotDeltaError::Case::incompleteSnapshot);
    }
    if (previous.rootPath != current.rootPath) {
        throw SnapshotDeltaError(SnapshotDeltaError::Case::rootMismatch);
    }
    const UncertainPlaces uncertain(previous.issues, current.issues);
    std::vector<SnapshotDelta> deltas;
    PathCursor before(previous.entries);
    PathCursor now(current.entries);
    while (!before.isAtEnd() || !now.isAtEnd()) {
        const auto order = earlier(before, now);
        Bytes bytesBefore = 0;
        Bytes bytesNow = 0;
        Pair pair{order > 0 ? now.path() : before.path(), nullptr, nullptr, false};
        if (order <= 0) {
            bytesBefore = previous.entries.allocatedSize(before.index());
            pair.previous = &bytesBefore;
            pair.isDirectory = previous.entries.isDirectory(before.index());
        }
        if (order >= 0) {
            bytesNow = current.entries.allocatedSize(now.index());
            pair.current = &bytesNow;
            // Where both sides have the path, what it is now counts.
            pair.isDirectory = current.entries.isDirectory(now.index());
        }
        appendIfChanged(pair, uncertain, deltas);
        if (order <= 0) {
            before.advance();
        }
        if (order >= 0) {
            now.advance();
        }
    }
    std::sort(deltas.begin(), deltas.end(), standsBefore);
    return deltas;
}

}  // namespace gruk::SnapshotDeltaEngine
