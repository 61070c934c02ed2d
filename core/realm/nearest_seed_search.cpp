#include "core/realm/nearest_seed_search.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace gruk {

namespace {

/// A rectangle of cells: columns and rows from the first to before the last.
struct Block {
    int left;
    int top;
    int right;
    int bottom;

    [[nodiscard]] int width() const { return right - left; }
    [[nodiscard]] int height() const { return bottom - top; }
};

double distance(const PlacedSeed& seed, double x, double y)
{
    const double dx = x - seed.x;
    const double dy = y - seed.y;
    return std::sqrt(dx * dx + dy * dy);
}

/// Which of `candidates`, in the order of the list, owns the cell with that centre.
std::size_t nearestSeed(const std::vector<PlacedSeed>& seeds,
                        const std::vector<std::size_t>& candidates, double x, double y)
{
    std::size_t owner = 0;
    double least = std::numeric_limits<double>::max();
    for (const std::size_t candidate : candidates) {
        const double measured = distance(seeds[candidate], x, y) / seeds[candidate].weight;
        if (measured < least) {
            owner = candidate;
            least = measured;
        }
    }
    return owner;
}

class Search {
public:
    Search(const std::vector<PlacedSeed>& seeds, int resolution)
        : seeds_(seeds), resolution_(resolution),
          owners_(static_cast<std::size_t>(resolution) * static_cast<std::size_t>(resolution))
    {
    }

    std::vector<std::size_t> run()
    {
        std::vector<std::size_t> all(seeds_.size());
        std::iota(all.begin(), all.end(), std::size_t{0});
        assign({0, 0, resolution_, resolution_}, all);
        return std::move(owners_);
    }

private:
    /// The middle of the cells, in the unit square.
    [[nodiscard]] double centre(int cell) const { return (cell + 0.5) / resolution_; }

    /// `candidates` holds every seed that can own a cell of `block`, in the order of the list.
    void assign(Block block, const std::vector<std::size_t>& candidates)
    {
        if (block.width() <= smallestPart && block.height() <= smallestPart) {
            for (int y = block.top; y < block.bottom; ++y) {
                for (int x = block.left; x < block.right; ++x) {
                    owners_[static_cast<std::size_t>(y) * static_cast<std::size_t>(resolution_)
                            + static_cast<std::size_t>(x)] =
                        nearestSeed(seeds_, candidates, centre(x), centre(y));
                }
            }
            return;
        }
        Block first = block;
        Block second = block;
        if (block.width() >= block.height()) {
            first.right = second.left = block.left + block.width() / 2;
        } else {
            first.bottom = second.top = block.top + block.height() / 2;
        }
        assign(first, narrowed(first, candidates));
        assign(second, narrowed(second, candidates));
    }

    /// The candidates that may be nearest to the centre of some cell of `block`.
    ///
    /// No cell's centre is as far as `reach` from the middle of the block, so each seed has a
    /// distance that it keeps within and one that it stays beyond; who stays beyond what another
    /// keeps within is never nearest. The slack is far more than all roundings amount to, and only
    /// lets a seed stay that might have gone.
    [[nodiscard]] std::vector<std::size_t> narrowed(Block block,
                                                    const std::vector<std::size_t>& candidates)
    {
        const double left = centre(block.left);
        const double top = centre(block.top);
        const double x = (left + centre(block.right - 1)) / 2;
        const double y = (top + centre(block.bottom - 1)) / 2;
        const double reach = std::hypot(x - left, y - top) + slack;
        double bound = std::numeric_limits<double>::infinity();
        gaps_.clear();
        for (const std::size_t seed : candidates) {
            const double away = distance(seeds_[seed], x, y);
            const double weight = seeds_[seed].weight;
            gaps_.push_back((away - reach) / weight);
            bound = std::min(bound, (away + reach) / weight);
        }
        std::vector<std::size_t> kept;
        for (std::size_t i = 0; i < candidates.size(); ++i) {
            if (gaps_[i] <= bound) {
                kept.push_back(candidates[i]);
            }
        }
        return kept;
    }

    static constexpr double slack = 1e-9;
    /// Up to it, halving costs more than it saves.
    static constexpr int smallestPart = 3;

    const std::vector<PlacedSeed>& seeds_;
    int resolution_;
    std::vector<std::size_t> owners_;
    std::vector<double> gaps_;
};

}  // namespace

std::vector<std::size_t> nearestSeeds(const std::vector<PlacedSeed>& seeds, int resolution)
{
    return Search(seeds, resolution).run();
}

}  // namespace gruk
