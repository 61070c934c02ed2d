#include "app/theme/land_text.h"

#include <QFontMetricsF>
#include <QPainter>

namespace gruk {

namespace {

constexpr int namePixels = 11;
constexpr int sizePixels = 9;
constexpr double sizeStrength = 0.85;
/// The outline is the text itself, moved by a pixel in each of the eight directions.
constexpr int outline = 1;

}  // namespace

QFont landFont(const Theme& theme, LandLine line)
{
    QFont font = theme.font(line == LandLine::name ? TextStyle::bodyStrong : TextStyle::small);
    font.setPixelSize(line == LandLine::name ? namePixels : sizePixels);
    return font;
}

QSizeF landTextSize(const Theme& theme, LandLine line, const QString& text)
{
    const QFontMetricsF metrics(landFont(theme, line));
    return {metrics.horizontalAdvance(text) + 2 * outline, metrics.height() + 2 * outline};
}

void paintLandText(QPainter& painter, const QPointF& centre, const QString& text, LandLine line,
                   const Theme& theme)
{
    painter.save();
    const QFont font = landFont(theme, line);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const QPointF start(centre.x() - metrics.horizontalAdvance(text) / 2,
                        centre.y() + (metrics.ascent() - metrics.descent()) / 2);
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
