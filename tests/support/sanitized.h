#pragma once

#include <cstddef>

namespace gruk::test {

/// Whether a sanitizer makes everything slow: what repeats itself to be sure may then do so less
/// often, since each line is still run.
#if defined(GRUK_SANITIZED)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

/// `count`, or a tenth of it under a sanitizer.
[[nodiscard]] constexpr std::size_t unlessSanitized(std::size_t count)
{
    return isSanitized ? count / 10 : count;
}

}  // namespace gruk::test
