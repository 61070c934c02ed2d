#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/patrol/metadata_reader.h"
#include "platform/foundation/file_url.h"

namespace gruk::test {

/// A tree in memory that serves listings to a walk, in the order in which its items were added,
/// and records what was listed. Its root is a directory that exists, since a walk asks the system
/// for the root's device; every item is on that device unless the test says otherwise.
///
/// Must outlive its `reader()`. One thread.
class FakeTree {
public:
    explicit FakeTree(FileURL root);

    [[nodiscard]] const FileURL& root() const { return root_; }
    /// The device of the root, and one that is not.
    [[nodiscard]] std::int32_t device() const { return device_; }
    [[nodiscard]] std::int32_t otherDevice() const { return device_ + 1; }

    /// Adds an item, and the directories above it that are missing; returns its entry, which the
    /// test may change in any way until the walk.
    FileEntry& directory(std::string_view relativePath);
    FileEntry& file(std::string_view relativePath, Bytes allocatedSize = 0);
    FileEntry& symbolicLink(std::string_view relativePath);

    /// Called at each listing of that directory (empty for the root) before anything is served;
    /// what it throws is what the listing throws.
    void onListing(std::string_view relativePath, std::function<void()> hook);

    /// Serves the listings. A directory that was never added throws "no such item".
    [[nodiscard]] DirectoryReader reader();

    /// The relative paths of the directories listed so far, in order; empty for the root.
    [[nodiscard]] const std::vector<std::string>& listed() const { return listed_; }

private:
    struct Folder {
        /// Names are added once; entries stay where they are.
        std::vector<std::string> order;
        std::function<void()> hook;
    };

    FileEntry& add(std::string_view relativePath);
    std::vector<FileEntry> list(const FileURL& url);

    FileURL root_;
    std::int32_t device_;
    std::uint64_t nextInode_ = 100;
    std::map<std::string, Folder, std::less<>> folders_;
    std::map<std::string, FileEntry, std::less<>> entries_;
    std::vector<std::string> listed_;
};

}  // namespace gruk::test
