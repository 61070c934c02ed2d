#include "core/patrol/general_reader.h"

#include <array>
#include <boost/json/basic_parser_impl.hpp>
#include <memory>
#include <string>
#include <string_view>

#include "core/patrol/entry_sizes.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "platform/foundation/json_path.h"

namespace gruk::GeneralReader {

namespace {

namespace json = boost::json;

/// The objects and lists of a store, and what is passed over.
enum class Place : std::uint8_t {
    store,
    snapshots,
    snapshot,
    entries,
    entry,
    issues,
    issue,
    unknown,
};

/// The keys that mean something in one kind of object; the position of a key is its number.
struct Keys {
    std::array<std::string_view, 6> names;
    /// Bit i is set when key i must be there.
    unsigned required;
};

constexpr Keys storeKeys{{"schemaVersion", "snapshots"}, 0b11};
constexpr Keys snapshotKeys{{"id", "rootPath", "capturedAt", "entries", "issues", "isComplete"},
                            0b111111};
constexpr Keys entryKeys{{"relativePath", "allocatedSize", "kind", "isDirectory", "modifiedAt"},
                         0b01111};
constexpr Keys issueKeys{{"relativePath", "reason"}, 0b11};

const Keys* keysOf(Place place)
{
    switch (place) {
    case Place::store:
        return &storeKeys;
    case Place::snapshot:
        return &snapshotKeys;
    case Place::entry:
        return &entryKeys;
    case Place::issue:
        return &issueKeys;
    default:
        return nullptr;
    }
}

constexpr int unknownKey = -1;

/// Takes the parser's events. Each returns false, with an error set, when the text is no store.
class Handler {
public:
    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    Handler(const IsWanted& isWanted, const OnSnapshot& onSnapshot)
        : isWanted_(isWanted), onSnapshot_(onSnapshot)
    {
    }

    bool on_document_begin(json::error_code&) { return true; }
    bool on_document_end(json::error_code&) { return true; }

    bool on_object_begin(json::error_code& error)
    {
        if (levels_.empty()) {
            return open(Place::store);
        }
        switch (levels_.back().place) {
        case Place::snapshots:
            beginSnapshot();
            return open(Place::snapshot);
        case Place::entries:
            entry_ = {};
            return open(Place::entry);
        case Place::issues:
            issue_ = {};
            return open(Place::issue);
        default:
            return isUnknown() ? open(Place::unknown) : refuse(error);
        }
    }

    bool on_object_end(std::size_t, json::error_code& error)
    {
        const Level level = levels_.back();
        levels_.pop_back();
        const Keys* keys = keysOf(level.place);
        if (keys != nullptr && (level.seen & keys->required) != keys->required) {
            return refuse(error);
        }
        switch (level.place) {
        case Place::snapshot:
            return endSnapshot(error);
        case Place::entry:
            return endEntry(error);
        case Place::issue:
            if (isBuilding_) {
                snapshot_.issues.push_back(issue_);
            }
            return true;
        default:
            return true;
        }
    }

    bool on_array_begin(json::error_code& error)
    {
        if (isAt(Place::store, "snapshots")) {
            return open(Place::snapshots);
        }
        if (isAt(Place::snapshot, "entries")) {
            return open(Place::entries);
        }
        if (isAt(Place::snapshot, "issues")) {
            return open(Place::issues);
        }
        return isUnknown() ? open(Place::unknown) : refuse(error);
    }

    bool on_array_end(std::size_t, json::error_code&)
    {
        levels_.pop_back();
        return true;
    }

    bool on_key_part(json::string_view part, std::size_t, json::error_code&)
    {
        text_.append(part.data(), part.size());
        return true;
    }

    bool on_key(json::string_view part, std::size_t, json::error_code& error)
    {
        text_.append(part.data(), part.size());
        Level& level = levels_.back();
        level.key = unknownKey;
        if (const Keys* keys = keysOf(level.place)) {
            for (std::size_t i = 0; i < keys->names.size(); ++i) {
                if (!keys->names[i].empty() && keys->names[i] == text_) {
                    level.key = static_cast<int>(i);
                }
            }
        }
        text_.clear();
        if (level.key == unknownKey) {
            return true;
        }
        const unsigned bit = 1U << static_cast<unsigned>(level.key);
        const bool isTwice = (level.seen & bit) != 0;
        level.seen |= bit;
        return !isTwice || refuse(error);
    }

    bool on_string_part(json::string_view part, std::size_t, json::error_code&)
    {
        text_.append(part.data(), part.size());
        return true;
    }

    bool on_string(json::string_view part, std::size_t, json::error_code& error)
    {
        text_.append(part.data(), part.size());
        const std::string text = std::move(text_);
        text_.clear();
        return isUnknown() || takeText(text) || refuse(error);
    }

    bool on_number_part(json::string_view, json::error_code&) { return true; }

    bool on_int64(std::int64_t value, json::string_view, json::error_code& error)
    {
        if (isAt(Place::store, "schemaVersion")) {
            return value == 1 || refuse(error);
        }
        if (isAt(Place::entry, "allocatedSize")) {
            entry_.allocatedSize = value;
            return true;
        }
        return isUnknown() || refuse(error);
    }
    bool on_uint64(std::uint64_t, json::string_view, json::error_code& error)
    {
        return isUnknown() || refuse(error);
    }
    bool on_double(double, json::string_view, json::error_code& error)
    {
        return isUnknown() || refuse(error);
    }

