#include "tests/repository/source_file.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace gruk::repository {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 6> sourceFolders = {"platform", "core",       "app",
                                                      "tests",    "benchmarks", "fuzz"};

/// Takes `word` and the blanks before it from the front of `text`.
bool consume(std::string_view& text, std::string_view word)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    if (!text.starts_with(word)) {
        return false;
    }
    text.remove_prefix(word.size());
    return true;
}

std::optional<std::string> includedName(std::string_view line)
{
    if (!consume(line, "#") || !consume(line, "include")) {
        return std::nullopt;
    }
    const char closing = consume(line, "<") ? '>' : consume(line, "\"") ? '"' : '\0';
    const std::size_t end = line.find(closing);
    if (closing == '\0' || end == std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(line.substr(0, end));
}

std::string contentOf(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    if (!in) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return content.str();
}

}  // namespace

bool SourceFile::isIn(std::string_view folder) const
{
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

SourceFile parseSource(std::string path, std::string_view text)
{
    SourceFile file{std::move(path), {}, {}};
    std::istringstream in{std::string(text)};
    for (std::string line; std::getline(in, line);) {
        file.lines.push_back(line);
        if (auto name = includedName(line)) {
            file.includes.push_back({*std::move(name), file.lines.size()});
        }
    }
    return file;
}

std::vector<SourceFile> readSources(const fs::path& root)
{
    std::vector<SourceFile> files;
    for (const char* folder : sourceFolders) {
        if (!fs::exists(root / folder)) {
            continue;
        }
        for (const auto& item : fs::recursive_directory_iterator(root / folder)) {
            const auto extension = item.path().extension();
            if (item.is_regular_file() && (extension == ".h" || extension == ".cpp")) {
                files.push_back(parseSource(item.path().lexically_relative(root).generic_string(),
                                            contentOf(item.path())));
            }
        }
    }
    std::ranges::sort(files, {}, &SourceFile::path);
    return files;
}

}  // namespace gruk::repository
