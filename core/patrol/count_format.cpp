#include "core/patrol/count_format.h"

namespace gruk::CountFormat {

std::string string(std::int64_t count)
{
    constexpr std::size_t groupLength = 3;
    std::string text = std::to_string(count);
    const std::size_t first = count < 0 ? 1 : 0;
    for (std::size_t at = text.size(); at > first + groupLength; at -= groupLength) {
        text.insert(at - groupLength, 1, ',');
    }
    return text;
}

}  // namespace gruk::CountFormat
