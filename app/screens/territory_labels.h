#pragma once

#include <optional>

#include <QPointF>
#include <QSizeF>
#include <QString>

#include "app/screens/territory_geometry.h"

namespace gruk {

/// The two lines that a territory may carry, as they measure, in the pixels of the map.
struct TerritoryLabelSize {
    QSizeF name;
    QSizeF size;
};

/// Where the two lines of a territory are centred.
struct TerritoryLabelPlace {
    QPointF name;
    /// None for a land that has room for its name only.
    std::optional<QPointF> size;
};

/// Where a territory's label stands on a map that is `side` long, so that it lies in its own land
/// with everything drawn: about the anchor if it can, else as near to it as there is room. Where
/// there is room for the name only, it stands alone; where there is none for the name, nothing is
/// returned. Since no two lands overlap, no two labels do. Pure; any thread.
[[nodiscard]] std::optional<TerritoryLabelPlace> territoryLabelPlace(const TerritoryMap& map,
                                                                     std::size_t territory,
                                                                     const TerritoryLabelSize& size,
                                                                     double side);

/// Where the name of a land stands that has no room for any: in the land, where the least of it
/// lies outside, and as near to the anchor as that allows. None for a land that is a mere dot.
/// Pure; any thread.
[[nodiscard]] std::optional<QPointF>
crampedNamePlace(const TerritoryMap& map, std::size_t territory, const QSizeF& name, double side);

}  // namespace gruk
