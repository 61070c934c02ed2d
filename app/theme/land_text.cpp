#include "app/theme/land_text.h"

#include <algorithm>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

namespace gruk {

namespace {

constexpr int namePixels = 11;
constexpr int sizePixels = 9;
constexpr double sizeStrength = 0.85;
/// The outline is the text itself, moved by a pixel in each of the eight directions.
constexpr int outline = 1;

/// Where the base line of a text begins, from the point that it is centred on.
QPointF startOf(const QFontMetricsF& metrics, const QString& text)
{
    return {-metrics.horizontalAdvance(text) / 2, (metrics.ascent() - metrics.descent()) / 2};
}

}  // namespace

QFont landFont(const Theme& theme, LandLine line)
{
    QFont font = theme.font(line == LandLine::name ? TextStyle::bodyStrong : TextStyle::small);
    font.setPixelSize(line == LandLine::name ? namePixels : sizePixels);
    return font;
}

QRectF landTextInk(const Theme& theme, LandLine line, const QString& text)
{
    const QFont font = landFont(theme, line);
    const QFontMetricsF metrics(font);
    QRectF ink = metrics.tightBoundingRect(text);
    // Marks over and under letters are measured where they would stand by themselves, not where
    // they were put; their outlines are right, but each is drawn on whole pixels.
    if (std::ranges::any_of(text, [](QChar character) { return character.isMark(); })) {
        QPainterPath outlines;
        outlines.addText(QPointF(), font, text);
        ink |= outlines.boundingRect().adjusted(-1, -1, 1, 1);
    }
    return ink.translated(startOf(metrics, text)).adjusted(-outline, -outline, outline, outline);
}

void paintLandText(QPainter& painter, const QPointF& centre, const QString& text, LandLine line,
                   const Theme& theme)
{
    painter.save();
    const QFont font = landFont(theme, line);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const QPointF start = centre + startOf(metrics, text);
    painter.setPen(theme.colour(Role::ink));
    for (int dy = -outline; dy <= outline; ++dy) {
        for (int dx = -outline; dx <= outline; ++dx) {
            if (dx != 0 || dy != 0) {
                painter.drawText(start + QPointF(dx, dy), text);
            }
        }
    }
    painter.setPen(
        theme.colour(Role::paperCard, line == LandLine::name ? Strength::full : sizeStrength));
    painter.drawText(start, text);
    painter.restore();
}

}  // namespace gruk
