#pragma once

#include "platform/files/move_calls.h"
#include "platform/linux/persistently.h"

namespace gruk {

/// Reads the facts of the item `name` in an open directory, never through a link; "" is the
/// directory itself. 0, or the negative error number.
[[nodiscard]] inline int readPlaceFacts(int directory, const char* name, PlaceFacts& facts,
                                        const MoveCalls& calls)
{
    return persistently([&] { return calls.facts(directory, name, LastLink::refused, facts); });
}

}  // namespace gruk
