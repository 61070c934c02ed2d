#include "tests/repository/own_names.h"

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <string_view>

namespace gruk::repository {

namespace {

/// The folders whose sources are joined, each a library, from the lowest floor up.
constexpr std::array<std::string_view, 3> libraries = {"platform", "core", "app"};

std::optional<std::size_t> libraryOf(const SourceFile& file)
{
    // Programs of their own, whose sources stay apart.
    if (file.isIn("app/tour") || file.path == "app/main.cpp") {
        return std::nullopt;
    }
    for (std::size_t library = 0; library < libraries.size(); ++library) {
        if (file.isIn(libraries[library])) {
            return library;
        }
    }
    return std::nullopt;
}

struct Declared {
    std::string name;
    bool isAlias = false;
};

/// What a line at the left margin declares.
std::optional<Declared> declaredBy(const std::string& line)
{
    static const std::regex type(R"(^(?:class|struct|enum class|enum|using) (\w+)\b(?!::).*)");
    static const std::regex value(
        R"(^(?:\[\[\w+\]\] )?(?:inline |static |extern |const |constexpr )*[\w:<>,&*\[\] ]+[ &*>](\w+)(?:\(.*| =.*|\{.*|;|\[.*))");
    std::smatch found;
    if (line.empty() || line.starts_with("namespace") || line.starts_with("template")
        || line.starts_with("friend") || line.starts_with("using namespace")
        || line.starts_with("#") || line.starts_with("/") || line.starts_with(" ")
        || line.starts_with("}")) {
        return std::nullopt;
    }
    if (std::regex_match(line, found, type)) {
        return Declared{found[1], line.starts_with("using")};
    }
    if (std::regex_match(line, found, value)) {
        return Declared{found[1], false};
    }
    return std::nullopt;
}

struct Place {
    const SourceFile* file = nullptr;
    std::size_t line = 0;
    Declared declared;
};

/// What a file declares in namespace `gruk` itself, or in the anonymous one in it.
std::vector<Place> declaredIn(const SourceFile& file, bool inAnonymous)
{
    std::vector<Place> places;
    std::vector<std::string> open;
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
        const std::string& line = file.lines[i];
        if (line.starts_with("namespace ") && line.ends_with("{")) {
            open.push_back(line);
        } else if (line.starts_with("}  // namespace") && !open.empty()) {
            open.pop_back();
        } else if (!open.empty()
                   && open.back() == (inAnonymous ? "namespace {" : "namespace gruk {")) {
            if (auto declared = declaredBy(line)) {
                places.push_back({&file, i + 1, *std::move(declared)});
            }
        }
    }
    return places;
}

}  // namespace

std::vector<Breach> namesThatAreTaken(const std::vector<SourceFile>& files)
{
    std::map<std::string, const Place*> ofHeaders;
    std::vector<std::vector<Place>> kept;
    for (const SourceFile& file : files) {
        if (file.isHeader() && libraryOf(file)) {
            kept.push_back(declaredIn(file, false));
        }
    }
    for (const auto& places : kept) {
        for (const Place& place : places) {
            ofHeaders.emplace(place.declared.name, &place);
        }
    }
    std::vector<Breach> breaches;
    std::array<std::map<std::string, Place>, libraries.size()> own;
    for (const SourceFile& file : files) {
        const auto library = libraryOf(file);
        if (file.isHeader() || !library) {
            continue;
        }
        std::map<std::string, Place> ofFile;
        for (const Place& place : declaredIn(file, true)) {
            ofFile.emplace(place.declared.name, place);
        }
        for (const auto& [name, place] : ofFile) {
            const auto header = ofHeaders.find(name);
            if (header != ofHeaders.end() && libraryOf(*header->second->file) <= library) {
                breaches.push_back(
                    {file.path, place.line,
                     "the name " + name + " is taken by " + header->second->file->path});
            }
            const auto [other, isNew] = own[*library].emplace(name, place);
            if (!isNew && !place.declared.isAlias) {
                breaches.push_back(
                    {file.path, place.line,
                     "the name " + name + " is taken by " + other->second.file->path});
            }
        }
    }
    return breaches;
}

}  // namespace gruk::repository
