#pragma once

/// The names of the files in which Gruk keeps, inside a realm, what it moved there. Whoever reads a
/// realm knows by them what is Gruk's own.
namespace gruk::JournalNames {

inline constexpr const char* organise = ".gruk-organise.json";
inline constexpr const char* stash = ".gruk-stash.json";

}  // namespace gruk::JournalNames
