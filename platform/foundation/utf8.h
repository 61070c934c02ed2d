#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace gruk {

/// Whether `bytes` are well-formed UTF-8 (no surrogates, no overlong forms).
[[nodiscard]] bool isValidUTF8(std::string_view bytes) noexcept;

/// The length of the well-formed sequence that `bytes` begins with: 1 to 4, or 0 if there is none.
[[nodiscard]] std::size_t utf8SequenceLength(std::string_view bytes) noexcept;

/// `bytes` for the eye: each byte that is not part of well-formed UTF-8 becomes U+FFFD. Never
/// used as a path: that stays bytes.
[[nodiscard]] std::string displayText(std::string_view bytes);

}  // namespace gruk
