#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/move_batch.h"
#include "platform/files/move_conditions.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/directory_sizes.h"

namespace gruk {

/// The open folders of one Trash; borrowed.
struct OpenTrash {
    const Descriptor& base;
    const Descriptor& files;
    const Descriptor& info;
};

/// An info file that stands in a Trash before its item comes.
struct PreparedInfo {
    /// The path of the item as the info file says it.
    std::string infoPath;
    /// The name that the item is to have in the Trash.
    std::string name;
    /// What the info file says.
    std::string text;
    PlaceFacts written;
};

/// What a batch has noted down and does at its end.
class MoveBatch::Records {
public:
    explicit Records(MoveCalls calls);

    [[nodiscard]] const MoveCalls& calls() const { return calls_; }

    /// See `MoveBatch`.
    void stayIn(const FileURL& root, const std::function<bool()>& isMeant);
    void requireRoot() const;
    /// Throws `FileError` with `operation` unless `opened`, which was found at `place`, is the
    /// directory that the batch stays in; if it stays in none there, nothing is asked.
    void requireRoot(const Descriptor& opened, const FileURL& place, const char* operation) const;

    /// Names in the open `directory` have changed.
    void noteNames(int directory);
    /// An item has come under `name`, with an info file of that text.
    void noteItemCame(const OpenTrash& trash, const std::string& name, std::string infoText);
    /// The folder `name` has come; its info file was written at that moment.
    void noteFolderCame(const OpenTrash& trash, const std::string& name, std::int64_t written);
    /// The item `name` has left; `info` is what its info file was.
    void noteItemLeft(const OpenTrash& trash, const std::string& name, const PlaceFacts& info);

    /// Keeps an info file for the item at `itemPath`, which is still to come; one that nobody takes
    /// is removed at the end.
    void keepPrepared(const OpenTrash& trash, const std::string& itemPath, PreparedInfo prepared);
    /// The one for that item in that Trash; none when there is none that fits.
    [[nodiscard]] std::optional<PreparedInfo>
    takePrepared(const OpenTrash& trash, const std::string& itemPath, const std::string& infoPath);

    /// Makes the names that changed so far durable now.
    void synchronizeNames();
    /// Throws nothing.
    void finish();

private:
    /// Which directory it is, whatever its path.
    struct Key {
        std::int32_t device = 0;
        std::uint64_t inode = 0;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct Names {
        Key key;
        Descriptor directory;
    };
    /// The directory that the batch stays in.
    struct Root {
        FileURL place;
        /// Held, so that no other directory gets its number. Closed where it could not be looked
        /// at, with the positive error number.
        Descriptor directory;
        int error = 0;
        PlaceFacts facts;
    };
    struct CameItem {
        std::string name;
        ItemIdentity identity;
        std::string infoText;
    };
    struct LeftItem {
        std::string name;
        PlaceFacts info;
    };
    /// One Trash with what happened in it.
    struct Trash {
        Key key;
        Descriptor base;
        Descriptor files;
        Descriptor info;
        /// By the path of the item as the caller has it.
        std::map<std::string, PreparedInfo> prepared;
        std::vector<CameItem> came;
        std::vector<LeftItem> left;
        std::vector<SizeNote> sizes;
    };

    [[nodiscard]] std::optional<Key> keyOf(int directory) const;
    [[nodiscard]] Trash* trashOf(const OpenTrash& trash);
    [[nodiscard]] bool wroteAnew(const Trash& trash, const CameItem& item) const;
    void tidyUp(Trash& trash);

    MoveCalls calls_;
    std::optional<Root> root_;
    std::vector<Names> names_;
    std::vector<Trash> trashes_;
};

/// The batch that a move belongs to, or one of its own that ends with it.
class BatchOrOwn {
public:
    BatchOrOwn(MoveBatch* batch, const MoveCalls& calls)
        : own_(batch == nullptr ? std::make_unique<MoveBatch>(calls) : nullptr),
          batch_(batch == nullptr ? *own_ : *batch)
    {
    }

    [[nodiscard]] MoveBatch::Records& records() const { return batch_.records(); }

private:
    std::unique_ptr<MoveBatch> own_;
    MoveBatch& batch_;
};

}  // namespace gruk
