#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "core/patrol/review_finding.h"

namespace gruk {

/// The orders of the findings list, in the order of the picker.
enum class FindingsSort : std::uint8_t { size, name, reason };

[[nodiscard]] std::string_view rawString(FindingsSort sort);

namespace FindingsPresenter {

/// Those of `findings` with the reason asked for (all without one), in a stable order: by size,
/// the largest first; by name, without regard to case; by reason in declared order and then by
/// size.
[[nodiscard]] std::vector<ReviewFinding> present(const std::vector<ReviewFinding>& findings,
                                                 FindingsSort sort,
                                                 std::optional<ReviewFinding::Reason> reasonFilter);

}  // namespace FindingsPresenter
}  // namespace gruk
