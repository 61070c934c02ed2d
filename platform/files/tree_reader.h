#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/item_facts.h"
#include "platform/foundation/file_url.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// One child of a listed directory. Valid only while the visitor runs.
struct ListedChild {
    /// The bytes of its name.
    std::string_view name;
    /// None when the metadata could not be read: it vanished after the listing, or access was
    /// refused. A symbolic link has none either when the directory itself told that it is one.
    std::optional<ItemFacts> facts;
    /// The number of the volume that it lies on, which is that of the root's device when it is the
    /// root's. Mostly the item's own device; an overlay of several disks is one volume, although
    /// its files tell the devices of their layers. 0 without facts.
    std::int32_t volumeID = 0;
    /// Whether it was gone when it was looked at.
    bool hasVanished = false;
    bool isSymbolicLink = false;
    /// Bit i is set when the item carries the i-th attribute asked for.
    std::uint32_t attributes = 0;
};

/// Reads the directories of one tree, depth first, in the order the caller chooses.
///
/// Every directory is opened relative to its parent, as a directory and never through a link, so
/// that depth and bytes do not matter and a swapped link leads nowhere. Children are described by
/// one metadata call each, relative to the open directory; nothing but directories is opened.
/// A bounded number of directories is held open (parents are reopened, and checked to be the same
/// directory, when the walk comes back to them).
///
/// Not a walk of its own: the caller keeps the stack and decides what to enter. One thread at a
/// time. The tree may change while it is read.
class TreeReader {
public:
    using Visitor = FunctionRef<void(const ListedChild&)>;

    /// How attributes are asked for. `best` tries in order of speed: relative to the directory,
    /// by a working directory of the thread's own, by an absolute path through the open
    /// directory. The others are for tests.
    enum class AttributeAccess { best, workingDirectory, descriptorPath };

    /// Opens the directory `root`; throws `FileError`. `root` itself may be a link to a
    /// directory. At most 32 `attributeNames`; with none, attributes cost nothing.
    explicit TreeReader(const FileURL& root, std::vector<std::string> attributeNames = {},
                        AttributeAccess access = AttributeAccess::best);
    ~TreeReader();
    TreeReader(const TreeReader&) = delete;
    TreeReader& operator=(const TreeReader&) = delete;

    /// Hands every child of a directory to `visit`, in the system's order, without "." and "..".
    ///
    /// `depth` 0 is the root (`name` is not used). Depth d is the directory `name` inside the
    /// directory last listed at depth d - 1, which must have been listed and is still the parent.
    /// Throws `FileError` when it cannot be opened or read to its end, before or in the middle of
    /// the visits.
    void list(std::size_t depth, std::string_view name, Visitor visit);

    /// The value of the i-th attribute of the child being visited; call it only from the visitor.
    /// None when it cannot be read.
    [[nodiscard]] std::optional<std::string> attribute(const ListedChild& child, std::size_t index);

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace gruk
