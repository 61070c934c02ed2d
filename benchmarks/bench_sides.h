#pragma once

#include <span>
#include <string>

#include "benchmarks/bench_process.h"

namespace gruk::benchmarks {

/// The folder of stores that the sides share, by the names of the files in it.
namespace stores {
/// One snapshot of the realm.
inline constexpr const char* one = "/one.json";
/// Eight of the realm and eight of another.
inline constexpr const char* deep = "/deep.json";
/// What a patrol works on; put there before each.
inline constexpr const char* worked = "/patrol.json";
}  // namespace stores

/// Runs one side in this process. `arguments` begin with its name:
///
///     prepare DIR FOLDER   makes the stores of DIR in FOLDER
///     floor DIR            the bare walk; tells "items" too
///     attribute-floor DIR  the bare walk that asks for attributes, too
///     scan DIR             a scan as a patrol does it, its ordering included
///     order DIR            the ordering alone, of entries that a walk has just added
///     patrol DIR STORE     a whole patrol; tells "peak_bytes" and "entries" too
///     decode DIR STORE     reads and builds every snapshot of the realm
///     read STORE           reads the file into one buffer
///     encode STORE OUT     encodes the snapshot of the store and writes it to OUT
///     write STORE OUT      writes the bytes of the store to OUT from memory
///     copy STORE OUT       copies the 15 snapshots that a save keeps of the deep store
///     history DIR STORE    loads the history of the realm
///     pass STORE           checks every byte of the store and builds nothing
///
/// Returns its figures, "seconds" above all. Throws when something fails or there is no such side.
[[nodiscard]] Figures measureSide(std::span<const std::string> arguments);

}  // namespace gruk::benchmarks
