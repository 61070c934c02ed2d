#include "core/realm/stable_hash.h"

namespace gruk {

std::uint64_t stableHash(std::string_view text) noexcept
{
    constexpr std::uint64_t offsetBasis = 0xcbf29ce484222325;
    constexpr std::uint64_t prime = 0x100000001b3;
    std::uint64_t hash = offsetBasis;
    for (const char c : text) {
        hash ^= static_cast<unsigned char>(c);
        hash *= prime;
    }
    return hash;
}

}  // namespace gruk
