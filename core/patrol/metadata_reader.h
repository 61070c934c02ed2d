#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/patrol/file_entry.h"
#include "platform/files/item_facts.h"

namespace gruk {

/// Lists one directory: takes its URL, returns one entry a child, may throw, may be called from
/// any thread.
using DirectoryReader = std::function<std::vector<FileEntry>(const FileURL&)>;

/// The single place where the system looks at the file system for facts about an item. Names,
/// sizes, dates and two attributes; contents are never opened. Without state; any thread. A dead
/// mount blocks, so on the main thread only for the folder that the user opens.
namespace MetadataReader {

/// The attributes that are read, as property lists.
inline constexpr const char* screenCaptureAttribute = "com.apple.metadata:kMDItemIsScreenCapture";
inline constexpr const char* whereFromsAttribute = "com.apple.metadata:kMDItemWhereFroms";

/// One entry a direct child, hidden ones too, in the order that the system lists them. Throws
/// `FileError` when the directory cannot be listed; a child that cannot be read takes defaults, and
/// one that is gone when it is looked at has no entry.
[[nodiscard]] std::vector<FileEntry> entries(const FileURL& directory);

/// The entry of one item. Never fails: every fact that cannot be read takes its default.
[[nodiscard]] FileEntry entry(const FileURL& url);

/// What the item's attribute says; where it says nothing, whether the name begins with
/// "Screenshot " (with the blank, case-sensitive).
[[nodiscard]] bool isScreenshot(const FileURL& url);

/// The same decision from an attribute's value that has been read already.
[[nodiscard]] bool isScreenshot(std::string_view name, const std::optional<std::string>& attribute);

/// What a file browser's system tells of an item; each may be unknown. On this system the added
/// date, the tags and the cloud status always are.
struct ResourceValues {
    bool isDirectory = false;
    bool isSymlink = false;
    std::optional<Bytes> fileSize;
    std::optional<Bytes> totalFileAllocatedSize;
    std::optional<Date> dateAdded;
    std::optional<Date> dateCreated;
    std::optional<Date> dateModified;
    std::optional<Date> dateLastOpened;
    std::vector<std::string> tags;
    /// Whether a cloud item's content is the current one; none for an item of no cloud.
    std::optional<bool> isDownloadedAndCurrent;
};

/// What the item's own record tells: identity, links and blocks.
struct LstatInfo {
    std::uint64_t inode = 0;
    std::int32_t deviceID = 0;
    Bytes allocatedSize = 0;
    std::int64_t linkCount = 1;
};

/// The values of the two attributes, where there are any.
struct Attributes {
    std::optional<std::string> screenCapture;
    std::optional<std::string> whereFroms;
};

/// Puts one entry together from what could be read of it. Pure.
[[nodiscard]] FileEntry makeEntry(const FileURL& url, const ResourceValues& values,
                                  const std::optional<LstatInfo>& lstat,
                                  const Attributes& attributes);

}  // namespace MetadataReader
}  // namespace gruk
