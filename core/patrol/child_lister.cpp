#include "core/patrol/child_lister.h"

#include <vector>

#include "platform/files/tree_reader.h"

namespace gruk {

namespace {

class LiveLister final : public ChildLister {
public:
    explicit LiveLister(const FileURL& root)
        : reader_(root, {MetadataReader::screenCaptureAttribute})
    {
    }

    void list(std::size_t depth, std::string_view name, Visitor visit) override
    {
        reader_.list(depth, name, [&](const ListedChild& child) { visit(describe(child)); });
    }

private:
    ListedItem describe(const ListedChild& child)
    {
        ListedItem item;
        item.name = child.name;
        item.isSymlink = child.isSymbolicLink;
        if (!child.facts || child.isSymbolicLink) {
            return item;
        }
        const ItemFacts& facts = *child.facts;
        item.isDirectory = facts.type == ItemType::directory;
        item.allocatedSize = item.isDirectory ? 0 : facts.allocatedSize;
        item.dateModified = facts.modified;
        item.inode = facts.inode;
        item.deviceID = facts.deviceID;
        item.linkCount = facts.linkCount;
        std::optional<std::string> attribute;
        if (child.attributes != 0) {
            attribute = reader_.attribute(child, 0);
        }
        item.kind = classify(child.name, item.isDirectory,
                             MetadataReader::isScreenshot(child.name, attribute));
        return item;
    }

    TreeReader reader_;
};

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
                   entry.kind, entry.dateModified, entry.inode, entry.deviceID, entry.linkCount});
        }
    }

private:
    const DirectoryReader& reader_;
    std::vector<FileURL> chain_;
};

}  // namespace

std::unique_ptr<ChildLister> makeLiveLister(const FileURL& root)
{
    return std::make_unique<LiveLister>(root);
}

std::unique_ptr<ChildLister> makeFunctionLister(const FileURL& root, const DirectoryReader& reader)
{
    return std::make_unique<FunctionLister>(root, reader);
}

}  // namespace gruk
