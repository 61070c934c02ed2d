#pragma once

#include <cstdint>
#include <string>

namespace gruk::benchmarks {

/// The least that a walk can do: lists every directory below `root` with `getdents64` into 64 KB
/// and asks `statx`, relative to the open directory, for every item; keeps nothing. Stays on one
/// file system, follows no link. Returns how many items there are; throws when `root` can't be
/// opened, and passes over what else can't.
[[nodiscard]] std::uint64_t bareWalk(const std::string& root);

}  // namespace gruk::benchmarks
