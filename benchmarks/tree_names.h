#pragma once

#include <string>

#include "core/realm/seeded_generator.h"

namespace gruk::benchmarks {

/// The name of a folder as people and programs choose them: mixed case, digits, blanks, and in
/// about one of twelve letters of other scripts. Never empty, without "/", not unique.
[[nodiscard]] std::string folderName(SeededGenerator& generator);

/// The same for a file, mostly with an extension.
[[nodiscard]] std::string fileName(SeededGenerator& generator);

/// `name` made different by `number`, before its extension: "notes 7.txt".
[[nodiscard]] std::string numbered(const std::string& name, unsigned number);

}  // namespace gruk::benchmarks
