#pragma once

#include <cstddef>

#include "platform/foundation/checked_arithmetic.h"

namespace gruk {

/// What the controls of a selection of findings show.
struct SelectionState {
    bool reviewOnly = true;
    bool hasRows = false;
    bool hasFilter = false;
    std::size_t selected = 0;
    /// How many of the selected ones the filter leaves out.
    std::size_t notShown = 0;
    Bytes bytes = 0;

    friend bool operator==(const SelectionState&, const SelectionState&) = default;
};

}  // namespace gruk
