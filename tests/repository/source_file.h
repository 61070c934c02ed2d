#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace gruk::repository {

/// One `#include` line.
struct Include {
    /// What stands between the brackets or quotes.
    std::string name;
    /// Counted from 1.
    std::size_t line = 0;

    friend bool operator==(const Include&, const Include&) = default;
};

/// A source or header as the checks of the repository see it. A plain value.
struct SourceFile {
    /// From the root of the repository, with "/".
    std::string path;
    std::vector<std::string> lines;
    std::vector<Include> includes;

    [[nodiscard]] bool isHeader() const { return path.ends_with(".h"); }
    /// Whether it lies in the folder, which is given without a "/" at its end.
    [[nodiscard]] bool isIn(std::string_view folder) const;
};

/// Splits a file's text into lines and finds its includes.
[[nodiscard]] SourceFile parseSource(std::string path, std::string_view text);

/// Every `.h` and `.cpp` of the folders that hold the program, its tests and its tools, in order
/// of their paths. Throws when one cannot be read.
[[nodiscard]] std::vector<SourceFile> readSources(const std::filesystem::path& root);

}  // namespace gruk::repository
