#pragma once

#include <cerrno>

namespace gruk {

/// A result of the system in the form that `FileCalls` and `MoveCalls` have it: the negative error
/// number where the call failed.
template <typename Result>
[[nodiscard]] Result orError(Result result)
{
    return result < 0 ? static_cast<Result>(-errno) : result;
}

}  // namespace gruk
