#include "core/patrol/findings_selection.h"

#include <algorithm>
#include <iterator>

namespace gruk {

void FindingsSelection::toggle(const std::string& id)
{
    if (ids.erase(id) == 0) {
        ids.insert(id);
    }
}

void FindingsSelection::selectAll(const std::vector<ReviewFinding>& findings)
{
    for (const ReviewFinding& finding : findings) {
        ids.insert(finding.id);
    }
}

void FindingsSelection::selectAll(const std::vector<ReviewFinding>& findings,
                                  ReviewFinding::Reason reason)
{
    for (const ReviewFinding& finding : findings) {
        if (finding.reason == reason) {
            ids.insert(finding.id);
        }
    }
}

void FindingsSelection::clear()
{
    ids.clear();
}

std::vector<ReviewFinding>
FindingsSelection::selected(const std::vector<ReviewFinding>& findings) const
{
    std::vector<ReviewFinding> ticked;
    std::copy_if(findings.begin(), findings.end(), std::back_inserter(ticked),
                 [this](const ReviewFinding& finding) { return ids.contains(finding.id); });
    return ticked;
}

Bytes FindingsSelection::selectedBytes(const std::vector<ReviewFinding>& findings) const
{
    Bytes total = 0;
    for (const ReviewFinding& finding : findings) {
        if (ids.contains(finding.id)) {
            total = checkedAdd(total, finding.allocatedSize);
        }
    }
    return total;
}

}  // namespace gruk
