#include "app/screens/territory_map_painter.h"

#include <algorithm>
#include <array>

#include <QPainter>

#include "app/screens/territory_copy.h"
#include "app/theme/card_painter.h"
#include "app/theme/land_text.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

/// How long a name may be on the map, the longest first.
constexpr std::array nameWidths = {200.0, 140.0, 100.0, 72.0, 52.0};
constexpr double highlightWidth = 2.5;
constexpr int captionWidth = 260;

}  // namespace

std::optional<TerritoryLabel> territoryLabel(const TerritoryMap& map, std::size_t territory,
                                             const RealmSummary& realm, double side,
                                             const Theme& theme)
{
    const QString name = displayName(realm.displayName);
    const QFontMetricsF metrics(landFont(theme, LandLine::name));
    std::optional<TerritoryLabel> alone;
    TerritoryLabel label;
    label.size = TerritoryCopy::size(realm);
    for (const double width : nameWidths) {
        const QString shortened = metrics.elidedText(name, Qt::ElideMiddle, width);
        if (shortened == label.name) {
            continue;
        }
        label.name = shortened;
        const auto place = territoryLabelPlace(map, territory,
                                               {landTextSize(theme, LandLine::name, label.name),
                                                landTextSize(theme, LandLine::size, label.size)},
                                               side);
        if (!place) {
            continue;
        }
        label.place = *place;
        label.isWhole = place->size && label.name == name;
        if (place->size) {
            return label;
        }
        alone = alone ? alone : label;
    }
    if (!alone) {
        const QSizeF room = landTextSize(theme, LandLine::name, label.name);
        if (const auto at = crampedNamePlace(map, territory, room, side)) {
            label.place = {*at, std::nullopt};
            label.isWhole = false;
            return label;
        }
    }
    return alone;
}

void paintTerritories(QPainter& painter, const TerritoryMap& map,
                      const std::vector<RealmSummary>& summaries, const TerritoryLabels& labels,
                      double side, const Theme& theme)
{
    paintDrawing(painter, territoryDrawing(map, summaries, side), theme);
    for (const std::optional<TerritoryLabel>& label : labels) {
        if (label) {
            paintLandText(painter, label->place.name, label->name, LandLine::name, theme);
        }
        if (label && label->place.size) {
            paintLandText(painter, *label->place.size, label->size, LandLine::size, theme);
        }
    }
}

void paintTerritoryHighlight(QPainter& painter, const Territory& territory, double side,
                             const Theme& theme)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(
        territoryPath(territory, side),
        QPen(theme.colour(Role::ink), highlightWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

void paintTerritoryCaption(QPainter& painter, const RealmSummary& realm, const QRect& land,
                           const QRect& view, const Theme& theme)
{
    const QFont nameFont = theme.font(TextStyle::bodyStrong);
    const QFont sizeFont = theme.font(TextStyle::detail);
    const QFontMetrics nameMetrics(nameFont);
    const QFontMetrics sizeMetrics(sizeFont);
    const QString name = nameMetrics.elidedText(displayName(realm.displayName), Qt::ElideMiddle,
                                                std::min(captionWidth, view.width() / 2));
    const QString size = TerritoryCopy::size(realm);
    const int textWidth =
        std::max(nameMetrics.horizontalAdvance(name), sizeMetrics.horizontalAdvance(size));
    const QSize card(textWidth + 2 * Measure::medium + Measure::shadowOffset,
                     nameMetrics.height() + sizeMetrics.height() + 2 * Measure::small
                         + Measure::shadowOffset);
    const int rightmost = std::max(view.left(), view.right() + 1 - card.width());
    const int lowest = view.bottom() + 1 - card.height();
    const int left = std::clamp(land.center().x() - card.width() / 2, view.left(), rightmost);
    const int over = land.top() - card.height();
    const QRect place(QPoint(left, over >= view.top() ? over : std::min(land.bottom() + 1, lowest)),
                      card);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // A card lets some of its ground through, and here that is land of any colour.
    painter.fillPath(cutPath(cardBody(place), cardCorners), theme.colour(Role::paperCard));
    paintCard(painter, place, theme);
    QRect text = place.adjusted(Measure::medium, Measure::small, 0, 0);
    painter.setFont(nameFont);
    painter.setPen(theme.colour(Role::ink));
    painter.drawText(text, Qt::TextSingleLine, name);
    text.translate(0, nameMetrics.height());
    painter.setFont(sizeFont);
    painter.setPen(theme.colour(Role::ink, Strength::quiet));
    painter.drawText(text, Qt::TextSingleLine, size);
    painter.restore();
}

}  // namespace gruk
