#pragma once

#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// What the entries of one snapshot hold together, as they come. None of a snapshot's figures
/// leaves the 64-bit range if this sum does not: each adds up some of its entries.
class EntrySizes {
public:
    /// False for a size that no snapshot can have: a negative one, or one too many.
    [[nodiscard]] bool add(Bytes size)
    {
        return size >= 0 && !__builtin_add_overflow(sum_, size, &sum_);
    }

private:
    Bytes sum_ = 0;
};

}  // namespace gruk
