#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace gruk {

/// Where the crumbs of a path stand in a line that may be too short for them. Pure; logical pixels
/// from the left of the line.
struct CrumbLayout {
    struct Crumb {
        int left = 0;
        /// 0 for one that is folded away.
        int width = 0;

        friend bool operator==(const Crumb&, const Crumb&) = default;
    };

    /// What stands for a run of crumbs that are folded away: those from `first` to before `end`.
    struct Fold {
        int left = 0;
        std::size_t first = 0;
        std::size_t end = 0;

        friend bool operator==(const Fold&, const Fold&) = default;
    };

    std::vector<Crumb> crumbs;
    std::vector<Fold> folds;
    /// Where something else comes after a crumb or a fold: the left of what stands between.
    std::vector<int> separators;
};

/// The widths that are the same for every path.
struct CrumbMeasures {
    int separator = 0;
    int fold = 0;
    /// What a crumb that has to give way keeps.
    int narrowest = 0;
};

/// Lays out crumbs of these widths. Where they do not all fit, the first, the last and the one at
/// `kept` (which has the focus) stay; then as many as fit before the last; the others fold
/// together. Where even those that stay are too wide, the widest give way.
[[nodiscard]] CrumbLayout layOutCrumbs(const std::vector<int>& widths, int available,
                                       const CrumbMeasures& measures,
                                       std::optional<std::size_t> kept = std::nullopt);

}  // namespace gruk
