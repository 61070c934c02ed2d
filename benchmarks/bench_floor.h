#pragma once

#include <cstdint>
#include <string>

namespace gruk::benchmarks {

/// What a bare walk asks about each item. `factsAndAttributes` adds the length of the list of its
/// attributes, for files and folders, relative to the open directory (Linux 6.13).
enum class Asking { facts, factsAndAttributes };

/// The least that a walk can do: lists every directory below `root` with `getdents64` into 64 KB
/// and asks `statx`, relative to the open directory, for every item; keeps nothing. Stays on one
/// file system, follows no link. Returns how many items there are; throws when `root` can't be
/// opened or the system can't be asked, and passes over what else can't.
[[nodiscard]] std::uint64_t bareWalk(const std::string& root, Asking asking = Asking::facts);

}  // namespace gruk::benchmarks
