#include "core/realm/chaikin_smoothing.h"

#include <utility>

namespace gruk::ChaikinSmoothing {

namespace {

GridPoint between(const GridPoint& a, const GridPoint& b, double partOfA, double partOfB)
{
    return {partOfA * a.x + partOfB * b.x, partOfA * a.y + partOfB * b.y};
}

}  // namespace

GridLoop smooth(const GridLoop& points, int iterations)
{
    if (points.size() < 3) {
        return points;
    }
    GridLoop line = points;
    GridLoop cut;
    for (int round = 0; round < iterations; ++round) {
        cut.clear();
        cut.reserve(2 * line.size());
        for (std::size_t i = 0; i < line.size(); ++i) {
            const GridPoint& a = line[i];
            const GridPoint& b = line[i + 1 == line.size() ? 0 : i + 1];
            cut.push_back(between(a, b, 0.75, 0.25));
            cut.push_back(between(a, b, 0.25, 0.75));
        }
        std::swap(line, cut);
    }
    return line;
}

}  // namespace gruk::ChaikinSmoothing
