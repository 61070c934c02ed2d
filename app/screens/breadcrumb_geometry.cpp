#include "app/screens/breadcrumb_geometry.h"

#include <algorithm>

namespace gruk {

namespace {

using Shown = std::vector<bool>;

/// What the crumbs that are shown take, no wider than `widest` each, with the folds between them.
int lengthOf(const Shown& shown, const std::vector<int>& widths, const CrumbMeasures& measures,
             int widest)
{
    int length = 0;
    bool isFolded = false;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (shown[i]) {
            length += std::min(widths[i], widest);
        } else if (!isFolded) {
            length += measures.fold;
        } else {
            continue;
        }
        isFolded = !shown[i];
        length += i == 0 ? 0 : measures.separator;
    }
    return length;
}

int widestOf(const std::vector<int>& widths)
{
    return widths.empty() ? 0 : *std::max_element(widths.begin(), widths.end());
}

/// Those that are shown: as many as fit.
Shown chosen(const std::vector<int>& widths, int available, const CrumbMeasures& measures,
             std::optional<std::size_t> kept)
{
    const int widest = widestOf(widths);
    Shown shown(widths.size(), true);
    if (widths.empty() || lengthOf(shown, widths, measures, widest) <= available) {
        return shown;
    }
    shown.assign(widths.size(), false);
    shown.front() = true;
    shown.back() = true;
    if (kept && *kept < shown.size()) {
        shown[*kept] = true;
    }
    for (std::size_t i = shown.size() - 1; i-- > 1;) {
        if (shown[i]) {
            continue;
        }
        shown[i] = true;
        if (lengthOf(shown, widths, measures, widest) > available) {
            shown[i] = false;
            break;
        }
    }
    return shown;
}

/// The width that no crumb may pass for all of them to fit.
int capFor(const Shown& shown, const std::vector<int>& widths, int available,
           const CrumbMeasures& measures)
{
    int low = measures.narrowest;
    int high = std::max(low, widestOf(widths));
    while (low < high) {
        const int middle = low + (high - low + 1) / 2;
        if (lengthOf(shown, widths, measures, middle) <= available) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return low;
}

}  // namespace

CrumbLayout layOutCrumbs(const std::vector<int>& widths, int available,
                         const CrumbMeasures& measures, std::optional<std::size_t> kept)
{
    const Shown shown = chosen(widths, available, measures, kept);
    const int cap = capFor(shown, widths, available, measures);
    CrumbLayout layout;
    int left = 0;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        const bool continuesFold = i > 0 && !shown[i] && !shown[i - 1];
        if (continuesFold) {
            layout.folds.back().end = i + 1;
            layout.crumbs.push_back({layout.folds.back().left, 0});
            continue;
        }
        if (i > 0) {
            layout.separators.push_back(left);
            left += measures.separator;
        }
        if (shown[i]) {
            layout.crumbs.push_back({left, std::min(widths[i], cap)});
            left += layout.crumbs.back().width;
        } else {
            layout.folds.push_back({left, i, i + 1});
            layout.crumbs.push_back({left, 0});
            left += measures.fold;
        }
    }
    return layout;
}

}  // namespace gruk
