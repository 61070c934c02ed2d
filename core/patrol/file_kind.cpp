#include "core/patrol/file_kind.h"

#include <algorithm>
#include <cstdint>

namespace gruk {

namespace {

constexpr std::array<std::string_view, allFileKinds.size()> kindNames = {
    "screenshot", "image",    "video",       "audio",  "pdf",   "archive",
    "installer",  "document", "application", "folder", "other",
};

struct Extension {
    std::string_view text;
    FileKind kind;
};

constexpr std::array extensions = {
    Extension{"png", FileKind::image},       Extension{"jpg", FileKind::image},
    Extension{"jpeg", FileKind::image},      Extension{"gif", FileKind::image},
    Extension{"bmp", FileKind::image},       Extension{"tiff", FileKind::image},
    Extension{"heic", FileKind::image},      Extension{"webp", FileKind::image},
    Extension{"mov", FileKind::video},       Extension{"mp4", FileKind::video},
    Extension{"avi", FileKind::video},       Extension{"mkv", FileKind::video},
    Extension{"flv", FileKind::video},       Extension{"wmv", FileKind::video},
    Extension{"m4v", FileKind::video},       Extension{"webm", FileKind::video},
    Extension{"mp3", FileKind::audio},       Extension{"wav", FileKind::audio},
    Extension{"aac", FileKind::audio},       Extension{"flac", FileKind::audio},
    Extension{"m4a", FileKind::audio},       Extension{"wma", FileKind::audio},
    Extension{"ogg", FileKind::audio},       Extension{"aiff", FileKind::audio},
    Extension{"pdf", FileKind::pdf},         Extension{"zip", FileKind::archive},
    Extension{"gz", FileKind::archive},      Extension{"tar", FileKind::archive},
    Extension{"7z", FileKind::archive},      Extension{"rar", FileKind::archive},
    Extension{"bz2", FileKind::archive},     Extension{"tgz", FileKind::archive},
    Extension{"dmg", FileKind::installer},   Extension{"pkg", FileKind::installer},
    Extension{"exe", FileKind::installer},   Extension{"msi", FileKind::installer},
    Extension{"txt", FileKind::document},    Extension{"md", FileKind::document},
    Extension{"doc", FileKind::document},    Extension{"docx", FileKind::document},
    Extension{"pages", FileKind::document},  Extension{"xls", FileKind::document},
    Extension{"xlsx", FileKind::document},   Extension{"key", FileKind::document},
    Extension{"ppt", FileKind::document},    Extension{"pptx", FileKind::document},
    Extension{"app", FileKind::application},
};

constexpr std::size_t longestExtension = 5;

constexpr char lowerCased(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The letters of a short text as one number, so that looking one up compares numbers: this runs
/// for each file of a realm.
constexpr std::uint64_t packed(std::string_view text)
{
    std::uint64_t number = 0;
    for (const char c : text) {
        number = number << 8U | static_cast<unsigned char>(lowerCased(c));
    }
    return number;
}

struct PackedExtension {
    std::uint64_t number;
    FileKind kind;
};

constexpr auto packedExtensions = [] {
    std::array<PackedExtension, extensions.size()> list{};
    std::transform(extensions.begin(), extensions.end(), list.begin(), [](const Extension& one) {
        return PackedExtension{packed(one.text), one.kind};
    });
    std::sort(list.begin(), list.end(), [](const PackedExtension& a, const PackedExtension& b) {
        return a.number < b.number;
    });
    return list;
}();

FileKind kindOfExtension(std::string_view extension)
{
    if (extension.empty() || extension.size() > longestExtension) {
        return FileKind::other;
    }
    const std::uint64_t number = packed(extension);
    const auto* const found = std::lower_bound(
        packedExtensions.begin(), packedExtensions.end(), number,
        [](const PackedExtension& one, std::uint64_t wanted) { return one.number < wanted; });
    return found != packedExtensions.end() && found->number == number ? found->kind
                                                                      : FileKind::other;
}

bool endsInApp(std::string_view name)
{
    constexpr std::string_view suffix = ".app";
    return name.size() >= suffix.size()
           && std::equal(suffix.begin(), suffix.end(), name.end() - suffix.size(),
                         [](char expected, char c) { return expected == lowerCased(c); });
}

}  // namespace

std::string_view rawString(FileKind kind)
{
    return kindNames.at(static_cast<std::size_t>(kind));
}

std::optional<FileKind> fileKind(std::string_view rawString)
{
    const auto* const found = std::find(kindNames.begin(), kindNames.end(), rawString);
    if (found == kindNames.end()) {
        return std::nullopt;
    }
    return static_cast<FileKind>(found - kindNames.begin());
}

FileKind classify(std::string_view name, bool isDirectory, bool isScreenshot)
{
    if (isScreenshot) {
        return FileKind::screenshot;
    }
    if (isDirectory) {
        return endsInApp(name) ? FileKind::application : FileKind::folder;
    }
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? FileKind::other : kindOfExtension(name.substr(dot + 1));
}

}  // namespace gruk
