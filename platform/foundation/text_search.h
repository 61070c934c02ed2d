#pragma once

#include <string>
#include <string_view>

/// Finding text in text as a user means it. Independent of the locale; any thread. Text is UTF-8;
/// bytes that are not count as U+FFFD.

namespace gruk {

/// `text` in the form in which texts that differ in case alone, or in how an accented letter is
/// put together, are the same bytes (Unicode's full case folding, composed). Kept where one text
/// is searched again and again.
[[nodiscard]] std::string searchKey(std::string_view text);

/// Whether the text of `key` contains the text of `partKey`, both made by `searchKey`. A letter is
/// not found in the same letter with an accent. The empty text is in every text.
[[nodiscard]] bool searchKeyContains(std::string_view key, std::string_view partKey);

/// Both steps for two texts: whether `part` is in `text` without regard to case.
[[nodiscard]] bool localizedCaseInsensitiveContains(std::string_view text, std::string_view part);

}  // namespace gruk
