#pragma once

#include <cerrno>

namespace gruk {

/// Calls `call`, which answers with the negative error number, again for as long as a signal
/// interrupts it, but not for ever: who is interrupted a hundred times in a row is told so.
template <typename Call>
auto persistently(Call call)
{
    constexpr int patience = 100;
    auto result = call();
    for (int i = 0; i < patience && result == -EINTR; ++i) {
        result = call();
    }
    return result;
}

}  // namespace gruk
