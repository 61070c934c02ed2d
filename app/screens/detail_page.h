#pragma once

#include <cstdint>

namespace gruk {

/// The pages of one realm, in the order of the picker.
enum class DetailPage : std::uint8_t { patrol, browse };

}  // namespace gruk
