#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "core/patrol/file_kind.h"
#include "core/patrol/metadata_reader.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// One child of a directory, as much of it as a walk needs. Valid only while it is visited.
struct ListedItem {
    std::string_view name;
    bool isDirectory = false;
    bool isSymlink = false;
    /// Bytes on disk; 0 for a directory.
    Bytes allocatedSize = 0;
    /// The length of the content of a file.
    Bytes logicalSize = 0;
    FileKind kind = FileKind::other;
    std::optional<Date> dateModified;
    std::uint64_t inode = 0;
    /// 0 when the metadata could not be read.
    std::int32_t deviceID = 0;
    std::int64_t linkCount = 1;
    /// The number of the volume that it lies on, mostly its device; see `ListedChild`.
    std::int32_t volumeID = 0;
    /// Whether it was gone when it was looked at: nothing else is known of it.
    bool hasVanished = false;
};

/// What a walk reads directories with: depth first, each inside the one listed one level above.
class ChildLister {
public:
    using Visitor = FunctionRef<void(const ListedItem&)>;

    virtual ~ChildLister() = default;

    /// Hands the children of a directory to `visit`: of the root at `depth` 0, else of `name` in
    /// the directory last listed at `depth` - 1. Throws what the listing throws.
    virtual void list(std::size_t depth, std::string_view name, Visitor visit) = 0;
};

/// How much of each child is asked for. Kinds cost a look at its attributes.
enum class ListedDetail { sizes, sizesAndKinds };

/// Reads the live file system through open directories, with the facts that `MetadataReader`
/// would give; with `sizes` alone, `kind` stays `other`. Opens `root` when it is listed first.
[[nodiscard]] std::unique_ptr<ChildLister>
makeLiveLister(const FileURL& root, ListedDetail detail = ListedDetail::sizesAndKinds);

/// Reads through a function, by URL. `reader` must outlive it.
[[nodiscard]] std::unique_ptr<ChildLister> makeFunctionLister(const FileURL& root,
                                                              const DirectoryReader& reader);

}  // namespace gruk
