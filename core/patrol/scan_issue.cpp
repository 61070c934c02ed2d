#include "core/patrol/scan_issue.h"

#include <algorithm>
#include <array>

namespace gruk {

namespace {

constexpr std::array<std::string_view, 4> issueReasonNames = {"permissionDenied", "unreadable",
                                                              "disappeared", "differentFilesystem"};

}  // namespace

std::string_view rawString(ScanIssue::Reason reason)
{
    return issueReasonNames.at(static_cast<std::size_t>(reason));
}

std::optional<ScanIssue::Reason> scanIssueReason(std::string_view rawString)
{
    const auto* const found =
        std::find(issueReasonNames.begin(), issueReasonNames.end(), rawString);
    if (found == issueReasonNames.end()) {
        return std::nullopt;
    }
    return static_cast<ScanIssue::Reason>(found - issueReasonNames.begin());
}

}  // namespace gruk
