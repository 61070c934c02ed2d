#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "core/patrol/byte_format.h"
#include "core/patrol/review_engine.h"
#include "core/patrol/review_rules.h"
#include "platform/foundation/text_order.h"
#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

using Reason = ReviewFinding::Reason;
using Entries = std::vector<SnapshotEntry>;
using Deltas = std::vector<SnapshotDelta>;

/// The review step by step: every rule over every entry, then merged, then sorted.
class NaiveReview {
public:
    NaiveReview(FileURL root, Entries entries, Date now)
        : root_(std::move(root)), entries_(std::move(entries)), now_(now)
    {
        for (const SnapshotEntry& entry : entries_) {
            byPath_[entry.relativePath] = entry;
        }
    }

    std::vector<ReviewFinding> run(const Deltas& deltas)
    {
        rapidGrowth(deltas);
        duplicateDownloads();
        oldInstallers();
        regenerableCaches();
        return merged();
    }

private:
    [[nodiscard]] bool isFile(const std::string& path) const
    {
        return byPath_.contains(path) && !byPath_.at(path).isDirectory;
    }

    void add(const SnapshotEntry& entry, Reason reason, double confidence,
             const std::string& explanation, std::optional<Bytes> delta = std::nullopt)
    {
        ReviewFinding finding;
        finding.id = std::string(rawString(reason)) + ":" + entry.relativePath;
        finding.url =
            root_.appending(entry.relativePath,
                            entry.isDirectory ? FileURL::Names::directory : FileURL::Names::item);
        finding.allocatedSize = entry.allocatedSize;
        finding.byteDelta = delta;
        finding.reason = reason;
        finding.explanation = explanation;
        finding.confidence = confidence;
        findings_.push_back(finding);
    }

    void rapidGrowth(const Deltas& deltas)
    {
        Bytes total = 0;
        for (const SnapshotDelta& delta : deltas) {
            if (isFile(delta.relativePath)) {
                total += std::max<Bytes>(0, delta.currentBytes - delta.previousBytes);
            }
        }
        for (const SnapshotDelta& delta : deltas) {
            const Bytes growth = delta.currentBytes - delta.previousBytes;
            if (growth <= 0 || !isFile(delta.relativePath)) {
                continue;
            }
            const bool isShare =
                total >= 1 && static_cast<double>(growth) / static_cast<double>(total) >= 0.2;
            if (growth >= 1'000'000'000 || isShare) {
                add(byPath_.at(delta.relativePath), Reason::rapidGrowth, 0.9,
                    "This item grew by " + ByteFormat::string(growth)
                        + " since the previous patrol.",
                    growth);
            }
        }
    }

    /// Where " (", one or more digits and ")" begin that end the stem; npos without them.
    static std::size_t startOfNumber(const std::string& stem)
    {
        for (std::size_t at = stem.find(" ("); at != std::string::npos;
             at = stem.find(" (", at + 1)) {
            const std::size_t end = stem.find_first_not_of("0123456789", at + 2);
            if (end != std::string::npos && end > at + 2 && stem.substr(end) == ")") {
                return at;
            }
        }
        return std::string::npos;
    }

    void duplicateDownloads()
    {
        std::set<std::string> keys;
        for (const SnapshotEntry& entry : entries_) {
            if (!entry.isDirectory) {
                keys.insert(entry.relativePath + "|" + std::to_string(entry.allocatedSize));
            }
        }
        for (const SnapshotEntry& entry : entries_) {
            const std::size_t slash = entry.relativePath.rfind('/');
            const std::string parent =
                slash == std::string::npos ? "" : entry.relativePath.substr(0, slash + 1);
            const std::string name = entry.relativePath.substr(parent.size());
            const std::size_t dot = name.rfind('.');
            const bool hasExtension =
                dot != std::string::npos && dot != 0 && dot + 1 != name.size();
            const std::string stem = hasExtension ? name.substr(0, dot) : name;
            const std::size_t base = startOfNumber(stem);
            // The names of copies have a table of their own, in the test of the rules.
            const std::string sibling =
                base == std::string::npos
                    ? originalOfDesktopCopyName(name).value_or("")
                    : stem.substr(0, base) + (hasExtension ? name.substr(dot) : "");
            if (entry.isDirectory || sibling.empty()) {
                continue;
            }
            if (keys.contains(parent + sibling + "|" + std::to_string(entry.allocatedSize))) {
                add(entry, Reason::duplicateDownload, 0.95,
                    "A same-size sibling named " + sibling
                        + " exists beside this numbered duplicate.");
            }
        }
    }

    void oldInstallers()
    {
        for (const SnapshotEntry& entry : entries_) {
            if (entry.kind == FileKind::installer && !entry.isDirectory && entry.modifiedAt
                && now_.secondsSince1970 - entry.modifiedAt->secondsSince1970 >= 2'592'000) {
                add(entry, Reason::oldInstaller, 0.85,
                    "This installer has not changed in more than 30 days. Review it if the app is "
                    "already installed.");
            }
        }
    }

