#include "benchmarks/bench_sides.h"

#include <functional>
#include <stdexcept>
#include <stop_token>
#include <utility>
#include <vector>

#include "benchmarks/bench_files.h"
#include "benchmarks/bench_floor.h"
#include "core/patrol/child_lister.h"
#include "core/patrol/patrol_coordinator.h"
#include "core/patrol/realm_history.h"
#include "core/patrol/snapshot_decoder.h"
#include "core/patrol/snapshot_encoder.h"
#include "core/patrol/snapshot_entries_builder.h"
#include "core/patrol/snapshot_scanner.h"
#include "core/patrol/snapshot_store.h"
#include "core/patrol/tree_walk.h"
#include "platform/files/file_reader.h"
#include "platform/files/metadata.h"

namespace gruk::benchmarks {

namespace {

using Arguments = std::span<const std::string>;

double secondsOf(const std::function<void()>& work)
{
    const double began = monotonicSeconds();
    work();
    return monotonicSeconds() - began;
}

FileURL realmAt(const std::string& path)
{
    return FileURL::directory(path).standardized();
}

/// Snapshots of one tree as eight patrols of two realms would have left them.
Figures prepare(Arguments arguments)
{
    constexpr int hour = 3'600;
    ScanSnapshot snapshot = SnapshotScanner().scan(realmAt(arguments[0]), Date::now());
    const Date now = snapshot.capturedAt;
    const std::string realm = snapshot.rootPath;
    const auto write = [&](const std::string& path, int count, bool withOther) {
        OutputFile out(path);
        const auto sink = [&](std::string_view text) { out.write(text); };
        sink(SnapshotEncoder::storeHead);
        for (int i = 0; i < count; ++i) {
            if (i > 0) {
                sink(SnapshotEncoder::betweenSnapshots);
            }
            const bool isOther = withOther && i % 2 == 1;
            snapshot.id = UUID::random();
            snapshot.rootPath = isOther ? realm + " and another" : realm;
            snapshot.capturedAt = Date{now.secondsSince1970 - (count - i) * hour};
            SnapshotEncoder::encode(snapshot, sink);
        }
        sink(SnapshotEncoder::storeTail);
        out.close();
    };
    write(arguments[1] + stores::one, 1, false);
    write(arguments[1] + stores::deep, 16, true);
    return {};
}

Figures floor(Arguments arguments)
{
    std::uint64_t items = 0;
    const double seconds = secondsOf([&] { items = bareWalk(arguments[0]); });
    return {{"seconds", seconds}, {"items", static_cast<double>(items)}};
}

Figures attributeFloor(Arguments arguments)
{
    return {{"seconds", secondsOf([&] {
                 static_cast<void>(bareWalk(arguments[0], Asking::factsAndAttributes));
             })}};
}

/// What a walk records when it is measured without the ordering: as a patrol does, with nobody to
/// tell of its progress.
class Recorder {
public:
    struct Directory {
        SnapshotEntries::Index entry = SnapshotEntries::noIndex;
    };

    explicit Recorder(SnapshotEntriesBuilder& entries) : entries_(entries) {}

    [[nodiscard]] std::string_view name(const Directory& directory) const
    {
        return entries_.name(directory.entry);
    }
    void willVisit() {}
    void otherVolume(const Directory&, const ListedItem&) {}
    Directory directory(const Directory& parent, const ListedItem& item)
    {
        return {add(parent, item, 0)};
    }
    void file(const Directory& parent, const ListedItem& item, FileMeeting meeting)
    {
        add(parent, item, meeting == FileMeeting::first ? item.allocatedSize : 0);
    }
    void listed(const Directory&) {}
    /// A folder that cannot be listed has no children to record.
    bool absorbs(const Directory&, const std::exception&) { return true; }

private:
    SnapshotEntries::Index add(const Directory& parent, const ListedItem& item, Bytes bytes)
    {
        return entries_.add(parent.entry, item.name, bytes, item.dateModified, item.kind,
                            item.isDirectory);
    }

