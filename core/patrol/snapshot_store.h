#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/scan_snapshot.h"
#include "core/patrol/stored_snapshot.h"
#include "platform/files/atomic_file.h"
#include "platform/files/file_reader.h"
#include "platform/foundation/date.h"
#include "platform/foundation/file_url.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// Why the store refused.
class SnapshotStoreError : public std::exception {
public:
    enum class Case : std::uint8_t {
        /// An attempt to save a snapshot of a walk that did not finish.
        incompleteSnapshot,
        /// The file exists and is not a version-1 store.
        corruptStore,
    };

    explicit SnapshotStoreError(Case which) : which_(which) {}
    [[nodiscard]] Case which() const noexcept { return which_; }
    [[nodiscard]] const char* what() const noexcept override;

    friend bool operator==(const SnapshotStoreError& a, const SnapshotStoreError& b)
    {
        return a.which_ == b.which_;
    }

private:
    Case which_;
};

/// What a store takes on the disk. A plain value.
struct StoreShares {
    struct OfRealm {
        std::size_t snapshots = 0;
        std::uint64_t bytes = 0;

        friend bool operator==(const OfRealm&, const OfRealm&) = default;
    };

    std::uint64_t fileBytes = 0;
    /// By the realms' paths.
    std::map<std::string, OfRealm, std::less<>> realms;

    friend bool operator==(const StoreShares&, const StoreShares&) = default;
};

/// Keeps the last 8 snapshots of every realm in one JSON file (docs/formats.md).
///
/// Every call checks the whole file, unless it was checked before and has not been touched since,
/// and every save writes it anew, whole or not at all; what is kept passes through as the bytes
/// that it was. A file that is not a store is never overwritten: it fails every call until it is
/// taken away or set aside.
///
/// Any thread; one lock is held across the reading and writing. Nothing guards against a second
/// process. Slow for large stores: never the main thread.
class SnapshotStore {
public:
    static constexpr std::size_t snapshotsKeptPerRealm = 8;

    /// Touches no file.
    explicit SnapshotStore(FileURL fileURL, FileCalls calls = FileCalls::live());

    /// Adds the snapshot (in place of one with the same id) and drops all but the latest 8 of its
    /// realm by `capturedAt`; other realms stay as they are. Throws `SnapshotStoreError`, or
    /// `FileError` when the folder or file cannot be written; the former file then stays whole.
    void save(const ScanSnapshot& snapshot);

    /// The realm's snapshots, oldest first by `capturedAt`; those of one moment in the file's
    /// order. Paths are compared byte for byte. Throws `SnapshotStoreError::corruptStore`.
    [[nodiscard]] std::vector<ScanSnapshot> snapshots(std::string_view rootPath) const;

    /// The last `count` of them in the same order, for callers that need no more: the whole file
    /// is checked all the same, but only these are built.
    [[nodiscard]] std::vector<ScanSnapshot> latestSnapshots(std::string_view rootPath,
                                                            std::size_t count) const;

    /// When each realm was last patrolled, by its path: one look at the store for all of them, and
    /// nothing is built. Throws `SnapshotStoreError::corruptStore`.
    [[nodiscard]] std::map<std::string, Date, std::less<>> lastCaptures() const;

    /// What the file takes, and each realm of it. Throws `SnapshotStoreError::corruptStore`, or
    /// `FileError` when the file cannot be examined.
    [[nodiscard]] StoreShares shares() const;

    /// Drops every snapshot of a realm; other realms stay as they are. Whoever takes the realm back
    /// meanwhile asks for a stop, which is heard until the moment of the replacement: then nothing
    /// is changed, and `CancelledError` thrown. Otherwise throws as `save` does.
    void forget(std::string_view rootPath, const std::stop_token& stop = {});

    /// Keeps the snapshots of `from` as those of `to` from now on, beside what `to` has (more than
    /// 8 stay until the next save), and tells which they were. Throws as `save` does.
    std::vector<UUID> move(std::string_view from, std::string_view to);
    /// The same for those of them alone.
    void moveBack(const std::vector<UUID>& ids, std::string_view from, std::string_view to);

    /// Gives a damaged file another name in its folder, and tells which; none when there is no file
    /// or it is a store. Throws `FileError` when it cannot be renamed.
    std::optional<FileURL> setAside();

    /// Where the file is, or would be.
    [[nodiscard]] const FileURL& fileURL() const noexcept { return fileURL_; }

private:
    /// What a state of the file was found to hold.
    struct Checked {
        FileStamp stamp;
        StoreContents contents;
    };

    [[nodiscard]] StoreContents contentsOf(FileReader& file) const;
    std::vector<UUID> moveIf(std::string_view from, std::string_view to,
                             FunctionRef<bool(const StoredSnapshot&)> isMeant);

    FileURL fileURL_;
    FileCalls calls_;
    /// Guards the file, and `checked_`.
    mutable std::mutex lock_;
    mutable std::optional<Checked> checked_;
};

}  // namespace gruk
