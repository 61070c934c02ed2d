#include "core/patrol/review_finding.h"

#include <gtest/gtest.h>

#include <string>

namespace gruk {

TEST(ReviewFinding, reasonsHaveTheirCaseNamesInDeclaredOrder)
{
    std::string names;
    for (const ReviewFinding::Reason reason : ReviewFinding::allReasons) {
        names += std::string(rawString(reason)) + " ";
    }
    EXPECT_EQ(names, "rapidGrowth duplicateDownload oldInstaller regenerableCache ");
}

}  // namespace gruk
