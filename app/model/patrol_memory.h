#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// What the program remembers of past patrols, as the disk has it. A plain value.
struct PatrolMemory {
    /// Of a place that is none of the realms (any more).
    struct Forgettable {
        /// The bytes of its path.
        std::string path;
        std::size_t patrols = 0;
        Bytes bytes = 0;

        friend bool operator==(const Forgettable&, const Forgettable&) = default;
    };

    /// Of all realms together.
    Bytes bytes = 0;
    /// The largest first.
    std::vector<Forgettable> forgettable;
    /// The file makes no sense; nothing else is known then.
    bool isDamaged = false;

    friend bool operator==(const PatrolMemory&, const PatrolMemory&) = default;
};

}  // namespace gruk
