#include "app/screens/territory_labels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace gruk {

namespace {

/// How far above and below the anchor the two lines are centred.
constexpr int nameAbove = 6;
constexpr int sizeBelow = 7;
/// The land that a label needs around its ink, in pixels, since text is drawn on whole ones.
constexpr double leastAround = 0.5;
/// The land that a label has around it where there is that much.
constexpr double goodAround = 3;
constexpr double far = std::numeric_limits<double>::infinity();

/// What has to be in the land, about a point so many pixels below the middle of a label.
struct Box {
    QRectF ink;
    int below = 0;
};
using Boxes = std::vector<Box>;

/// The land that is searched, and how much of it a label is to have around it.
struct Land {
    const TerritoryRoom& room;
    std::size_t territory = 0;
    double around = 0;
};

/// Where the middle of a label may stand, in its row at `y`, for a box to be in the land.
std::vector<FreeStretch> middles(const Land& land, const Box& box, double y)
{
    const QRectF ink = box.ink.adjusted(-land.around, -land.around, land.around, land.around)
                           .translated(0, y + box.below);
    std::vector<FreeStretch> stretches = land.room.free(land.territory, ink.top(), ink.bottom());
    for (FreeStretch& stretch : stretches) {
        stretch = {stretch.left - ink.left(), stretch.right - ink.right()};
    }
    std::erase_if(stretches,
                  [](const FreeStretch& stretch) { return stretch.right < stretch.left; });
    return stretches;
}

std::vector<FreeStretch> inBoth(const std::vector<FreeStretch>& some,
                                const std::vector<FreeStretch>& others)
{
    std::vector<FreeStretch> both;
    for (const FreeStretch& one : some) {
        for (const FreeStretch& other : others) {
            const FreeStretch range{std::max(one.left, other.left),
                                    std::min(one.right, other.right)};
            if (range.left <= range.right) {
                both.push_back(range);
            }
        }
    }
    return both;
}

/// The place for the middle of a label in its row at `y` that is nearest to `wanted`.
std::optional<double> nearestInRow(const Land& land, const Boxes& boxes, double y, double wanted)
{
    std::vector<FreeStretch> places = middles(land, boxes.front(), y);
    for (std::size_t index = 1; index < boxes.size() && !places.empty(); ++index) {
        places = inBoth(places, middles(land, boxes[index], y));
    }
    double nearest = far;
    for (const FreeStretch& place : places) {
        const double x = std::clamp(wanted, place.left, place.right);
        nearest = std::abs(x - wanted) < std::abs(nearest - wanted) ? x : nearest;
    }
    return places.empty() ? std::nullopt : std::optional(nearest);
}

/// The place for the middle of a label that is nearest to the anchor, whole pixels above or below
/// it.
std::optional<QPointF> nearest(const Land& land, const Boxes& boxes)
{
    const QPointF& anchor = land.room.anchor(land.territory);
    const QRect& bounds = land.room.bounds(land.territory);
    const double farthest = std::max(anchor.y() - bounds.top(), bounds.bottom() + 1 - anchor.y());
    std::optional<QPointF> best;
    double least = far;
    for (int away = 0; away <= farthest && away < least; ++away) {
        for (const double y : {anchor.y() - away, anchor.y() + away}) {
            const auto x = nearestInRow(land, boxes, y, anchor.x());
            const double distance = x ? std::hypot(*x - anchor.x(), away) : far;
            if (distance < least) {
                best = QPointF(*x, y);
                least = distance;
            }
        }
    }
    return best;
}

std::optional<QPointF> find(const TerritoryRoom& room, std::size_t territory, const Boxes& boxes)
{
    const auto least = nearest({room, territory, leastAround}, boxes);
    if (!least || *least == room.anchor(territory)) {
        return least;
    }
    const auto good = nearest({room, territory, goodAround}, boxes);
    return good ? good : least;
}

}  // namespace

std::optional<TerritoryLabelPlace>
territoryLabelPlace(const TerritoryRoom& room, std::size_t territory, const TerritoryLabelInk& ink)
{
    QRectF size = ink.size;
    const double gap = size.top() + sizeBelow - (ink.name.bottom() - nameAbove);
    if (gap >= 0) {
        // No border runs through between the two.
        size.setTop(size.top() - gap);
        if (const auto at = find(room, territory, {{ink.name, -nameAbove}, {size, sizeBelow}})) {
            return TerritoryLabelPlace{*at - QPointF(0, nameAbove), *at + QPointF(0, sizeBelow)};
        }
    }
    if (const auto at = find(room, territory, {{ink.name, 0}})) {
        return TerritoryLabelPlace{*at, std::nullopt};
    }
    return std::nullopt;
}

}  // namespace gruk
