#include "core/patrol/snapshot_store.h"

#include <algorithm>
#include <unordered_set>

#include "core/patrol/snapshot_decoder.h"
#include "core/patrol/snapshot_encoder.h"
#include "core/patrol/store_writer.h"
#include "platform/files/damaged_file.h"
#include "platform/files/file_reader.h"
#include "platform/foundation/errors.h"

namespace gruk {

namespace {

/// Opens the file; none when there is none yet. A file that is there and cannot be opened is not
/// a store.
std::optional<FileReader> openStore(const FileURL& url)
{
    try {
        return FileReader::open(url);
    } catch (const FileError&) {
        throw SnapshotStoreError(SnapshotStoreError::Case::corruptStore);
    }
}

bool isOlder(const StoredSnapshot& a, const StoredSnapshot& b)
{
    return a.capturedAt < b.capturedAt;
}

/// The snapshots of a realm, oldest first; those of one moment in the file's order.
std::vector<StoredSnapshot> ofRealm(const std::vector<StoredSnapshot>& all,
                                    std::string_view rootPath)
{
    std::vector<StoredSnapshot> realm;
    std::copy_if(all.begin(), all.end(), std::back_inserter(realm),
                 [&](const StoredSnapshot& one) { return one.rootPath == rootPath; });
    std::stable_sort(realm.begin(), realm.end(), isOlder);
    return realm;
}

/// What a save keeps.
struct Retention {
    /// Of what is in the file, in its order.
    std::vector<StoredSnapshot> kept;
    /// False when the new one is older than the last eight of its realm.
    bool keepsNew = true;
};

Retention retain(const std::vector<StoredSnapshot>& stored, const ScanSnapshot& added)
{
    constexpr auto addedOrdinal = static_cast<std::size_t>(-1);
    std::vector<StoredSnapshot> all;
    std::copy_if(stored.begin(), stored.end(), std::back_inserter(all),
                 [&](const StoredSnapshot& one) { return one.id != added.id; });
    all.push_back({added.id, added.rootPath, added.capturedAt, addedOrdinal, 0, 0});
    const std::vector<StoredSnapshot> realm = ofRealm(all, added.rootPath);
    std::unordered_set<std::size_t> dropped;
    for (std::size_t i = 0; i + SnapshotStore::snapshotsKeptPerRealm < realm.size(); ++i) {
        dropped.insert(realm[i].ordinal);
    }
    Retention retention;
    retention.keepsNew = !dropped.contains(addedOrdinal);
    all.pop_back();
    std::copy_if(all.begin(), all.end(), std::back_inserter(retention.kept),
                 [&](const StoredSnapshot& one) { return !dropped.contains(one.ordinal); });
    return retention;
}

}  // namespace

const char* SnapshotStoreError::what() const noexcept
{
    switch (which_) {
    case Case::incompleteSnapshot:
        return "The patrol did not reach its end, so its snapshot was not saved.";
    case Case::corruptStore:
        break;
    }
    return "The file of past patrols, snapshots.json, is damaged. It was left as it is; move it "
           "away, and the next patrol begins a new one.";
}

SnapshotStore::SnapshotStore(FileURL fileURL, FileCalls calls)
    : fileURL_(std::move(fileURL)), calls_(std::move(calls))
{
}

void SnapshotStore::save(const ScanSnapshot& snapshot)
{
    if (!snapshot.isComplete) {
        throw SnapshotStoreError(SnapshotStoreError::Case::incompleteSnapshot);
    }
    const std::lock_guard lock(lock_);
    std::optional<FileReader> old = openStore(fileURL_);
    const StoreContents contents = old ? contentsOf(*old) : StoreContents();
    const Retention retention = retain(contents.snapshots, snapshot);
    AtomicFile file(fileURL_, calls_);
    StoreWriter writer(file);
    if (old) {
        writer.keep(*old, contents, retention.kept);
    }
    if (retention.keepsNew) {
        writer.add(snapshot);
    }
    writer.finish();
    file.commit();
}

/// What is in the file. A save follows its patrol's first look at the store, and checking a large
/// store again takes as long as copying it; so what was found holds as long as the file is the
/// same and untouched. A file written to within the last moments is not trusted to be untouched:
/// the file system's clock may be too coarse to tell one write from the next.
StoreContents SnapshotStore::contentsOf(FileReader& file) const
{
    constexpr std::int64_t clockDoubt = 2'000'000'000;
    FileStamp stamp;
    try {
        stamp = file.stamp();
    } catch (const FileError&) {
        throw SnapshotStoreError(SnapshotStoreError::Case::corruptStore);
    }
    if (checked_ && checked_->stamp == stamp) {
        return checked_->contents;
    }
    checked_.reset();
    StoreContents contents = SnapshotDecoder::check(file);
    const auto now = static_cast<std::int64_t>(Date::now().secondsSince1970 * 1e9);
    if (now - stamp.modified > clockDoubt) {
        checked_ = Checked{stamp, contents};
    }
    return contents;
}

std::vector<ScanSnapshot> SnapshotStore::snapshots(std::string_view rootPath) const
{
    return latestSnapshots(rootPath, static_cast<std::size_t>(-1));
}

std::vector<ScanSnapshot> SnapshotStore::latestSnapshots(std::string_view rootPath,
                                                         std::size_t count) const
{
    const std::lock_guard lock(lock_);
    std::optional<FileReader> file = openStore(fileURL_);
    std::vector<ScanSnapshot> result;
    if (!file) {
        return result;
    }
    const StoreContents contents = contentsOf(*file);
    std::vector<StoredSnapshot> wanted = ofRealm(contents.snapshots, rootPath);
    if (wanted.size() > count) {
        wanted.erase(wanted.begin(), wanted.end() - static_cast<std::ptrdiff_t>(count));
    }
    std::sort(wanted.begin(), wanted.end(), [](const StoredSnapshot& a, const StoredSnapshot& b) {
        return a.ordinal < b.ordinal;
    });
    SnapshotDecoder::build(*file, contents, wanted,
                           [&](ScanSnapshot&& snapshot) { result.push_back(std::move(snapshot)); });
    std::stable_sort(
        result.begin(), result.end(),
        [](const ScanSnapshot& a, const ScanSnapshot& b) { return a.capturedAt < b.capturedAt; });
    return result;
}

std::map<std::string, Date, std::less<>> SnapshotStore::lastCaptures() const
{
    const std::lock_guard lock(lock_);
    std::map<std::string, Date, std::less<>> dates;
    std::optional<FileReader> file = openStore(fileURL_);
    if (!file) {
        return dates;
    }
    for (const StoredSnapshot& snapshot : contentsOf(*file).snapshots) {
        const auto [last, isNew] = dates.emplace(snapshot.rootPath, snapshot.capturedAt);
        if (!isNew) {
            last->second = std::max(last->second, snapshot.capturedAt);
        }
    }
    return dates;
}

StoreShares SnapshotStore::shares() const
{
    const std::lock_guard lock(lock_);
    StoreShares shares;
    std::optional<FileReader> file = openStore(fileURL_);
    if (!file) {
        return shares;
    }
    const StoreContents contents = contentsOf(*file);
    shares.fileBytes = static_cast<std::uint64_t>(file->stamp().size);
    for (const StoredSnapshot& snapshot : contents.snapshots) {
        StoreShares::OfRealm& share = shares.realms[snapshot.rootPath];
        ++share.snapshots;
        share.bytes += snapshot.end - snapshot.begin;
    }
    if (!contents.isCanonical) {
        // Where each stands is not known; what it takes as Gruk writes it is near enough.
        SnapshotDecoder::build(*file, contents, contents.snapshots, [&](ScanSnapshot&& snapshot) {
            std::uint64_t& bytes = shares.realms[snapshot.rootPath].bytes;
            SnapshotEncoder::encode(snapshot, [&](std::string_view text) { bytes += text.size(); });
        });
    }
    return shares;
}

void SnapshotStore::forget(std::string_view rootPath, const std::stop_token& stop)
{
    const std::lock_guard lock(lock_);
    std::optional<FileReader> old = openStore(fileURL_);
    const StoreContents contents = old ? contentsOf(*old) : StoreContents();
    std::vector<StoredSnapshot> kept;
    std::copy_if(contents.snapshots.begin(), contents.snapshots.end(), std::back_inserter(kept),
                 [&](const StoredSnapshot& one) { return one.rootPath != rootPath; });
    if (kept.size() == contents.snapshots.size()) {
        return;
    }
    AtomicFile file(fileURL_, calls_);
    StoreWriter writer(file);
    writer.keep(*old, contents, kept);
    writer.finish();
    if (stop.stop_requested()) {
        throw CancelledError();
    }
    file.commit();
}

std::vector<UUID> SnapshotStore::move(std::string_view from, std::string_view to)
{
    return moveIf(from, to, [](const StoredSnapshot&) { return true; });
}

void SnapshotStore::moveBack(const std::vector<UUID>& ids, std::string_view from,
                             std::string_view to)
{
    moveIf(from, to, [&](const StoredSnapshot& one) {
        return std::find(ids.begin(), ids.end(), one.id) != ids.end();
    });
}

std::vector<UUID> SnapshotStore::moveIf(std::string_view from, std::string_view to,
                                        FunctionRef<bool(const StoredSnapshot&)> isMeant)
{
    const std::lock_guard lock(lock_);
    std::optional<FileReader> old = openStore(fileURL_);
    const StoreContents contents = old ? contentsOf(*old) : StoreContents();
    std::vector<UUID> moved;
    const auto newRoot = [&](const StoredSnapshot& one) -> std::optional<std::string> {
        const bool moves = one.rootPath == from && isMeant(one);
        return moves ? std::optional(std::string(to)) : std::nullopt;
    };
    for (const StoredSnapshot& one : contents.snapshots) {
        if (newRoot(one)) {
            moved.push_back(one.id);
        }
    }
    if (moved.empty() || from == to) {
        return moved;
    }
    AtomicFile file(fileURL_, calls_);
    StoreWriter writer(file);
    writer.keep(*old, contents, contents.snapshots, newRoot);
    writer.finish();
    file.commit();
    return moved;
}

std::optional<FileURL> SnapshotStore::setAside()
{
    const std::lock_guard lock(lock_);
    try {
        if (std::optional<FileReader> file = openStore(fileURL_)) {
            static_cast<void>(contentsOf(*file));
        }
        return std::nullopt;
    } catch (const SnapshotStoreError&) {
        checked_.reset();
        return setDamagedFileAside(fileURL_);
    }
}

}  // namespace gruk
