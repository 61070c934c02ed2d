#pragma once

#include <vector>

#include "tests/repository/source_file.h"
#include "tests/repository/walls.h"

namespace gruk::repository {

/// Every name that a source has for itself, in an anonymous namespace, although another source of
/// its library has one like it, or a header that it could include declares one. Where the sources
/// of a library are compiled as one, the first would not compile, and the second could mean another
/// thing without a word. Aliases may stand in many sources.
[[nodiscard]] std::vector<Breach> namesThatAreTaken(const std::vector<SourceFile>& files);

}  // namespace gruk::repository
