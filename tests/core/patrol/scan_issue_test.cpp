#include "core/patrol/scan_issue.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(ScanIssue, reasonsHaveTheirCaseNamesAsRawStrings)
{
    const std::pair<ScanIssue::Reason, const char*> reasons[] = {
        {ScanIssue::Reason::permissionDenied, "permissionDenied"},
        {ScanIssue::Reason::unreadable, "unreadable"},
        {ScanIssue::Reason::disappeared, "disappeared"},
        {ScanIssue::Reason::differentFilesystem, "differentFilesystem"},
    };
    for (const auto& [reason, text] : reasons) {
        EXPECT_EQ(rawString(reason), text);
        EXPECT_EQ(scanIssueReason(text), reason);
    }
}

TEST(ScanIssue, anUnknownReasonIsNone)
{
    EXPECT_EQ(scanIssueReason("gone"), std::nullopt);
    EXPECT_EQ(scanIssueReason(""), std::nullopt);
}

}  // namespace gruk
