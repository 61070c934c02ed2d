#include "core/patrol/file_kind.h"

#include <algorithm>
#include <cstdint>

#include "platform/foundation/ascii.h"

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

/// The letters of a short text as one number, so that looking one up compares numbers: this runs
/// for each file of a realm.
constexpr std::uint64_t packed(std::string_view text)
{
    std::uint64_t number = 0;
    for (const char c : text) {
        number = number << 8U | static_cast<unsigned char>(lowerASCII(c));
    }
    return number;
}

struct PackedExtension {
    std::uint64_t number = 0;
    FileKind kind = FileKind::other;
};

/// The extensions at places that follow from their numbers, so that looking one up takes one
/// comparison: a multiplier is tried after another until no two fall together.
struct ExtensionTable {
    static constexpr unsigned bits = 8;

    [[nodiscard]] constexpr const PackedExtension& at(std::uint64_t number) const
    {
        return places[static_cast<std::size_t>(number * multiplier >> (64U - bits))];
    }

    std::array<PackedExtension, std::size_t{1} << bits> places{};
    std::uint64_t multiplier = 0;
};

constexpr std::optional<ExtensionTable> tableWith(std::uint64_t multiplier)
{
    ExtensionTable table;
    table.multiplier = multiplier;
    for (const Extension& extension : extensions) {
        const std::uint64_t number = packed(extension.text);
        auto& place = table.places[static_cast<std::size_t>(&table.at(number) - &table.places[0])];
        if (place.number != 0) {
            return std::nullopt;
        }
        place = {number, extension.kind};
    }
    return table;
}

constexpr ExtensionTable extensionTable = [] {
    // Steps that spread the bits, as the golden ratio does.
    constexpr std::uint64_t step = 0x9E37'79B9'7F4A'7C15;
    std::uint64_t multiplier = step;
    std::optional<ExtensionTable> table = tableWith(multiplier);
    while (!table) {
        multiplier += step;
        table = tableWith(multiplier);
    }
    return *table;
}();

FileKind kindOfExtension(std::string_view extension)
{
    if (extension.empty() || extension.size() > longestExtension) {
        return FileKind::other;
    }
    const std::uint64_t number = packed(extension);
    const PackedExtension& found = extensionTable.at(number);
    return found.number == number ? found.kind : FileKind::other;
}

bool endsInApp(std::string_view name)
{
    constexpr std::string_view suffix = ".app";
    return name.size() >= suffix.size()
           && std::equal(suffix.begin(), suffix.end(), name.end() - suffix.size(),
                         [](char expected, char c) { return expected == lowerASCII(c); });
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
