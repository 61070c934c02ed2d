#include "core/patrol/canonical_reader.h"

#include <array>
#include <cmath>
#include <future>
#include <string>

#include "core/patrol/entry_sizes.h"
#include "core/patrol/json_scan.h"
#include "core/patrol/path_sequence.h"
#include "core/patrol/snapshot_encoder.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "platform/foundation/common_prefix.h"
#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

using jsonscan::literal;
using jsonscan::RawString;

/// An entry is read once this much stands in the window, or all that is left of the file.
constexpr std::size_t usualEntry = 4'096;
/// No entry is longer: the path of a tree a few thousand folders deep, every byte escaped.
constexpr std::size_t longestEntry = std::size_t{1} << 24;

/// From this size on a second thread is worth its start.
constexpr std::uint64_t bytesWorthTwoThreads = std::uint64_t{1} << 24;
constexpr std::size_t searchSize = std::size_t{1} << 18;

/// One entry as it stands in the text.
struct EntryText {
    RawString path;
    Bytes allocatedSize = 0;
    std::optional<Date> modifiedAt;
    FileKind kind = FileKind::other;
    bool isDirectory = false;
};

/// The dates of a realm lie on some thousands of days at most: what a day means is kept for the
/// next date on it.
class DateReader {
public:
    /// Reads a date up to its closing quote and moves over it; null when none stands there.
    const char* read(const char* at, Date& date)
    {
        Day& kept = days_[place(at)];
        if (at[20] == '"' && std::memcmp(at, kept.text.data(), kept.text.size()) == 0
            && readTime(at, kept.start, date)) {
            return at + 21;
        }
        std::size_t length = 0;
        while (length < iso8601MaxLength && at[length] != '"' && at[length] != '\0') {
            ++length;
        }
        const auto parsed = iso8601::parse({at, length});
        if (!parsed || at[length] != '"') {
            return nullptr;
        }
        if (length == 20) {
            std::memcpy(kept.text.data(), at, kept.text.size());
            kept.start = std::floor(parsed->secondsSince1970 / 86'400) * 86'400;
        }
        date = *parsed;
        return at + length + 1;
    }

private:
    struct Day {
        /// "2026-11-20T"; at first nothing that any date begins with.
        std::array<char, 11> text{};
        double start = 0;
    };

    /// Where the day of a date is kept: by the digits of its year's end, its month and day.
    static std::size_t place(const char* at)
    {
        const auto digit = [at](int i) { return static_cast<unsigned char>(at[i]) & 15U; };
        return (digit(3) * 372 + (digit(5) * 10 + digit(6)) * 31 + digit(8) * 10 + digit(9)) % 4096;
    }

    /// The time behind the day: "hh:mm:ssZ" at the twelfth place.
    static bool readTime(const char* at, double dayStart, Date& date)
    {
        const auto digit = [at](int i) { return static_cast<unsigned>(at[i] - '0'); };
        const unsigned hours = digit(11) * 10 + digit(12);
        const unsigned minutes = digit(14) * 10 + digit(15);
        const unsigned seconds = digit(17) * 10 + digit(18);
        const bool isTime = digit(11) < 10 && digit(12) < 10 && digit(14) < 6 && digit(15) < 10
                            && digit(17) < 6 && digit(18) < 10 && hours < 24 && at[13] == ':'
                            && at[16] == ':' && at[19] == 'Z';
        date.secondsSince1970 = dayStart + (hours * 3600 + minutes * 60 + seconds);
        return isTime;
    }

    std::vector<Day> days_ = std::vector<Day>(4'096);
};

/// Reads entries, one after another.
class EntryReader {
public:
    EntryReader()
    {
        for (const FileKind kind : allFileKinds) {
            names_[static_cast<std::size_t>(kind)] = std::string(rawString(kind)) + "\"";
        }
    }

    /// Reads one entry from its "{" to behind its "}"; null when none stands there.
    const char* read(const char* at, EntryText& entry)
    {
        if ((at = literal(at, R"({"relativePath":")")) == nullptr
            || (at = jsonscan::string(at, entry.path)) == nullptr
            || (at = literal(at, R"(,"allocatedSize":)")) == nullptr
            || (at = jsonscan::integer(at, entry.allocatedSize)) == nullptr) {
            return nullptr;
        }
        entry.modifiedAt.reset();
        if (const char* date = literal(at, R"(,"modifiedAt":")")) {
            Date modified;
            if ((at = dates_.read(date, modified)) == nullptr) {
                return nullptr;
            }
            entry.modifiedAt = modified;
        }
        if ((at = literal(at, R"(,"kind":")")) == nullptr
            || (at = readKind(at, entry.kind)) == nullptr
            || (at = literal(at, R"(,"isDirectory":)")) == nullptr) {
            return nullptr;
        }
        const char* yes = literal(at, "true}");
        entry.isDirectory = yes != nullptr;
        return yes != nullptr ? yes : literal(at, "false}");
    }

private:
    const char* readKind(const char* at, FileKind& kind)
    {
        // Neighbours are often of one kind.
        if (const char* end = matchKind(at, kind_)) {
            kind = kind_;
            return end;
        }
        for (const FileKind candidate : allFileKinds) {
            if (const char* end = matchKind(at, candidate)) {
                kind = kind_ = candidate;
                return end;
            }
        }
        return nullptr;
    }

    [[nodiscard]] const char* matchKind(const char* at, FileKind kind) const
    {
        const std::string& name = names_[static_cast<std::size_t>(kind)];
        return std::memcmp(at, name.data(), name.size()) == 0 ? at + name.size() : nullptr;
    }

    DateReader dates_;
    /// The raw strings with the closing quote.
    std::array<std::string, allFileKinds.size()> names_;
    FileKind kind_ = FileKind::other;
};

/// Takes entries and keeps none: for checking.
struct EntryCheck {
    bool take(std::string_view path, const EntryText& entry)
    {
        // What this path has in common with the former one was looked at then.
        const PathSequence::Difference at = paths.difference(path);
        if (!isWellFormedEntryPath(path, at.start) || !paths.precedes(path, at)
            || !sizes.add(entry.allocatedSize)) {
            return false;
        }
        paths.take(path, at);
        return true;
    }
    PathSequence paths;
    EntrySizes sizes;
};

/// Takes entries into a snapshot.
struct EntryCollector {
    bool take(std::string_view path, const EntryText& entry)
    {
        builder.addPath(path, entry.allocatedSize, entry.modifiedAt, entry.kind, entry.isDirectory);
        return true;
    }
    SnapshotEntriesBuilder builder;
};

/// Tells what the paths of entries mean. Paths that follow each other begin alike, and what has
/// been found to be UTF-8 is not looked at again.
class PathReader {
public:
    std::optional<std::string_view> read(const RawString& raw)
    {
        if (raw.hasEscape) {
            return jsonscan::pathMeaning(raw, room_);
        }
        if (!raw.hasNonASCII) {
            return raw.text;
        }
        std::size_t known = commonPrefix(former_, raw.text);
        while (known > 0 && known < raw.text.size() && isContinuation(raw.text[known])) {
            --known;
        }
        if (!isValidUTF8(raw.text.substr(known))) {
            return std::nullopt;
        }
        former_.replace(known, std::string::npos, raw.text.substr(known));
        return raw.text;
    }

private:
    static bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xc0U) == 0x80U; }

    /// Text known to be UTF-8.
    std::string former_;
    std::string room_;
};

/// Runs `read` on the window until it finds what it reads, with ever more of the file in it.
/// `read` takes a place and returns the one behind, or null.
template <typename Read>
bool readWith(ByteWindow& window, Read read)
{
    for (std::size_t wanted = usualEntry;; wanted *= 4) {
        if (window.size() < wanted && !window.isAtEndOfFile()) {
            window.fill(wanted);
        }
        const char* end = read(window.at());
        if (end != nullptr && end <= window.end()) {
            window.moveTo(end);
            return true;
        }
        if (window.isAtEndOfFile() || wanted > longestEntry) {
            return false;
        }
    }
}

}  // namespace

bool CanonicalReader::readHead(ScanSnapshot& snapshot)
{
    return readWith(window_, [&](const char* at) -> const char* {
        RawString id;
        RawString root;
        RawString captured;
        if ((at = literal(at, R"({"id":")")) == nullptr
            || (at = jsonscan::string(at, id)) == nullptr
            || (at = literal(at, R"(,"rootPath":")")) == nullptr
            || (at = jsonscan::string(at, root)) == nullptr
            || (at = literal(at, R"(,"capturedAt":")")) == nullptr
            || (at = jsonscan::string(at, captured)) == nullptr
            || (at = literal(at, R"(,"entries":[)")) == nullptr) {
            return nullptr;
        }
        std::string room;
        const auto uuid = UUID::parse(id.text);
        const auto path = jsonscan::pathMeaning(root, room);
        const auto date = iso8601::parse(captured.text);
        if (!uuid || !path || !date) {
            return nullptr;
        }
        snapshot.id = *uuid;
        snapshot.rootPath = *path;
        snapshot.capturedAt = *date;
        return at;
    });
}

template <typename Entries>
bool CanonicalReader::readEntries(Entries& entries)
{
    if (window_.take("]")) {
        return true;
    }
    EntryReader reader;
    PathReader paths;
    EntryText entry;
    for (;;) {
        bool isTaken = true;
        bool isLast = false;
        const bool isRead = readWith(window_, [&](const char* at) -> const char* {
            const char* end = reader.read(at, entry);
            if (end == nullptr || (*end != ',' && *end != ']') || end >= window_.end()) {
                return nullptr;
            }
            isLast = *end == ']';
            // While the text is in the window.
            const auto path = paths.read(entry.path);
            isTaken = path && entries.take(*path, entry);
            return end + 1;
        });
        if (!isRead || !isTaken) {
            return false;
        }
        if (isLast) {
            return true;
        }
    }
}

bool CanonicalReader::readIssues(std::vector<ScanIssue>& issues)
{
    if (!window_.take(R"(,"issues":[)")) {
        return false;
    }
    if (window_.take("]")) {
        return true;
    }
    for (;;) {
        ScanIssue issue;
        const bool isRead = readWith(window_, [&](const char* at) -> const char* {
            RawString path;
            RawString reason;
            if ((at = literal(at, R"({"relativePath":")")) == nullptr
                || (at = jsonscan::string(at, path)) == nullptr
                || (at = literal(at, R"(,"reason":")")) == nullptr
                || (at = jsonscan::string(at, reason)) == nullptr
                || (at = literal(at, "}")) == nullptr) {
                return nullptr;
            }
            std::string room;
            const auto meaning = jsonscan::pathMeaning(path, room);
            const auto known = scanIssueReason(reason.text);
            if (!meaning || !known) {
                return nullptr;
            }
            issue = {std::string(*meaning), *known};
            return at;
        });
        if (!isRead) {
            return false;
        }
        issues.push_back(std::move(issue));
        if (window_.take("]")) {
            return true;
        }
        if (!window_.take(",")) {
            return false;
        }
    }
}

template <typename Entries>
bool CanonicalReader::readSnapshot(ScanSnapshot& snapshot, Entries& entries)
{
    if (!readHead(snapshot) || !readEntries(entries) || !readIssues(snapshot.issues)
        || !window_.take(R"(,"isComplete":)")) {
        return false;
    }
    snapshot.isComplete = window_.take("true}");
    return snapshot.isComplete || window_.take("false}");
}

std::optional<std::vector<StoredSnapshot>> CanonicalReader::check()
{
    const auto size = static_cast<std::uint64_t>(file_.stamp().size);
    const auto middle =
        size >= bytesWorthTwoThreads ? findSnapshotAfter(size / 2) : std::optional<std::uint64_t>();
    if (!middle) {
        return checkFromStart(std::nullopt);
    }
    FileReader other = file_.another();
    auto later = std::async(std::launch::async, [&other, start = *middle] {
        return CanonicalReader(other).checkToEnd(start);
    });
    Found first = checkFromStart(*middle);
    const Found second = later.get();
    if (!first || !second) {
        return std::nullopt;
    }
    for (const StoredSnapshot& snapshot : *second) {
        first->push_back(snapshot);
        first->back().ordinal = first->size() - 1;
    }
    return first;
}

/// Checks from the start of the file up to `stop`, where a snapshot begins, or to its end.
CanonicalReader::Found CanonicalReader::checkFromStart(std::optional<std::uint64_t> stop)
{
    window_.seek(0);
    if (!window_.take(SnapshotEncoder::storeHead)) {
        return std::nullopt;
    }
    if (!stop && window_.take(SnapshotEncoder::storeTail)) {
        window_.fill(1);
        return window_.size() == 0 ? Found(std::in_place) : std::nullopt;
    }
    return checkSnapshots(stop);
}

/// Checks from `start`, where a snapshot begins, to the end of the file.
CanonicalReader::Found CanonicalReader::checkToEnd(std::uint64_t start)
{
    window_.seek(start);
    return checkSnapshots(std::nullopt);
}

CanonicalReader::Found CanonicalReader::checkSnapshots(std::optional<std::uint64_t> stop)
{
    std::vector<StoredSnapshot> result;
    do {
        if (stop && window_.offset() >= *stop) {
            return window_.offset() == *stop ? Found(std::move(result)) : std::nullopt;
        }
        ScanSnapshot snapshot;
        EntryCheck entries;
        const std::uint64_t begin = window_.offset();
        if (!readSnapshot(snapshot, entries)) {
            return std::nullopt;
        }
        result.push_back({snapshot.id, std::move(snapshot.rootPath), snapshot.capturedAt,
                          result.size(), begin, window_.offset()});
    } while (window_.take(SnapshotEncoder::betweenSnapshots));
    if (stop || !window_.take(SnapshotEncoder::storeTail)) {
        return std::nullopt;
    }
    window_.fill(1);
    return window_.size() == 0 ? Found(std::move(result)) : std::nullopt;
}

/// Where the first snapshot behind `offset` begins, by the text between two: it can stand nowhere
/// else, since quotes within a JSON string are escaped. None when there is no other.
std::optional<std::uint64_t> CanonicalReader::findSnapshotAfter(std::uint64_t offset)
{
    static constexpr std::string_view between = R"(},{"id":")";
    window_.seek(offset);
    for (;;) {
        window_.fill(searchSize);
        const std::string_view text(window_.at(), window_.size());
        const std::size_t found = text.find(between);
        if (found != std::string_view::npos) {
            return window_.offset() + found + 2;
        }
        if (text.size() < searchSize) {
            return std::nullopt;
        }
        window_.moveTo(window_.end() - between.size());
    }
}

std::optional<ScanSnapshot> CanonicalReader::build(std::uint64_t offset)
{
    window_.seek(offset);
    ScanSnapshot snapshot;
    EntryCollector entries;
    if (!readSnapshot(snapshot, entries)) {
        return std::nullopt;
    }
    snapshot.entries = entries.builder.finish();
    return snapshot;
}

}  // namespace gruk
