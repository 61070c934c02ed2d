#include "core/patrol/review_finding.h"

namespace gruk {

namespace {

constexpr std::array<std::string_view, ReviewFinding::allReasons.size()> findingReasonNames = {
    "rapidGrowth", "duplicateDownload", "oldInstaller", "regenerableCache"};

}  // namespace

std::string_view rawString(ReviewFinding::Reason reason)
{
    return findingReasonNames.at(static_cast<std::size_t>(reason));
}

}  // namespace gruk
