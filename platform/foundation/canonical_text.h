#pragma once

#include <compare>
#include <string>
#include <string_view>

/// Text as a reader sees it: "é" as one character or as "e" with an accent behind it is the same
/// text. Any thread.

namespace gruk {

/// The text in Unicode's composed canonical form (NFC); bytes that are not UTF-8 stay as they are
/// and leave the whole text as it is. Canonically equivalent texts, and only those, have the same
/// form.
[[nodiscard]] std::string canonicalForm(std::string_view text);

/// The plain order of texts: by the Unicode scalar values of their canonical forms, so upper case
/// before lower; texts of one form by their bytes. Total; knows no language and no numbers.
[[nodiscard]] std::strong_ordering plainCompare(std::string_view a, std::string_view b);

}  // namespace gruk
