#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "core/patrol/snapshot_entries.h"

/// What the programs of a Linux desktop leave behind and make again: their caches, the stores of
/// package managers, the results of builds. Known by name and place alone; nothing is opened.
namespace gruk::DesktopEvidence {

enum class Place : std::uint8_t {
    /// The pattern begins at the realm's root, so that it speaks when the realm is a home.
    home,
    /// The pattern is the end of a path, at any depth.
    anywhere,
};

/// What must be seen beside the name, since others use the name too.
enum class Proof : std::uint8_t {
    none,
    /// A file of one of those names in the same folder.
    beside,
    /// A file of that name in the folder itself.
    inside,
};

struct Row {
    Place place = Place::home;
    /// Components joined by "/"; "*" is any one component, of which the last may be a file.
    std::string_view pattern;
    /// Why the Gruk flagged it.
    std::string_view story;
    Proof proof = Proof::none;
    /// The names, with a blank between.
    std::string_view proofNames = {};
};

/// The whole table.
[[nodiscard]] std::span<const Row> rows();

/// An entry that a row speaks of.
struct Location {
    SnapshotEntries::Index index = 0;
    const Row* row = nullptr;

    friend bool operator==(const Location&, const Location&) = default;
};

/// The topmost of them, in the order of the entries. Folders in which programs keep their settings
/// and their data ("`.config/*`", "`.local/share/*`", …) never count as a whole, whatever is in
/// them.
[[nodiscard]] std::vector<Location> locations(const SnapshotEntries& entries);

/// The story of a place that a row spoke of: that of the first row with a name whose pattern ends
/// `path`; empty when there is none.
[[nodiscard]] std::string_view story(std::string_view path);

}  // namespace gruk::DesktopEvidence
