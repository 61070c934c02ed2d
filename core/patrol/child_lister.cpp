#include "core/patrol/child_lister.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/tree_reader.h"

namespace gruk {

namespace {

class LiveLister final : public ChildLister {
public:
    LiveLister(FileURL root, ListedDetail detail) : root_(std::move(root)), detail_(detail) {}

    void list(std::size_t depth, std::string_view name, Visitor visit) override
    {
        if (!reader_) {
            reader_.emplace(root_,
                            detail_ == ListedDetail::sizesAndKinds
                                ? std::vector<std::string>{MetadataReader::screenCaptureAttribute}
                                : std::vector<std::string>());
        }
        reader_->list(depth, name, [&](const ListedChild& child) { visit(describe(child)); });
    }

private:
    ListedItem describe(const ListedChild& child)
    {
        ListedItem item;
        item.name = child.name;
        item.isSymlink = child.isSymbolicLink;
        item.volumeID = child.volumeID;
        item.hasVanished = child.hasVanished;
        if (!child.facts || child.isSymbolicLink) {
            return item;
        }
        const ItemFacts& facts = *child.facts;
        item.isDirectory = facts.type == ItemType::directory;
        item.allocatedSize = item.isDirectory ? 0 : facts.allocatedSize;
        item.logicalSize = facts.logicalSize;
        item.dateModified = facts.modified;
        item.inode = facts.inode;
        item.deviceID = facts.deviceID;
        item.linkCount = facts.linkCount;
        if (detail_ == ListedDetail::sizesAndKinds) {
            item.kind = kindOf(child, item.isDirectory);
        }
        return item;
    }

    FileKind kindOf(const ListedChild& child, bool isDirectory)
    {
        std::optional<std::string> attribute;
        if (child.attributes != 0) {
            attribute = reader_->attribute(child, 0);
        }
        return classify(child.name, isDirectory,
                        MetadataReader::isScreenshot(child.name, attribute));
    }

    FileURL root_;
    ListedDetail detail_;
    std::optional<TreeReader> reader_;
};

/// Whether there was nothing to be found out about an item, although nothing was refused.
bool isNoMore(const FileEntry& entry)
{
    return entry.deviceID == 0 && entry.inode == 0 && !entry.isUnreadable;
}

class FunctionLister final : public ChildLister {
public:
    FunctionLister(const FileURL& root, const DirectoryReader& reader)
        : reader_(reader), chain_{root}
    {
    }

    void list(std::size_t depth, std::string_view name, Visitor visit) override
    {
        if (depth > 0) {
            chain_.resize(depth);
            chain_.push_back(chain_.back().appending(name, FileURL::Names::directory));
        }
        for (const FileEntry& entry : reader_(chain_.back())) {
            visit({entry.name(), entry.isDirectory, entry.isSymlink, entry.allocatedSize,
                   entry.logicalSize, entry.kind, entry.dateModified, entry.inode, entry.deviceID,
                   entry.linkCount, entry.deviceID, isNoMore(entry)});
        }
    }

private:
    const DirectoryReader& reader_;
    std::vector<FileURL> chain_;
};

}  // namespace

std::unique_ptr<ChildLister> makeLiveLister(const FileURL& root, ListedDetail detail)
{
    return std::make_unique<LiveLister>(root, detail);
}

std::unique_ptr<ChildLister> makeFunctionLister(const FileURL& root, const DirectoryReader& reader)
{
    return std::make_unique<FunctionLister>(root, reader);
}

}  // namespace gruk
