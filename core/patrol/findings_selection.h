#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "core/patrol/review_finding.h"

namespace gruk {

/// The findings ticked for a batch. Never drops an id by itself: ids of findings that are gone do
/// no harm, since only the findings passed in are looked at. A plain value.
struct FindingsSelection {
    std::unordered_set<std::string> ids;

    void toggle(const std::string& id);
    void selectAll(const std::vector<ReviewFinding>& findings);
    /// Those of `reason` only; earlier ticks stay.
    void selectAll(const std::vector<ReviewFinding>& findings, ReviewFinding::Reason reason);
    void clear();

    /// The ticked ones of `findings`, in the order given.
    [[nodiscard]] std::vector<ReviewFinding>
    selected(const std::vector<ReviewFinding>& findings) const;
    [[nodiscard]] Bytes selectedBytes(const std::vector<ReviewFinding>& findings) const;

    friend bool operator==(const FindingsSelection&, const FindingsSelection&) = default;
};

}  // namespace gruk
