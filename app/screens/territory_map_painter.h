#pragma once

#include <optional>
#include <vector>

#include "app/screens/territory_geometry.h"
#include "app/screens/territory_labels.h"
#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// What is written on a territory, and where.
struct TerritoryLabel {
    QString name;
    QString size;
    TerritoryLabelPlace place;
    /// Whether all of both lines can be read.
    bool isWhole = false;
};

/// The label of a territory on a map that is `side` long. A name that is too long for its land is
/// shortened in its middle; none is written on a land that is a mere dot.
[[nodiscard]] std::optional<TerritoryLabel> territoryLabel(const TerritoryMap& map,
                                                           std::size_t territory,
                                                           const RealmSummary& realm, double side,
                                                           const Theme& theme);

using TerritoryLabels = std::vector<std::optional<TerritoryLabel>>;

/// Paints all land with its borders and labels, from the origin of `painter`.
void paintTerritories(QPainter& painter, const TerritoryMap& map,
                      const std::vector<RealmSummary>& summaries, const TerritoryLabels& labels,
                      double side, const Theme& theme);

/// Paints the border of one territory at full strength.
void paintTerritoryHighlight(QPainter& painter, const Territory& territory, double side,
                             const Theme& theme);

/// Paints a small card with a realm's name and size beside its land, over it where there is room
/// in `view`, else under it.
void paintTerritoryCaption(QPainter& painter, const RealmSummary& realm, const QRect& land,
                           const QRect& view, const Theme& theme);

}  // namespace gruk
