#pragma once

#include <optional>
#include <vector>

#include <QString>

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

/// One a territory; none for land without room for as much as the first letters of its name.
using TerritoryLabels = std::vector<std::optional<TerritoryLabel>>;

/// The labels of a map that is `side` long. A name that is too long for its land is shortened, in
/// its middle while that leaves enough of it, else to its first letters, two of them at least.
[[nodiscard]] TerritoryLabels territoryLabels(const TerritoryMap& map,
                                              const std::vector<RealmSummary>& summaries,
                                              double side, const Theme& theme);

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
