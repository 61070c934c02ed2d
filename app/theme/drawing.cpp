#include "app/theme/drawing.h"

#include <QPainter>

namespace gruk {

namespace {

QPen penOf(const DrawingStroke& stroke, const QColor& colour)
{
    QPen pen(colour, stroke.width, Qt::SolidLine, stroke.cap, stroke.join);
    pen.setMiterLimit(stroke.miterLimit);
    if (!stroke.dashes.empty()) {
        // A pen counts its dashes in its own widths.
        QList<qreal> pattern;
        for (const double length : stroke.dashes) {
            pattern.append(length / stroke.width);
        }
        pen.setDashPattern(pattern);
    }
    return pen;
}

}  // namespace

void paintDrawing(QPainter& painter, const Drawing& drawing, const Theme& theme)
{
    for (const DrawingStep& step : drawing) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        if (!step.clip.isEmpty()) {
            painter.setClipPath(step.clip, Qt::IntersectClip);
        }
        const QColor colour = theme.colour(step.role, step.opacity);
        if (step.stroke) {
            painter.strokePath(step.path, penOf(*step.stroke, colour));
        } else {
            painter.fillPath(step.path, colour);
        }
        painter.restore();
    }
}

void drawLine(QPainter& painter, const QRect& room, const QString& text)
{
    const QFontMetrics metrics = painter.fontMetrics();
    const int baseline = room.top() + (room.height() - metrics.height()) / 2 + metrics.ascent();
    painter.drawText(QPoint(room.left(), baseline), text);
}

}  // namespace gruk