    static bool isCandidate(std::string path)
    {
        std::replace(path.begin(), path.end(), '\\', '/');
        for (const char* start :
             {"Library/Caches/", "Library/Developer/Xcode/DerivedData/", ".gradle/caches/"}) {
            if (path.starts_with(start)) {
                return true;
            }
        }
        for (const std::string name : {"/node_modules", "/.build"}) {
            if (path.find(name + "/") != std::string::npos || path.ends_with(name)) {
                return true;
            }
        }
        return path == ".gradle/caches";
    }

    void regenerableCaches()
    {
        Entries candidates;
        std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(candidates),
                     [](const SnapshotEntry& entry) { return isCandidate(entry.relativePath); });
        const auto depth = [](const SnapshotEntry& entry) {
            return std::count(entry.relativePath.begin(), entry.relativePath.end(), '/');
        };
        std::sort(candidates.begin(), candidates.end(),
                  [&](const SnapshotEntry& a, const SnapshotEntry& b) {
                      return depth(a) != depth(b)
                                 ? depth(a) < depth(b)
                                 : localizedStandardCompare(a.relativePath, b.relativePath) < 0;
                  });
        std::vector<std::string> kept;
        for (const SnapshotEntry& entry : candidates) {
            const bool isInKept = std::any_of(kept.begin(), kept.end(), [&](const auto& path) {
                return entry.relativePath.starts_with(path + "/");
            });
            if (!isInKept) {
                kept.push_back(entry.relativePath);
                add(entry, Reason::regenerableCache, 0.75,
                    "This is in a known cache or build location and can usually be regenerated by "
                    "its app.");
            }
        }
    }

    std::vector<ReviewFinding> merged()
    {
        std::map<FileURL, ReviewFinding> held;
        for (const ReviewFinding& finding : findings_) {
            const auto [place, isNew] = held.try_emplace(finding.url, finding);
            if (!isNew && finding.confidence > place->second.confidence) {
                place->second = finding;
            }
        }
        std::vector<ReviewFinding> result;
        for (const auto& [url, finding] : held) {
            result.push_back(finding);
        }
        std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) {
            if (a.allocatedSize != b.allocatedSize) {
                return a.allocatedSize > b.allocatedSize;
            }
            if (a.confidence != b.confidence) {
                return a.confidence > b.confidence;
            }
            return localizedStandardCompare(a.url.path(), b.url.path()) < 0;
        });
        return result;
    }

    FileURL root_;
    Entries entries_;
    Date now_;
    std::map<std::string, SnapshotEntry> byPath_;
    std::vector<ReviewFinding> findings_;
};

/// The changes between two lists, in the order of their paths' bytes.
Deltas changes(const Entries& previous, const Entries& current)
{
    std::map<std::string, std::pair<Bytes, Bytes>> sizes;
    for (const SnapshotEntry& entry : previous) {
        sizes[entry.relativePath].first = entry.allocatedSize;
    }
    for (const SnapshotEntry& entry : current) {
        sizes[entry.relativePath].second = entry.allocatedSize;
    }
    Deltas deltas;
    for (const auto& [path, pair] : sizes) {
        if (pair.first != pair.second) {
            deltas.push_back({path, SnapshotDelta::Change::grown, pair.first, pair.second});
        }
    }
    return deltas;
}

std::string described(const std::vector<ReviewFinding>& findings)
{
    std::string text;
    for (const ReviewFinding& finding : findings) {
        text += finding.id + " " + std::to_string(finding.allocatedSize) + "\n";
    }
    return text;
}

}  // namespace

TEST(ReviewEngineAgreement, agreesWithAStepByStepReviewOfRandomSnapshots)
{
    const FileURL root = FileURL::directory("/realm of \xff");
    const Date now{1'700'000'000.0 + 60 * 86'400.0};
    std::map<Reason, int> met;
    for (std::uint64_t seed = 0; seed < 1'000; ++seed) {
        SeededGenerator draw(seed);
        const Entries previous = test::randomEntries(draw, draw.bounded(60));
        const Entries current = test::laterEntries(draw, previous);
        const Deltas deltas = changes(previous, current);
        const auto expected = NaiveReview(root, current, now).run(deltas);
        const auto found = ReviewEngine::evaluate(root, SnapshotEntries(current), deltas, now);
        ASSERT_EQ(found, expected) << "seed " << seed << "\nfound\n"
                                   << described(found) << "expected\n"
                                   << described(expected);
        for (const ReviewFinding& finding : expected) {
            ++met[finding.reason];
        }
    }
    for (const Reason reason : ReviewFinding::allReasons) {
        EXPECT_GT(met[reason], 50) << rawString(reason);
    }
}

}  // namespace gruk
