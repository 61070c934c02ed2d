#include "app/screens/territory_labels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QRectF>

namespace gruk {

namespace {

/// How far above and below the anchor the two lines are centred.
constexpr double nameAbove = 6;
constexpr double sizeBelow = 7;
/// How far a drawn border may run inside the cells that it goes around, in cells: what the wobble
/// and the smoothing take off a corner.
constexpr double borderReach = 0.25;

/// The room that a label takes, about its anchor.
QRectF boxOf(const TerritoryLabelSize& size, bool hasSize)
{
    const QRectF name(-size.name.width() / 2, -size.name.height() / 2, size.name.width(),
                      size.name.height());
    if (!hasSize) {
        return name;
    }
    return name.translated(0, -nameAbove)
        .united(QRectF(-size.size.width() / 2, sizeBelow - size.size.height() / 2,
                       size.size.width(), size.size.height()));
}

/// Looks for room in one territory.
class Room {
public:
    Room(const TerritoryMap& map, std::size_t territory, double side)
        : map_(map), territory_(static_cast<std::uint32_t>(territory)),
          scale_(side / mapResolution), anchor_(map.territories.at(territory).anchor)
    {
    }

    /// The place nearest to the anchor about which there is room for `box`, in pixels.
    [[nodiscard]] std::optional<QPointF> nearest(const QRectF& box) const
    {
        const QRectF cells(box.topLeft() / scale_, box.size() / scale_);
        const QRectF wanted = cells.adjusted(-borderReach, -borderReach, borderReach, borderReach);
        std::optional<QPointF> best;
        double least = std::numeric_limits<double>::infinity();
        const auto consider = [&](const QPointF& at) {
            const double distance = std::hypot(at.x() - anchor_.x, at.y() - anchor_.y);
            if (distance < least && isOwn(wanted.translated(at))) {
                best = at;
                least = distance;
            }
        };
        consider({anchor_.x, anchor_.y});
        if (best) {
            return *best * scale_;
        }
        for (int index = 0; index < mapResolution * mapResolution; ++index) {
            if (map_.owners[static_cast<std::size_t>(index)] == territory_) {
                const double x = index / mapResolution;
                const double y = index % mapResolution;
                consider({x + half, y + half});
            }
        }
        return best ? std::optional(*best * scale_) : std::nullopt;
    }

private:
    static constexpr double half = 0.5;

    [[nodiscard]] bool isOwn(const QRectF& cells) const
    {
        if (cells.left() < 0 || cells.top() < 0 || cells.right() > mapResolution
            || cells.bottom() > mapResolution) {
            return false;
        }
        const auto end = [](double edge) { return static_cast<int>(std::ceil(edge)); };
        for (int x = static_cast<int>(cells.left()); x < end(cells.right()); ++x) {
            for (int y = static_cast<int>(cells.top()); y < end(cells.bottom()); ++y) {
                if (map_.owners[static_cast<std::size_t>(x * mapResolution + y)] != territory_) {
                    return false;
                }
            }
        }
        return true;
    }

    const TerritoryMap& map_;
    std::uint32_t territory_;
    double scale_;
    GridPoint anchor_;
};

}  // namespace

std::optional<TerritoryLabelPlace> territoryLabelPlace(const TerritoryMap& map,
                                                       std::size_t territory,
                                                       const TerritoryLabelSize& size, double side)
{
    if (side <= 0) {
        return std::nullopt;
    }
    const Room room(map, territory, side);
    for (const bool hasSize : {true, false}) {
        if (const auto at = room.nearest(boxOf(size, hasSize))) {
            if (!hasSize) {
                return TerritoryLabelPlace{*at, std::nullopt};
            }
            return TerritoryLabelPlace{*at - QPointF(0, nameAbove), *at + QPointF(0, sizeBelow)};
        }
    }
    return std::nullopt;
}

}  // namespace gruk
