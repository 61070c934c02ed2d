#include "core/patrol/findings_presenter.h"

#include <algorithm>
#include <array>

#include "platform/foundation/text_order.h"

namespace gruk {

namespace {

constexpr std::array<std::string_view, 3> sortNames = {"size", "name", "reason"};

bool isLarger(const ReviewFinding* a, const ReviewFinding* b)
{
    return a->allocatedSize > b->allocatedSize;
}

bool isNamedBefore(const ReviewFinding* a, const ReviewFinding* b)
{
    return localizedCaseInsensitiveCompare(a->url.lastPathComponent(), b->url.lastPathComponent())
           < 0;
}

bool hasEarlierReason(const ReviewFinding* a, const ReviewFinding* b)
{
    return a->reason != b->reason ? a->reason < b->reason : isLarger(a, b);
}

}  // namespace

std::string_view rawString(FindingsSort sort)
{
    return sortNames.at(static_cast<std::size_t>(sort));
}

std::vector<ReviewFinding>
FindingsPresenter::present(const std::vector<ReviewFinding>& findings, FindingsSort sort,
                           std::optional<ReviewFinding::Reason> reasonFilter)
{
    // Pointers are sorted, and each finding is copied once.
    std::vector<const ReviewFinding*> shown;
    shown.reserve(findings.size());
    for (const ReviewFinding& finding : findings) {
        if (!reasonFilter || finding.reason == *reasonFilter) {
            shown.push_back(&finding);
        }
    }
    switch (sort) {
    case FindingsSort::size:
        std::stable_sort(shown.begin(), shown.end(), isLarger);
        break;
    case FindingsSort::name:
        std::stable_sort(shown.begin(), shown.end(), isNamedBefore);
        break;
    case FindingsSort::reason:
        std::stable_sort(shown.begin(), shown.end(), hasEarlierReason);
        break;
    }
    std::vector<ReviewFinding> presented;
    presented.reserve(shown.size());
    for (const ReviewFinding* finding : shown) {
        presented.push_back(*finding);
    }
    return presented;
}

}  // namespace gruk
