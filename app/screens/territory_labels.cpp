#include "app/screens/territory_labels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include <QRectF>

namespace gruk {

namespace {

/// How far above and below the anchor the two lines are centred.
constexpr double nameAbove = 6;
constexpr double sizeBelow = 7;
/// How far a drawn border may run inside the cells that it goes around, in cells: what the wobble
/// and the smoothing take off a corner.
constexpr double borderReach = 0.25;
/// Land of fewer cells is a dot, which carries no name.
constexpr int smallestNamedLand = 12;

int below(double edge)
{
    return static_cast<int>(std::floor(edge));
}

int above(double edge)
{
    return static_cast<int>(std::ceil(edge));
}

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
        forEachPlace(consider);
        return best ? std::optional(*best * scale_) : std::nullopt;
    }

    /// The place in the land about which the least of `box` lies outside it, the nearest to the
    /// anchor of these.
    [[nodiscard]] QPointF roomiest(const QRectF& box) const
    {
        const QRectF cells(box.topLeft() / scale_, box.size() / scale_);
        QPointF best;
        auto least = std::pair(std::numeric_limits<int>::max(), 0.0);
        forEachPlace([&](const QPointF& at) {
            const double distance = std::hypot(at.x() - anchor_.x, at.y() - anchor_.y);
            const std::pair rank(foreignCells(cells.translated(at)), distance);
            if (rank < least) {
                best = at;
                least = rank;
            }
        });
        return best * scale_;
    }

    [[nodiscard]] bool isDot() const
    {
        return std::ranges::count(map_.owners, territory_) < smallestNamedLand;
    }

private:
    /// Every quarter of a cell, in its own land.
    template <typename Consider>
    void forEachPlace(const Consider& consider) const
    {
        constexpr std::array steps = {0.0, 0.25, 0.5, 0.75};
        for (int index = 0; index < mapResolution * mapResolution; ++index) {
            if (map_.owners[static_cast<std::size_t>(index)] != territory_) {
                continue;
            }
            for (const double x : steps) {
                for (const double y : steps) {
                    consider(QPointF(index / mapResolution + x, index % mapResolution + y));
                }
            }
        }
    }

    [[nodiscard]] static bool isOnMap(int x, int y)
    {
        return x >= 0 && y >= 0 && x < mapResolution && y < mapResolution;
    }

    [[nodiscard]] bool isOwnCell(int x, int y) const
    {
        return isOnMap(x, y)
               && map_.owners[static_cast<std::size_t>(x * mapResolution + y)] == territory_;
    }

    /// How much of `cells` is not its own.
    [[nodiscard]] int foreignCells(const QRectF& cells) const
    {
        int count = 0;
        for (int x = below(cells.left()); x < above(cells.right()); ++x) {
            for (int y = below(cells.top()); y < above(cells.bottom()); ++y) {
                // On other land a name can be read better than half in the sea.
                count += isOwnCell(x, y) ? 0 : isOnMap(x, y) ? 1 : 3;
            }
        }
        return count;
    }

    [[nodiscard]] bool isOwn(const QRectF& cells) const
    {
        for (int x = below(cells.left()); x < above(cells.right()); ++x) {
            for (int y = below(cells.top()); y < above(cells.bottom()); ++y) {
                if (!isOwnCell(x, y)) {
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

std::optional<QPointF> crampedNamePlace(const TerritoryMap& map, std::size_t territory,
                                        const QSizeF& name, double side)
{
    if (side <= 0) {
        return std::nullopt;
    }
    const Room room(map, territory, side);
    return room.isDot() ? std::nullopt
                        : std::optional(room.roomiest(boxOf({name, QSizeF()}, false)));
}

}  // namespace gruk
