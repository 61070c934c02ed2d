#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gruk {

/// Base64 with the standard alphabet and padding (RFC 4648, section 4).
[[nodiscard]] std::string base64Encoded(std::string_view bytes);

/// Reads exactly what `base64Encoded` writes; none for any other character, wrong padding, line
/// breaks, or padding bits that are not zero.
[[nodiscard]] std::optional<std::string> base64Decoded(std::string_view text);

}  // namespace gruk
