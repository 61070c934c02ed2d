#include "core/patrol/snapshot_encoder.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <future>
#include <vector>

#include "core/patrol/json_text.h"
#include "core/patrol/snapshot_table.h"
#include "core/patrol/text_pieces.h"

namespace gruk::SnapshotEncoder {

namespace {

using Index = SnapshotEntries::Index;

/// From this many entries on a second thread is worth its start.
constexpr std::size_t entriesWorthTwoThreads = 10'000;

char* put(char* at, std::string_view text)
{
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

/// The dates of a realm lie on some thousands of days at most: the text of a day is kept for the
/// next date on it.
class DateText {
public:
    char* put(char* at, Date date)
    {
        const double seconds = std::floor(date.secondsSince1970);
        if (!(seconds >= 0 && seconds < lastKept)) {
            return iso8601::write(date, at);
        }
        const auto whole = static_cast<std::uint64_t>(seconds);
        const auto day = static_cast<std::uint32_t>(whole / secondsPerDay);
        Day& kept = days_[day % days_.size()];
        if (kept.day != day) {
            keep(kept, day);
        }
        const auto time = static_cast<unsigned>(whole % secondsPerDay);
        std::memcpy(at, kept.text.data(), kept.text.size());
        std::memcpy(at + 10, "Thh:mm:ssZ", 10);
        putTwoDigits(at + 11, time / 3600);
        putTwoDigits(at + 14, time / 60 % 60);
        putTwoDigits(at + 17, time % 60);
        return at + 20;
    }

private:
    struct Day {
        std::uint32_t day = ~std::uint32_t{0};
        /// "2026-11-20".
        std::array<char, 10> text{};
    };
    static constexpr std::uint64_t secondsPerDay = 86'400;
    /// The first second of the year 10000, from which on the text is longer.
    static constexpr double lastKept = 253'402'300'800.0;

    static void keep(Day& kept, std::uint32_t day)
    {
        char text[iso8601MaxLength];
        iso8601::write(Date{static_cast<double>(day * secondsPerDay)}, text);
        std::memcpy(kept.text.data(), text, kept.text.size());
        kept.day = day;
    }

    static void putTwoDigits(char* at, unsigned value)
    {
        at[0] = static_cast<char>('0' + value / 10);
        at[1] = static_cast<char>('0' + value % 10);
    }

    std::vector<Day> days_ = std::vector<Day>(4'096);
};

/// The parts of an entry that follow its sizes and dates, one text for each kind and mark.
class Tails {
public:
    Tails()
    {
        for (const FileKind kind : allFileKinds) {
            for (const bool isDirectory : {false, true}) {
                std::string& text = texts_[place(kind, isDirectory)];
                text = ",\"kind\":\"";
                text += rawString(kind);
                text += isDirectory ? "\",\"isDirectory\":true}" : "\",\"isDirectory\":false}";
            }
        }
    }
    [[nodiscard]] std::string_view operator()(FileKind kind, bool isDirectory) const
    {
        return texts_[place(kind, isDirectory)];
    }

private:
    static std::size_t place(FileKind kind, bool isDirectory)
    {
        return static_cast<std::size_t>(kind) * 2 + (isDirectory ? 1 : 0);
    }
    std::array<std::string, allFileKinds.size() * 2> texts_;
};

/// Writes the entries one after another. The escaped path of each folder is kept while its
/// content is written, so that each name is escaped once.
class EntryWriter {
public:
    EntryWriter(const SnapshotEntries& entries, TextCollector& output)
        : table_(entries.table()), output_(output)
    {
    }

    void run()
    {
        for (Index index = 0; index < table_.size(); ++index) {
            makePath(index);
            write(index);
        }
    }

private:
    struct Ancestor {
        Index index;
        std::size_t length;
    };
    /// More than all of an entry but its path.
    static constexpr std::size_t roomBesidesPath = 192;

    void makePath(Index index)
    {
        const Index parent = table_.parents[index];
        if (parent != SnapshotEntries::noIndex && parent + 1 == index) {
            ancestors_.push_back({parent, path_.size()});
        } else {
            while (!ancestors_.empty() && ancestors_.back().index != parent) {
                ancestors_.pop_back();
            }
        }
        if (ancestors_.empty()) {
            path_.clear();
        } else {
            path_.resize(ancestors_.back().length);
            path_ += '/';
        }
        appendJSONPath(path_, table_.name(index));
    }

    void write(Index index)
    {
        char* at = output_.room(path_.size() + roomBesidesPath);
        at = put(at, index == 0 ? R"({"relativePath":")" : R"(,{"relativePath":")");
        at = put(at, path_);
        at = put(at, R"(","allocatedSize":)");
        at = std::to_chars(at, at + 20, table_.sizes[index]).ptr;
        if (const auto modified = table_.modified(index)) {
            at = put(at, R"(,"modifiedAt":")");
            at = dates_.put(at, *modified);
            *at++ = '"';
        }
        at = put(at, tails_(table_.kind(index), table_.isDirectory(index)));
        output_.used(at);
    }

    const SnapshotTable& table_;
    TextCollector& output_;
    const Tails tails_;
    DateText dates_;
    std::string path_;
    std::vector<Ancestor> ancestors_;
};

void encodeIssues(const std::vector<ScanIssue>& issues, TextCollector& output)
{
    std::string text;
    for (const ScanIssue& issue : issues) {
        text = text.empty() ? "" : ",";
        text += R"({"relativePath":")";
        appendJSONPath(text, issue.relativePath);
        text += R"(","reason":")";
        text += rawString(issue.reason);
        text += "\"}";
        output.text(text);
    }
}

}  // namespace

namespace {

void encodeInto(TextCollector& output, const ScanSnapshot& snapshot)
{
    output.text(head(snapshot.id, snapshot.rootPath) + R"(,"capturedAt":")"
                + iso8601::text(snapshot.capturedAt) + R"(","entries":[)");
    EntryWriter(snapshot.entries, output).run();
    output.text(R"(],"issues":[)");
    encodeIssues(snapshot.issues, output);
    output.text(snapshot.isComplete ? R"(],"isComplete":true})" : R"(],"isComplete":false})");
    output.flush();
}

/// Encodes on a thread of its own, while this one hands the pieces to `sink`.
void encodeAside(const ScanSnapshot& snapshot, Sink sink)
{
    PieceHandover handover;
    auto encoding = std::async(std::launch::async, [&] {
        try {
            const auto exchange = [&](TextPiece full) {
                return handover.exchange(std::move(full));
            };
            TextCollector output(exchange);
            encodeInto(output, snapshot);
        } catch (const PieceHandover::Abandoned&) {
            // The sink has thrown; that is the caller's to know.
        } catch (...) {
            handover.finish();
            throw;
        }
        handover.finish();
    });
    try {
        handover.drain(sink);
    } catch (...) {
        handover.abandon();
        throw;
    }
    encoding.get();
}

}  // namespace

std::string head(const UUID& id, std::string_view rootPath)
{
    std::string text = R"({"id":")" + id.text() + R"(","rootPath":")";
    appendJSONPath(text, rootPath);
    return text + '"';
}

void encode(const ScanSnapshot& snapshot, Sink sink)
{
    if (snapshot.entries.size() >= entriesWorthTwoThreads) {
        encodeAside(snapshot, sink);
        return;
    }
    const auto exchange = [&](TextPiece full) {
        sink(full.text());
        return full;
    };
    TextCollector output(exchange);
    encodeInto(output, snapshot);
}

}  // namespace gruk::SnapshotEncoder
