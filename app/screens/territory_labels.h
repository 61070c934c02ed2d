#pragma once

#include <cstddef>
#include <optional>

#include <QPointF>
#include <QRectF>

#include "app/screens/territory_room.h"

namespace gruk {

/// What is drawn of the two lines that a territory may carry, about the points that they are
/// centred on, in the pixels of the map.
struct TerritoryLabelInk {
    QRectF name;
    QRectF size;
};

/// Where the two lines of a territory are centred.
struct TerritoryLabelPlace {
    QPointF name;
    /// None for a land that has room for its name only.
    std::optional<QPointF> size;
};

/// Where the label of a territory stands, so that all that is drawn of it lies in its own land as
/// that is painted: about the anchor if it can, else as near to it as there is room, with some land
/// around it where there is that much. Where there is room for the name only, it stands alone;
/// where there is none for the name, nothing is returned. Since no two lands overlap, no two labels
/// do. Pure; any thread.
[[nodiscard]] std::optional<TerritoryLabelPlace>
territoryLabelPlace(const TerritoryRoom& room, std::size_t territory, const TerritoryLabelInk& ink);

}  // namespace gruk
