#pragma once

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/repository/source_file.h"

namespace gruk::repository {

/// One place where a source breaks a wall of the house (docs/architecture.md).
struct Breach {
    std::string path;
    /// Counted from 1.
    std::size_t line = 0;
    /// The wall, as a sentence, with what was found.
    std::string message;

    friend bool operator==(const Breach&, const Breach&) = default;
};

/// Longer sources are to be split by concept.
inline constexpr std::size_t longestSource = 600;

/// Every breach in `files`, in their order. `widgetHeaders` are the names of the headers of the
/// toolkit's widget module, without its folder.
[[nodiscard]] std::vector<Breach> breaches(const std::vector<SourceFile>& files,
                                           const std::set<std::string>& widgetHeaders);

/// The names of the headers in a folder of the toolkit.
[[nodiscard]] std::set<std::string> headerNames(const std::filesystem::path& folder);

}  // namespace gruk::repository
