#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

/// The text of the settings file, and of the values in it (docs/formats.md). A value is kept as the
/// JSON that it is and read only when asked for, so that what a later program has stored, a number
/// of many digits among it, stays as it was written. Pure; any thread.

namespace gruk {

/// Each value as JSON, by its key as JSON has it (`jsonPathText`).
using SettingsValues = std::map<std::string, std::string>;

using TextDictionary = std::map<std::string, std::string>;

/// The settings of a whole file; none when it is not one JSON object, or nested deeper than 32. Of
/// a key that stands there twice the last counts.
[[nodiscard]] std::optional<SettingsValues> settingsFromJSON(std::string_view json);

/// One setting a line, in the order of the keys.
[[nodiscard]] std::string settingsJSON(const SettingsValues& values);

// Values as JSON. Texts hold any bytes but NUL, data any at all.
[[nodiscard]] std::string booleanJSON(bool value);
[[nodiscard]] std::string textJSON(std::string_view text);
[[nodiscard]] std::string dataJSON(std::string_view bytes);
[[nodiscard]] std::string textDictionaryJSON(const TextDictionary& dictionary);

// The same back; none for a value of any other type, a dictionary with one value that is no text
// among them.
[[nodiscard]] std::optional<bool> booleanFromJSON(std::string_view json);
[[nodiscard]] std::optional<std::string> textFromJSON(std::string_view json);
[[nodiscard]] std::optional<std::string> dataFromJSON(std::string_view json);
[[nodiscard]] std::optional<TextDictionary> textDictionaryFromJSON(std::string_view json);

}  // namespace gruk
