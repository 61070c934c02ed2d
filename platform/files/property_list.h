#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gruk {

/// The two readings of a property list that Gruk needs. Binary and XML lists are read; the bytes
/// come from attributes that anyone may have written, so everything unexpected is none.

/// The boolean that the list is; none if it is anything else.
[[nodiscard]] std::optional<bool> propertyListBoolean(std::string_view bytes);

/// The array of texts that the list is; none if it is anything else or holds anything else.
[[nodiscard]] std::optional<std::vector<std::string>> propertyListTexts(std::string_view bytes);

}  // namespace gruk
