#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <QPainterPath>

#include "app/theme/drawing.h"
#include "core/realm/grid_point.h"
#include "core/realm/realm_summary.h"

/// The map of all realms as shapes, which painting, pointing and assistive technology share. Pure;
/// any thread.

namespace gruk {

/// How many cells the map has along each side.
inline constexpr int mapResolution = 48;

/// The land of one realm, in cells.
struct Territory {
    /// Whose it is, by the place in the summaries that the map was made of.
    std::size_t summary = 0;
    /// Its borders, wobbled and smoothed: around it, and around what lies inside it and is not its.
    std::vector<GridLoop> borders;
    /// Where its label belongs: the middle of the corners of its largest border. It need not lie in
    /// the land.
    GridPoint anchor;

    friend bool operator==(const Territory&, const Territory&) = default;
};

/// Who holds what. A plain value: the same summaries give the same map on every machine.
struct TerritoryMap {
    /// In the order of the summaries. One that holds no cell has none.
    std::vector<Territory> territories;
    /// Whose each cell is, as a place in `territories`, column by column.
    std::vector<std::uint32_t> owners;

    friend bool operator==(const TerritoryMap&, const TerritoryMap&) = default;
};

/// The middle of the corners of the loop with the largest area, the first of those that are equally
/// large. There must be one.
[[nodiscard]] GridPoint anchorOf(const std::vector<GridLoop>& loops);

/// The land that each realm holds by its size. No realms give no land at all.
[[nodiscard]] TerritoryMap territoryMap(const std::vector<RealmSummary>& summaries);

/// Whose cell is under `point` on a map that is `side` long; none beyond it.
[[nodiscard]] std::optional<std::size_t> territoryAt(const TerritoryMap& map, const QPointF& point,
                                                     double side);

/// All borders of a territory on a map that is `side` long, as one path by the even-odd rule, so
/// that what is not its own stays open.
[[nodiscard]] QPainterPath territoryPath(const Territory& territory, double side);

/// All land and then all borders, with the gaps where lands meet closed beneath. The colours are
/// those of the derived shields, whatever the user has painted. `summaries` are those that the map
/// was made of.
[[nodiscard]] Drawing territoryDrawing(const TerritoryMap& map,
                                       const std::vector<RealmSummary>& summaries, double side);

enum class MapDirection { left, right, up, down };

/// The nearest territory that lies in that direction of `from` and not more to the side than ahead,
/// by their anchors; none when there is none.
[[nodiscard]] std::optional<std::size_t> neighbour(const TerritoryMap& map, std::size_t from,
                                                   MapDirection direction);

}  // namespace gruk
