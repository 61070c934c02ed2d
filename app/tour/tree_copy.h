#pragma once

#include <cstdint>
#include <filesystem>

namespace gruk::tour {

/// What became of a copy.
struct TreeCopy {
    std::int64_t copied = 0;
    /// What could not be read or made.
    std::int64_t skipped = 0;
    /// Whether every file takes the space that its original takes; else the larger ones are
    /// sparse.
    bool hasSpaceOfOriginal = true;
};

/// Copies a tree's names, kinds, sizes and dates, and none of its contents: files come out empty
/// of data but of the same length and, within a quarter of the free space, of the same space on
/// the disk. Hard links stay such, links keep their text, other things are left out. The original
/// is only listed and never opened for its contents.
[[nodiscard]] TreeCopy copyTree(const std::filesystem::path& from, const std::filesystem::path& to);

/// Changes a copy as a few days would: something new, something twice its size, something gone.
void changeCopy(const std::filesystem::path& root);

}  // namespace gruk::tour
