#pragma once

#include <cstddef>
#include <vector>

#include "core/patrol/findings_selection.h"
#include "core/patrol/review_finding.h"

/// A finding in a folder that is a finding too: the folder's size has it already, and wherever the
/// folder goes it goes along. Sums of several findings are made of the outermost ones. Pure; any
/// thread. Linear in the findings times their depth.
namespace gruk::OutermostFindings {

/// The findings without those that lie below another one of them, in the order given.
[[nodiscard]] std::vector<ReviewFinding> among(std::vector<ReviewFinding> findings);

/// The findings without those that lie below any of these places, in the order given.
[[nodiscard]] std::vector<ReviewFinding> outside(std::vector<ReviewFinding> findings,
                                                 const std::vector<FileURL>& places);

/// The selection without those of `findings` that lie below another selected one.
[[nodiscard]] FindingsSelection among(FindingsSelection selection,
                                      const std::vector<ReviewFinding>& findings);

/// Of how many files the findings hold every copy: a likely duplicate together with the file that
/// it seems to be a copy of, the one or the other by itself or in a folder.
[[nodiscard]] std::size_t filesWithoutACopyLeft(const std::vector<ReviewFinding>& findings);

}  // namespace gruk::OutermostFindings