    SnapshotEntriesBuilder& entries_;
};

/// Walks and records what is below `root` with the scanner's own loop.
void addTree(const FileURL& root, SnapshotEntriesBuilder& entries)
{
    const auto lister = makeLiveLister(root);
    const std::stop_token never;
    Recorder recorder(entries);
    TreeWalk(*lister, itemFacts(root).deviceID, never, recorder).run();
}

/// The walk alone: ordering what it recorded has a figure of its own.
Figures scan(Arguments arguments)
{
    SnapshotEntriesBuilder builder;
    return {{"seconds", secondsOf([&] { addTree(realmAt(arguments[0]), builder); })}};
}

Figures order(Arguments arguments)
{
    SnapshotEntriesBuilder builder;
    addTree(realmAt(arguments[0]), builder);
    SnapshotEntries entries;
    return {{"seconds", secondsOf([&] { entries = builder.finish(); })}};
}

Figures patrol(Arguments arguments)
{
    SnapshotScanner scanner;
    SnapshotStore store{FileURL(arguments[1])};
    std::optional<PatrolResult> result;
    const double seconds = secondsOf([&] {
        result = PatrolCoordinator::patrol(realmAt(arguments[0]), scanner, store,
                                           [](std::int64_t, std::string_view) {});
    });
    return {{"seconds", seconds},
            {"entries", static_cast<double>(result->snapshot.entries.size())},
            {"peak_bytes", peakMemory()}};
}

Figures decode(Arguments arguments)
{
    const SnapshotStore store{FileURL(arguments[1])};
    std::vector<ScanSnapshot> snapshots;
    const double seconds =
        secondsOf([&] { snapshots = store.snapshots(realmAt(arguments[0]).path()); });
    if (snapshots.empty()) {
        throw std::runtime_error("the store has no snapshot of the realm");
    }
    return {{"seconds", seconds}};
}

Figures read(Arguments arguments)
{
    return {{"seconds", secondsOf([&] { readWhole(arguments[0]); })}};
}

Figures encode(Arguments arguments)
{
    std::optional<FileReader> file = FileReader::open(FileURL(arguments[0]));
    const StoreContents contents = SnapshotDecoder::check(file.value());
    std::vector<ScanSnapshot> snapshots;
    SnapshotDecoder::build(*file, contents, contents.snapshots, [&](ScanSnapshot&& snapshot) {
        snapshots.push_back(std::move(snapshot));
    });
    return {{"seconds", secondsOf([&] {
                 OutputFile out(arguments[1]);
                 const auto sink = [&](std::string_view text) { out.write(text); };
                 sink(SnapshotEncoder::storeHead);
                 SnapshotEncoder::encode(snapshots.front(), sink);
                 sink(SnapshotEncoder::storeTail);
                 out.close();
             })}};
}

Figures write(Arguments arguments)
{
    const Buffer buffer = readWhole(arguments[0]);
    const std::string_view bytes = buffer.text();
    return {{"seconds", secondsOf([&] {
                 OutputFile out(arguments[1]);
                 constexpr std::size_t piece = std::size_t{1} << 20;
                 for (std::size_t at = 0; at < bytes.size(); at += piece) {
                     out.write(bytes.substr(at, piece));
                 }
                 out.close();
             })}};
}

/// All but one sixteenth: the oldest snapshot of the realm is the one that a save drops.
Figures copy(Arguments arguments)
{
    return {{"seconds", secondsOf([&] { copyPart(arguments[0], arguments[1], 15, 16); })}};
}

Figures history(Arguments arguments)
{
    const SnapshotStore store{FileURL(arguments[1])};
    RealmHistory loaded;
    const double seconds = secondsOf(
        [&] { loaded = RealmHistoryLoader::load(realmAt(arguments[0]), store, Date::now()); });
    if (!loaded.previousSnapshot) {
        throw std::runtime_error("the store has no history of the realm");
    }
    return {{"seconds", seconds}};
}

Figures pass(Arguments arguments)
{
    std::size_t count = 0;
    const double seconds = secondsOf([&] {
        std::optional<FileReader> file = FileReader::open(FileURL(arguments[0]));
        count = SnapshotDecoder::check(file.value()).snapshots.size();
    });
    return {{"seconds", seconds}, {"snapshots", static_cast<double>(count)}};
}

struct Side {
    std::string_view name;
    std::size_t argumentCount;
    Figures (*measure)(Arguments);
};

constexpr Side sides[] = {
    {"prepare", 2, prepare}, {"floor", 1, floor}, {"attribute-floor", 1, attributeFloor},
    {"scan", 1, scan},       {"order", 1, order}, {"patrol", 2, patrol},
    {"decode", 2, decode},   {"read", 1, read},   {"encode", 2, encode},
    {"write", 2, write},     {"copy", 2, copy},   {"history", 2, history},
    {"pass", 1, pass},
};

}  // namespace

Figures measureSide(std::span<const std::string> arguments)
{
    for (const Side& side : sides) {
        if (!arguments.empty() && arguments[0] == side.name
            && arguments.size() == side.argumentCount + 1) {
            return side.measure(arguments.subspan(1));
        }
    }
    throw std::runtime_error("no such side");
}

}  // namespace gruk::benchmarks
