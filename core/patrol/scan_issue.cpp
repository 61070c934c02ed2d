#include "core/patrol/scan_issue.h"

#include <algorithm>
#include <array>

namespace gruk {

namespace {

constexpr std::array<std::string_view, 4> reasonNames = {"permissionDenied", "unreadable",
                                                         "disappeared", "differentFilesystem"};

}  // namespace

std::string_view rawString(ScanIssue::Reason reason)
{
    return reasonNames.at(static_cast<std::size_t>(reason));
}

std::optional<ScanIssue::Reason> scanIssueReason(std::string_view rawString)
{
    const auto* const found = std::find(reasonNames.begin(), reasonNames.end(), rawString);
    if (found == reasonNames.end()) {
        return std::nullopt;
    }
    return static_cast<ScanIssue::Reason>(found - reasonNames.begin());
}

}  // namespace gruk
