#pragma once

#include <cstdint>
#include <string_view>

namespace gruk {

/// 64-bit FNV-1a (Fowler, Noll, Vo) over the bytes of `text`, the same on every machine and in
/// every run. The one hash for whatever must survive a restart.
[[nodiscard]] std::uint64_t stableHash(std::string_view text) noexcept;

}  // namespace gruk
