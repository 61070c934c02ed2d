#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/file_url.h"

namespace gruk {

/// The open directories from a root down to the one being read. The nearest ones are held open;
/// those farther up are closed and, when the walk comes back to them, opened again and checked to
/// be the same directory. One thread.
class DirectoryChain {
public:
    /// Opens the root, at a path of any length; throws `FileError`.
    explicit DirectoryChain(const FileURL& root);
    ~DirectoryChain();
    DirectoryChain(const DirectoryChain&) = delete;
    DirectoryChain& operator=(const DirectoryChain&) = delete;

    /// Makes the directory `name` in the directory at `depth` - 1 the last one (for `depth` 0, the
    /// root) and returns its descriptor, which the chain keeps. Throws `FileError`.
    int open(std::size_t depth, std::string_view name);

    /// The path from the root to the last one, for errors.
    [[nodiscard]] std::string relativePath() const;

private:
    struct Level {
        std::string name;
        int descriptor = -1;
        std::uint64_t device = 0;
        std::uint64_t inode = 0;
    };

    /// How many directories below the root stay open.
    static constexpr std::size_t heldOpen = 64;

    void truncate(std::size_t depth);
    void release(Level& level);
    int descriptorAt(std::size_t depth);
    [[noreturn]] void fail(int error, std::string_view name) const;

    std::string rootPath_;
    std::vector<Level> levels_;
};

}  // namespace gruk
