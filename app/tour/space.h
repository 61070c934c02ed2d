#pragma once

#include <cstdint>
#include <filesystem>

namespace gruk::tour {

/// Makes (or replaces) a file of `length` bytes of nothing that takes about `allocated` bytes on
/// the disk, without writing them. Where the file system cannot reserve space it stays sparse.
/// Throws `std::filesystem::filesystem_error` when the file cannot be made.
void makeFileOfSize(const std::filesystem::path& at, std::uint64_t length, std::uint64_t allocated);

}  // namespace gruk::tour