    bool on_bool(bool value, json::error_code& error)
    {
        if (isAt(Place::snapshot, "isComplete")) {
            snapshot_.isComplete = value;
            return true;
        }
        if (isAt(Place::entry, "isDirectory")) {
            entry_.isDirectory = value;
            return true;
        }
        return isUnknown() || refuse(error);
    }

    bool on_null(json::error_code& error) { return isUnknown() || refuse(error); }
    bool on_comment_part(json::string_view, json::error_code&) { return true; }
    bool on_comment(json::string_view, json::error_code&) { return true; }

private:
    struct Level {
        Place place;
        /// Bit i: key i has stood here.
        unsigned seen = 0;
        /// The key whose value comes.
        int key = unknownKey;
    };

    bool open(Place place)
    {
        levels_.push_back({place});
        return true;
    }

    static bool refuse(json::error_code& error)
    {
        error = json::error::syntax;
        return false;
    }

    /// Whether the value that comes is one that nobody asks for.
    [[nodiscard]] bool isUnknown() const
    {
        if (levels_.empty()) {
            return false;
        }
        const Level& level = levels_.back();
        return level.place == Place::unknown
               || (keysOf(level.place) != nullptr && level.key == unknownKey);
    }

    [[nodiscard]] bool isAt(Place place, std::string_view key) const
    {
        if (levels_.empty() || levels_.back().place != place || levels_.back().key == unknownKey) {
            return false;
        }
        return keysOf(place)->names[static_cast<std::size_t>(levels_.back().key)] == key;
    }

    void beginSnapshot()
    {
        snapshot_ = {};
        isBuilding_ = isWanted_(ordinal_);
        builder_ = std::make_unique<SnapshotEntriesBuilder>();
        sizes_ = {};
    }

    bool endSnapshot(json::error_code& error)
    {
        const StoredSnapshot stored{
            snapshot_.id, snapshot_.rootPath, snapshot_.capturedAt, ordinal_, 0, 0};
        ++ordinal_;
        if (isBuilding_) {
            try {
                snapshot_.entries = builder_->finish();
            } catch (const InvalidEntryPath&) {
                return refuse(error);
            }
        }
        onSnapshot_(stored, std::move(snapshot_));
        return true;
    }

    bool endEntry(json::error_code& error)
    {
        if (!sizes_.add(entry_.allocatedSize)) {
            return refuse(error);
        }
        if (!isBuilding_) {
            return isWellFormedEntryPath(entry_.relativePath) || refuse(error);
        }
        try {
            builder_->addPath(entry_.relativePath, entry_.allocatedSize, entry_.modifiedAt,
                              entry_.kind, entry_.isDirectory);
        } catch (const InvalidEntryPath&) {
            return refuse(error);
        }
        return true;
    }

    bool takeText(const std::string& text)
    {
        if (levels_.empty()) {
            return false;
        }
        switch (levels_.back().place) {
        case Place::snapshot:
            return takeSnapshotText(text);
        case Place::entry:
            return takeEntryText(text);
        case Place::issue:
            return takeIssueText(text);
        default:
            return false;
        }
    }

    bool takeSnapshotText(const std::string& text)
    {
        if (isAt(Place::snapshot, "id")) {
            return assign(snapshot_.id, UUID::parse(text));
        }
        if (isAt(Place::snapshot, "rootPath")) {
            return assign(snapshot_.rootPath, pathFromJSONText(text));
        }
        return isAt(Place::snapshot, "capturedAt")
               && assign(snapshot_.capturedAt, iso8601::parse(text));
    }

    bool takeEntryText(const std::string& text)
    {
        if (isAt(Place::entry, "relativePath")) {
            return assign(entry_.relativePath, pathFromJSONText(text));
        }
        if (isAt(Place::entry, "modifiedAt")) {
            entry_.modifiedAt = iso8601::parse(text);
            return entry_.modifiedAt.has_value();
        }
        return isAt(Place::entry, "kind") && assign(entry_.kind, fileKind(text));
    }

    bool takeIssueText(const std::string& text)
    {
        if (isAt(Place::issue, "relativePath")) {
            return assign(issue_.relativePath, pathFromJSONText(text));
        }
        return isAt(Place::issue, "reason") && assign(issue_.reason, scanIssueReason(text));
    }

    template <typename T>
    static bool assign(T& to, std::optional<T> value)
    {
        if (value) {
            to = std::move(*value);
        }
        return value.has_value();
    }

    const IsWanted& isWanted_;
    const OnSnapshot& onSnapshot_;
    std::vector<Level> levels_;
    std::string text_;
    std::size_t ordinal_ = 0;
    bool isBuilding_ = false;
    ScanSnapshot snapshot_;
    std::unique_ptr<SnapshotEntriesBuilder> builder_;
    EntrySizes sizes_;
    SnapshotEntry entry_;
    ScanIssue issue_;
};

}  // namespace

bool read(FileReader& file, const IsWanted& isWanted, const OnSnapshot& onSnapshot)
{
    json::basic_parser<Handler> parser(json::parse_options(), isWanted, onSnapshot);
    std::vector<char> buffer(std::size_t{1} << 18);
    json::error_code error;
    for (;;) {
        const std::size_t count = file.read(buffer.data(), buffer.size());
        const bool isMore = count > 0;
        const std::size_t taken = parser.write_some(isMore, buffer.data(), count, error);
        if (error || taken != count) {
            return false;
        }
        if (!isMore) {
            return parser.done();
        }
    }
}

}  // namespace gruk::GeneralReader
