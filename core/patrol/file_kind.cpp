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

struct Extensions {
    FileKind kind;
    /// In small letters, with a blank between.
    std::string_view texts;
};

constexpr std::array extensions = {
    Extensions{FileKind::image, "png jpg jpeg gif bmp tiff tif heic webp svg avif jxl"},
    Extensions{FileKind::video, "mov mp4 avi mkv flv wmv m4v webm mpg mpeg ogv 3gp"},
    Extensions{FileKind::audio, "mp3 wav aac flac m4a wma ogg aiff opus oga mid"},
    Extensions{FileKind::pdf, "pdf"},
    Extensions{FileKind::archive, "zip gz tar 7z rar bz2 tgz xz zst lz4 lzma tbz2 txz"},
    Extensions{FileKind::installer, "dmg pkg exe msi deb rpm flatpak snap run iso img"},
    Extensions{FileKind::document,
               "txt md doc docx pages xls xlsx key ppt pptx odt ods odp rtf csv epub"},
    // An AppImage is run where it lies, so it is an application and no installer of one.
    Extensions{FileKind::application, "app appimage"},
};

/// As many letters as one number holds.
constexpr std::size_t longestExtension = 8;
/// The only longer one, which is told by hand.
constexpr std::string_view flatpakReference = "flatpakref";

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
    static constexpr unsigned bits = 10;

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
    for (const Extensions& each : extensions) {
        for (std::string_view left = each.texts; !left.empty();) {
            const std::size_t end = std::min(left.find(' '), left.size());
            const std::uint64_t number = packed(left.substr(0, end));
            auto& place =
                table.places[static_cast<std::size_t>(&table.at(number) - &table.places[0])];
            if (place.number != 0) {
                return std::nullopt;
            }
            place = {number, each.kind};
            left.remove_prefix(std::min(end + 1, left.size()));
        }
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

/// `lower` has no capitals.
bool equalsIgnoringCase(std::string_view text, std::string_view lower)
{
    return std::equal(lower.begin(), lower.end(), text.begin(), text.end(),
                      [](char expected, char c) { return expected == lowerASCII(c); });
}

FileKind kindOfExtension(std::string_view extension)
{
    if (extension.empty() || extension.size() > longestExtension) {
        return equalsIgnoringCase(extension, flatpakReference) ? FileKind::installer
                                                               : FileKind::other;
    }
    const std::uint64_t number = packed(extension);
    const PackedExtension& found = extensionTable.at(number);
    return found.number == number ? found.kind : FileKind::other;
}

bool endsInApp(std::string_view name)
{
    constexpr std::string_view suffix = ".app";
    return name.size() >= suffix.size()
           && equalsIgnoringCase(name.substr(name.size() - suffix.size()), suffix);
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
