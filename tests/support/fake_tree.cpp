#include "tests/support/fake_tree.h"

#include <system_error>
#include <utility>

#include "platform/files/metadata.h"
#include "platform/foundation/errors.h"

namespace gruk::test {

namespace {

std::string_view parentOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

}  // namespace

FakeTree::FakeTree(FileURL root) : root_(std::move(root)), device_(itemFacts(root_).deviceID)
{
    folders_[""];
}

FileEntry& FakeTree::directory(std::string_view relativePath)
{
    FileEntry& entry = add(relativePath);
    entry.id = root_.appending(relativePath, FileURL::Names::directory);
    entry.isDirectory = true;
    entry.kind = classify(entry.name(), true, false);
    folders_[std::string(relativePath)];
    return entry;
}

FileEntry& FakeTree::file(std::string_view relativePath, Bytes allocatedSize)
{
    FileEntry& entry = add(relativePath);
    entry.allocatedSize = allocatedSize;
    entry.logicalSize = allocatedSize;
    return entry;
}

FileEntry& FakeTree::symbolicLink(std::string_view relativePath)
{
    FileEntry& entry = add(relativePath);
    entry.isSymlink = true;
    return entry;
}

void FakeTree::onListing(std::string_view relativePath, std::function<void()> hook)
{
    folders_[std::string(relativePath)].hook = std::move(hook);
}

DirectoryReader FakeTree::reader()
{
    return [this](const FileURL& url) { return list(url); };
}

FileEntry& FakeTree::add(std::string_view relativePath)
{
    const std::string_view parent = parentOf(relativePath);
    if (!folders_.contains(parent)) {
        directory(parent);
    }
    const auto [place, isNew] = entries_.try_emplace(std::string(relativePath));
    if (isNew) {
        folders_.find(parent)->second.order.emplace_back(relativePath);
    }
    FileEntry& entry = place->second;
    entry.id = root_.appending(relativePath);
    entry.kind = classify(entry.name(), false, false);
    entry.dateModified = Date{static_cast<double>(nextInode_)};
    entry.inode = nextInode_++;
    entry.deviceID = device_;
    return entry;
}

std::vector<FileEntry> FakeTree::list(const FileURL& url)
{
    const std::string relative =
        url.path() == root_.path() ? "" : url.path().substr(root_.path().size() + 1);
    listed_.push_back(relative);
    const auto folder = folders_.find(relative);
    if (folder == folders_.end()) {
        throw FileError(std::make_error_code(std::errc::no_such_file_or_directory), "list",
                        url.path());
    }
    if (folder->second.hook) {
        folder->second.hook();
    }
    std::vector<FileEntry> children;
    for (const std::string& path : folder->second.order) {
        children.push_back(entries_.at(path));
    }
    return children;
}

}  // namespace gruk::test
