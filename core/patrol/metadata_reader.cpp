#include "core/patrol/metadata_reader.h"

#include <cstddef>
#include <utility>

#include "platform/files/metadata.h"
#include "platform/files/property_list.h"
#include "platform/files/whole_directory.h"
#include "platform/foundation/errors.h"

namespace gruk::MetadataReader {

namespace {

constexpr Bytes sparseFloor = 65'536;
constexpr Bytes evictedCeiling = 4'095;
constexpr std::string_view screenshotPrefix = "Screenshot ";
/// So do some tools here begin the names of their pictures; others begin other names so.
constexpr std::string_view screenshotPicturePrefix = "Screenshot_";

/// What could be found out about an item.
struct Sight {
    std::optional<ItemFacts> facts;
    bool hasVanished = false;
};

Sight sightOf(const FileURL& url)
{
    try {
        return {itemFacts(url)};
    } catch (const FileError& error) {
        return {std::nullopt, meaning(error) == ErrorMeaning::noSuchItem};
    }
}

/// What this system tells of an item, in the two forms that an entry is made of.
FileEntry entryFrom(const FileURL& url, bool isSymbolicLink, const Sight& sight,
                    const Attributes& attributes)
{
    const std::optional<ItemFacts>& facts = sight.facts;
    ResourceValues values;
    values.isSymlink = isSymbolicLink;
    std::optional<LstatInfo> lstat;
    if (facts) {
        values.isDirectory = facts->type == ItemType::directory;
        values.fileSize = facts->logicalSize;
        values.totalFileAllocatedSize = facts->allocatedSize;
        values.dateCreated = facts->created;
        values.dateModified = facts->modified;
        values.dateLastOpened = facts->accessed;
        lstat = LstatInfo{facts->inode, facts->deviceID, facts->allocatedSize, facts->linkCount};
    }
    FileEntry entry = makeEntry(url, values, lstat, attributes);
    entry.isUnreadable = !facts && !sight.hasVanished;
    return entry;
}

/// None when the child is gone.
std::optional<FileEntry> listedEntry(const FileURL& directory, const ListedChild& child,
                                     AttributeValue value)
{
    Attributes attributes;
    if ((child.attributes & 1U) != 0) {
        attributes.screenCapture = value(0);
    }
    if ((child.attributes & 2U) != 0) {
        attributes.whereFroms = value(1);
    }
    const bool isDirectory = child.facts && child.facts->type == ItemType::directory;
    const FileURL url = directory.appending(child.name, isDirectory ? FileURL::Names::directory
                                                                    : FileURL::Names::item);
    // The listing may tell of a link without its facts; an entry has them.
    const Sight sight =
        child.isSymbolicLink && !child.facts ? sightOf(url) : Sight{child.facts, child.hasVanished};
    return sight.hasVanished
               ? std::nullopt
               : std::optional(entryFrom(url, child.isSymbolicLink, sight, attributes));
}

}  // namespace

std::vector<FileEntry> entries(const FileURL& directory)
{
    std::vector<FileEntry> result;
    // Children are described by several threads; a byte each, which no two of them share.
    std::vector<char> hasVanished;
    const auto begin = [&](std::size_t count) {
        result.resize(count);
        hasVanished.resize(count);
    };
    const auto visit = [&](std::size_t number, const ListedChild& child, AttributeValue value) {
        if (std::optional<FileEntry> entry = listedEntry(directory, child, value)) {
            result[number] = *std::move(entry);
        } else {
            hasVanished[number] = 1;
        }
    };
    readWholeDirectory(directory, {screenCaptureAttribute, whereFromsAttribute}, {begin, visit});
    std::size_t kept = 0;
    for (std::size_t number = 0; number < result.size(); ++number) {
        if (hasVanished[number] == 0 && kept++ != number) {
            result[kept - 1] = std::move(result[number]);
        }
    }
    result.resize(kept);
    return result;
}

FileEntry entry(const FileURL& url)
{
    const Sight sight = sightOf(url);
    const bool isLink = sight.facts && sight.facts->type == ItemType::symbolicLink;
    return entryFrom(url, isLink, sight,
                     {extendedAttribute(url, screenCaptureAttribute),
                      extendedAttribute(url, whereFromsAttribute)});
}

bool isScreenshot(const FileURL& url)
{
    return isScreenshot(url.lastPathComponent(), extendedAttribute(url, screenCaptureAttribute));
}

bool isScreenshot(std::string_view name, const std::optional<std::string>& attribute)
{
    if (attribute) {
        if (const auto answer = propertyListBoolean(*attribute)) {
            return *answer;
        }
    }
    return name.starts_with(screenshotPrefix)
           || (name.starts_with(screenshotPicturePrefix)
               && classify(name, false, false) == FileKind::image);
}

FileEntry makeEntry(const FileURL& url, const ResourceValues& values,
                    const std::optional<LstatInfo>& lstat, const Attributes& attributes)
{
    FileEntry entry;
    entry.id = url;
    entry.isDirectory = values.isDirectory;
    entry.isSymlink = values.isSymlink;
    entry.logicalSize = values.fileSize.value_or(0);
    const LstatInfo info = lstat.value_or(LstatInfo{});
    entry.inode = info.inode;
    entry.deviceID = info.deviceID;
    entry.linkCount = info.linkCount;
    entry.allocatedSize =
        values.isDirectory ? 0 : values.totalFileAllocatedSize.value_or(info.allocatedSize);
    entry.kind = classify(entry.name(), entry.isDirectory,
                          isScreenshot(entry.name(), attributes.screenCapture));
    if (!entry.isDirectory && entry.logicalSize > sparseFloor
        && entry.allocatedSize < entry.logicalSize / 2) {
        entry.badges.insert(FileBadge::sparse);
    }
    if (values.isDownloadedAndCurrent == false && entry.logicalSize >= 1
        && entry.allocatedSize <= evictedCeiling) {
        entry.badges.insert(FileBadge::evicted);
    }
    entry.dateAdded = values.dateAdded;
    entry.dateCreated = values.dateCreated;
    entry.dateModified = values.dateModified;
    entry.dateLastOpened = values.dateLastOpened;
    if (attributes.whereFroms) {
        const auto origins = propertyListTexts(*attributes.whereFroms);
        if (origins && !origins->empty()) {
            entry.whereFrom = origins->front();
        }
    }
    entry.tags = values.tags;
    return entry;
}

}  // namespace gruk::MetadataReader
