#include "core/patrol/file_kind.h"

#include <algorithm>

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

FileKind kindOfExtension(std::string_view extension)
{
    if (extension.empty() || extension.size() > longestExtension) {
        return FileKind::other;
    }
    std::array<char, longestExtension> buffer{};
    std::transform(extension.begin(), extension.end(), buffer.begin(), lowerCased);
    const std::string_view lower(buffer.data(), extension.size());
    const auto* const found =
        std::find_if(extensions.begin(), extensions.end(),
                     [&](const Extension& candidate) { return candidate.text == lower; });
    return found == extensions.end() ? FileKind::other : found->kind;
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
