#pragma once

#include <string_view>

#include "core/patrol/review_finding.h"

/// Why a finding was flagged, in plain words. Any thread.
namespace gruk::FindingCopy {

/// The sentence for a finding's panel. A name that the Gruk knows ("node_modules", "build"),
/// matched exactly, has a story of its own whatever the reason; so has a cache that the desktop's
/// programs are known to leave; else the reason has one.
[[nodiscard]] std::string_view whyFlagged(ReviewFinding::Reason reason, std::string_view path);

/// How sure the evidence is; 0.8 and more is solid.
[[nodiscard]] std::string_view confidenceNote(double confidence);

}  // namespace gruk::FindingCopy
