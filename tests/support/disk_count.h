#pragma once

#include <cstdint>
#include <string>

namespace gruk::test {

/// Counts what the files of a folder take on the disk, at any depth, without the code under test:
/// what several names share counts once, folders themselves count nothing.
[[nodiscard]] std::int64_t allocatedBytes(const std::string& folder);

/// How many files there are in a folder, at any depth.
[[nodiscard]] int fileCount(const std::string& folder);

}  // namespace gruk::test
