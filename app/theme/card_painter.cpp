#include "app/theme/card_painter.h"

#include <algorithm>

#include <QPainter>

namespace gruk {

namespace {

constexpr double miterLimit = 10;
/// How far along the radius a corner's handles lie; more than an arc's 0.552, which makes the
/// curve set in gently.
constexpr double handle = 0.64;

double shrinkToFit(const QRectF& bounds, const Corners& c)
{
    double scale = 1;
    const auto fit = [&scale](double length, double a, double b) {
        if (a + b > length && a + b > 0) {
            scale = std::min(scale, std::max(0.0, length) / (a + b));
        }
    };
    fit(bounds.width(), c.topLeft, c.topRight);
    fit(bounds.width(), c.bottomLeft, c.bottomRight);
    fit(bounds.height(), c.topLeft, c.bottomLeft);
    fit(bounds.height(), c.topRight, c.bottomRight);
    return scale;
}

}  // namespace

QPainterPath cutPath(const QRectF& bounds, const Corners& corners)
{
    const double scale = shrinkToFit(bounds, corners);
    const double tl = corners.topLeft * scale;
    const double tr = corners.topRight * scale;
    const double br = corners.bottomRight * scale;
    const double bl = corners.bottomLeft * scale;
    const double rest = 1 - handle;
    const double left = bounds.left();
    const double top = bounds.top();
    const double right = bounds.right();
    const double bottom = bounds.bottom();

    QPainterPath path;
    path.moveTo(left + tl, top);
    path.lineTo(right - tr, top);
    path.cubicTo(right - tr * rest, top, right, top + tr * rest, right, top + tr);
    path.lineTo(right, bottom - br);
    path.cubicTo(right, bottom - br * rest, right - br * rest, bottom, right - br, bottom);
    path.lineTo(left + bl, bottom);
    path.cubicTo(left + bl * rest, bottom, left, bottom - bl * rest, left, bottom - bl);
    path.lineTo(left, top + tl);
    path.cubicTo(left, top + tl * rest, left + tl * rest, top, left + tl, top);
    path.closeSubpath();
    return path;
}

QRectF cardBody(const QRectF& bounds)
{
    return bounds.adjusted(1, 1, -1 - Measure::shadowOffset, -1 - Measure::shadowOffset);
}

void paintCard(QPainter& painter, const QRectF& bounds, const Theme& theme)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QPainterPath body = cutPath(cardBody(bounds), cardCorners);

    const QPainterPath shadow = body.translated(Measure::shadowOffset, Measure::shadowOffset);
    painter.fillPath(shadow.subtracted(body), theme.colour(Role::ink, Strength::shadow));
    painter.fillPath(body, theme.colour(Role::paperCard, Strength::card));
    QPen outline(theme.colour(Role::ink, Strength::outline), Measure::outline);
    outline.setJoinStyle(Qt::MiterJoin);
    outline.setMiterLimit(miterLimit);
    painter.strokePath(body, outline);
    painter.restore();
}

}  // namespace gruk
