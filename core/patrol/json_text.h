#pragma once

#include <string>
#include <string_view>

/// Texts as they stand between the quotes of a JSON string. Pure; any thread.

namespace gruk {

/// Appends `text` (valid UTF-8) with quotes, backslashes and control characters escaped.
void appendJSONEscaped(std::string& out, std::string_view text);

/// Appends the path as its JSON text (see `jsonPathText`), escaped.
void appendJSONPath(std::string& out, std::string_view path);

/// Whether the bytes stand for themselves: printable ASCII without quote and backslash.
[[nodiscard]] bool isPlainJSONText(std::string_view bytes) noexcept;

}  // namespace gruk
