#include "app/screens/territory_map_painter.h"

#include <algorithm>
#include <array>

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>

#include "app/screens/territory_copy.h"
#include "app/theme/card_painter.h"
#include "app/theme/land_text.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

/// How long a name may be on the map, the longest first.
constexpr std::array nameWidths = {200.0, 140.0, 100.0, 72.0, 52.0, 40.0};
/// And then its first letters only.
constexpr std::array fewLetters = {4, 3, 2};
/// How many of these, from the longest, tell so much that the name alone is not worth more than its
/// next shorter form with the size.
constexpr std::size_t worthTheSize = 5;
constexpr double highlightWidth = 2.5;
constexpr int captionWidth = 260;

/// The first letters of a name, as readers count letters. The whole name if it is no longer than
/// that with the mark of what is left out.
QString beginningOf(const QString& name, int letters)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    qsizetype end = 0;
    for (int letter = 0; letter <= letters; ++letter) {
        if (finder.toNextBoundary() < 0 || finder.position() == name.size()) {
            return name;
        }
        end = letter < letters ? finder.position() : end;
    }
    return name.first(end) + QChar(0x2026);
}

/// What a name may be shortened to, the longest first: to what leaves enough of it, so that the
/// size is worth it, and then to less. Made when they are asked for, since most names fit whole.
QString formOf(const QString& name, std::size_t number, const QFontMetricsF& metrics)
{
    return number < nameWidths.size()
               ? metrics.elidedText(name, Qt::ElideMiddle, nameWidths[number])
               : beginningOf(name, fewLetters.at(number - nameWidths.size()));
}

std::optional<TerritoryLabel> labelIn(const TerritoryRoom& room, std::size_t territory,
                                      const RealmSummary& realm, const Theme& theme)
{
    const QString name = displayName(realm.displayName);
    const QFontMetricsF metrics(landFont(theme, LandLine::name));
    const QString size = TerritoryCopy::size(realm);
    const QRectF sizeInk = landTextInk(theme, LandLine::size, size);
    std::optional<TerritoryLabel> alone;
    QString former;
    for (std::size_t number = 0; number < nameWidths.size() + fewLetters.size(); ++number) {
        if (alone && number >= worthTheSize) {
            break;
        }
        const QString form = formOf(name, number, metrics);
        if (form == former) {
            continue;
        }
        former = form;
        const auto place = territoryLabelPlace(room, territory,
                                               {landTextInk(theme, LandLine::name, form), sizeInk});
        if (place && place->size) {
            return TerritoryLabel{form, size, *place, form == name};
        }
        if (place && !alone) {
            alone = TerritoryLabel{form, size, *place, false};
        }
    }
    return alone;
}

}  // namespace

TerritoryLabels territoryLabels(const TerritoryMap& map, const std::vector<RealmSummary>& summaries,
                                double side, const Theme& theme)
{
    const TerritoryRoom room(map, side);
    TerritoryLabels labels;
    for (std::size_t index = 0; index < map.territories.size(); ++index) {
        labels.push_back(labelIn(room, index, summaries.at(map.territories[index].summary), theme));
    }
    return labels;
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
