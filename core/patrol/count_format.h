#pragma once

#include <concepts>
#include <cstdint>
#include <string>

/// How a count reads, everywhere: "1,234,567". The sentences around it are English ones, whatever
/// the locale, and so are the sizes beside it.
namespace gruk::CountFormat {

[[nodiscard]] std::string string(std::int64_t count);
[[nodiscard]] std::string string(std::integral auto count)
{
    return string(static_cast<std::int64_t>(count));
}

}  // namespace gruk::CountFormat
