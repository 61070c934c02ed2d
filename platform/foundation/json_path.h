#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Paths as JSON text (docs/formats.md). JSON holds Unicode, a path holds any byte but NUL; this is
/// the one rule by which a path survives the way there and back byte for byte. Pure; any thread.

namespace gruk {

/// The text of a path: the path itself when it is well-formed UTF-8; otherwise each byte that is
/// not part of well-formed UTF-8 stands as U+0000 and the two lower-case hexadecimal digits of
/// the byte. Always valid UTF-8. A path with a NUL in it is a programming error.
[[nodiscard]] std::string jsonPathText(std::string_view bytes);

/// The path of a text that `jsonPathText` wrote; none for any other text, so that two texts never
/// stand for one path: U+0000 without two lower-case digits of a byte from 80 on, escaped bytes
/// that make up well-formed UTF-8, text that is not UTF-8.
[[nodiscard]] std::optional<std::string> pathFromJSONText(std::string_view text);

}  // namespace gruk
