#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/patrol/review_finding.h"

/// The two sentences with which the screens sum a patrol up.
namespace gruk::PatrolCopy {

/// What the patrol found to take back. The caller passes the latest snapshot's issue count and
/// completeness, or 0 and true when there is no snapshot.
[[nodiscard]] std::string summary(const std::vector<ReviewFinding>& findings,
                                  std::int64_t issueCount, bool isComplete);

/// What the patrol could not see; none when it saw everything.
[[nodiscard]] std::optional<std::string> coverageNote(std::int64_t issueCount, bool isComplete);

}  // namespace gruk::PatrolCopy
