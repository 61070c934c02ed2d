#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/file_kind.h"
#include "platform/foundation/checked_arithmetic.h"
#include "platform/foundation/date.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// Marks on an item. `cloned`, `regenerable` and `restricted` are reserved words that nothing
/// assigns.
enum class FileBadge : std::uint8_t { sparse, cloned, evicted, regenerable, restricted };

[[nodiscard]] std::string_view rawString(FileBadge badge);
[[nodiscard]] std::optional<FileBadge> fileBadge(std::string_view rawString);

/// One item of the file system as `MetadataReader` describes it. Equal when every field is.
struct FileEntry {
    /// The item's place, which is its identity.
    FileURL id;
    bool isDirectory = false;
    bool isSymlink = false;
    /// Bytes on disk; 0 for a directory at this level.
    Bytes allocatedSize = 0;
    /// The length of the content; 0 when unknown.
    Bytes logicalSize = 0;
    FileKind kind = FileKind::other;
    std::optional<Date> dateAdded;
    std::optional<Date> dateCreated;
    std::optional<Date> dateModified;
    std::optional<Date> dateLastOpened;
    /// 0 when the metadata could not be read.
    std::uint64_t inode = 0;
    /// 0 when the metadata could not be read.
    std::int32_t deviceID = 0;
    /// 1 when the metadata could not be read.
    std::int64_t linkCount = 1;
    std::set<FileBadge> badges;
    /// The first place it was downloaded from.
    std::optional<std::string> whereFrom;
    std::vector<std::string> tags;
    /// Whether it is there although its metadata could not be read.
    bool isUnreadable = false;

    [[nodiscard]] std::string_view name() const { return id.lastPathComponent(); }

    friend bool operator==(const FileEntry&, const FileEntry&) = default;
};

}  // namespace gruk
