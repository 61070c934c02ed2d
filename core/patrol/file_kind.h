#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace gruk {

/// What an item is, told from its name and two facts. The order of the cases is the declared one.
enum class FileKind : std::uint8_t {
    screenshot,
    image,
    video,
    audio,
    pdf,
    archive,
    installer,
    document,
    application,
    folder,
    other,
};

inline constexpr std::array allFileKinds = {
    FileKind::screenshot,  FileKind::image,   FileKind::video,     FileKind::audio,
    FileKind::pdf,         FileKind::archive, FileKind::installer, FileKind::document,
    FileKind::application, FileKind::folder,  FileKind::other,
};

/// The case's name, which is also its stored form.
[[nodiscard]] std::string_view rawString(FileKind kind);

/// The kind of that raw string; none for any other text.
[[nodiscard]] std::optional<FileKind> fileKind(std::string_view rawString);

/// Decides in this order: a screenshot (also a folder), then a directory (a name ending in ".app",
/// in any case, is an application), then the text behind the last "." of the name, in any case of
/// its ASCII letters. A name without "." is `other`; ".png" is an image.
[[nodiscard]] FileKind classify(std::string_view name, bool isDirectory, bool isScreenshot);

}  // namespace gruk
