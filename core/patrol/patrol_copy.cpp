#include "core/patrol/patrol_copy.h"

#include "core/patrol/byte_format.h"
#include "core/patrol/count_format.h"

namespace gruk::PatrolCopy {

std::string summary(const std::vector<ReviewFinding>& findings, std::int64_t issueCount,
                    bool isComplete)
{
    Bytes total = 0;
    for (const ReviewFinding& finding : findings) {
        total = checkedAdd(total, finding.allocatedSize);
    }
    if (total >= 1) {
        return "The Gruk found " + ByteFormat::string(total)
               + " you can take back today. You don't need to organise anything.";
    }
    const bool isClean = issueCount < 1 && isComplete;
    return isClean ? "The Gruk didn't find anything to reclaim today. You don't need to organise "
                     "anything."
                   : "The Gruk mapped what it was allowed to see — not enough to judge yet.";
}

std::optional<std::string> coverageNote(std::int64_t issueCount, bool isComplete)
{
    if (issueCount >= 1) {
        const char* const areas = issueCount == 1 ? " area was" : " areas were";
        return "The Gruk couldn't see everything: " + CountFormat::string(issueCount) + areas
               + " off-limits. What's shown covers only the parts it could reach.";
    }
    if (!isComplete) {
        return "The Gruk couldn't see everything this time. What's shown covers only the parts it "
               "could reach.";
    }
    return std::nullopt;
}

}  // namespace gruk::PatrolCopy
