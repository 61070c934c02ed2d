#include "app/theme/shield_geometry.h"

#include <algorithm>
#include <iterator>

#include "app/theme/card_painter.h"
#include "app/theme/charge_geometry.h"

namespace gruk {

namespace {

/// How much of the canvas stays free at each side.
constexpr double shieldMargin = 0.04;
constexpr double squareCorner = 0.16;
constexpr double chevronBand = 0.24;
constexpr double chargeSize = 0.45;
constexpr double shieldLine = 1.5;

QPainterPath kite(const QRectF& r)
{
    constexpr double shoulder = 0.12;
    constexpr double waist = 0.5;
    constexpr double hip = 0.86;
    constexpr double tip = 0.18;
    constexpr double brow = 0.25;
    const double w = r.width();
    const double h = r.height();
    const double middle = r.center().x();
    QPainterPath path(QPointF(r.left(), r.top() + shoulder * h));
    path.lineTo(r.left(), r.top() + waist * h);
    path.cubicTo(r.left(), r.top() + hip * h, middle - tip * w, r.bottom(), middle, r.bottom());
    path.cubicTo(middle + tip * w, r.bottom(), r.right(), r.top() + hip * h, r.right(),
                 r.top() + waist * h);
    path.lineTo(r.right(), r.top() + shoulder * h);
    path.cubicTo(r.left() + (1 - brow) * w, r.top(), r.left() + brow * w, r.top(), r.left(),
                 r.top() + shoulder * h);
    path.closeSubpath();
    return path;
}

QPainterPath banner(const QRectF& r)
{
    constexpr double notch = 0.22;
    QPainterPath path(r.topLeft());
    path.lineTo(r.topRight());
    path.lineTo(r.bottomRight());
    path.lineTo(r.center().x(), r.bottom() - notch * r.height());
    path.lineTo(r.bottomLeft());
    path.closeSubpath();
    return path;
}

QPainterPath chevron(const QRectF& r)
{
    const double band = chevronBand * r.height();
    QPainterPath path(r.bottomLeft());
    path.lineTo(r.center());
    path.lineTo(r.bottomRight());
    path.lineTo(r.right(), r.bottom() - band);
    path.lineTo(r.center().x(), r.center().y() - band);
    path.lineTo(r.left(), r.bottom() - band);
    path.closeSubpath();
    return path;
}

/// The part of the field in the second tincture; empty where there is none.
QPainterPath secondField(Division division, const QRectF& r)
{
    constexpr double third = 1.0 / 3;
    QPainterPath path;
    switch (division) {
    case Division::plain:
        break;
    case Division::halved:
        path.addRect(QRectF(r.center().x(), r.top(), r.width() / 2, r.height()));
        break;
    case Division::striped:
        path.addRect(QRectF(r.left(), r.top() + r.height() * third, r.width(), r.height() * third));
        break;
    case Division::chevron:
        path = chevron(r);
        break;
    }
    return path;
}

QRectF chargeSquare(const QRectF& r)
{
    const double side = chargeSize * std::min(r.width(), r.height());
    return {r.center().x() - side / 2, r.center().y() - side / 2, side, side};
}

/// What of the canvas the shield takes.
QRectF shieldRect(const QRectF& canvas)
{
    const double dx = shieldMargin * canvas.width();
    const double dy = shieldMargin * canvas.height();
    return canvas.adjusted(dx, dy, -dx, -dy);
}

Drawing field(const RealmIdentity& identity, const QRectF& r)
{
    const QPainterPath outline = shieldOutline(identity.shape, r);
    // The first tincture lies under the whole field and not beside the second, whose edge would
    // let the ground shine through between two smooth edges.
    Drawing drawing = {{.path = outline, .role = roleOf(identity.primary)}};
    QPainterPath second = secondField(identity.division, r);
    if (!second.isEmpty()) {
        second.setFillRule(Qt::WindingFill);
        drawing.push_back({.path = second, .role = roleOf(identity.secondary), .clip = outline});
    }
    return drawing;
}

DrawingStep outlineStep(const RealmIdentity& identity, const QRectF& r)
{
    return {.path = shieldOutline(identity.shape, r),
            .role = Role::ink,
            .stroke =
                DrawingStroke{.width = shieldLine, .cap = Qt::RoundCap, .join = Qt::RoundJoin}};
}

}  // namespace

QPainterPath shieldOutline(FieldShape shape, const QRectF& bounds)
{
    QPainterPath path;
    switch (shape) {
    case FieldShape::round:
        path.addEllipse(bounds);
        break;
    case FieldShape::kite:
        path = kite(bounds);
        break;
    case FieldShape::banner:
        path = banner(bounds);
        break;
    case FieldShape::square: {
        const double radius = squareCorner * bounds.width();
        path = cutPath(bounds, {radius, radius, radius, radius});
        break;
    }
    }
    path.setFillRule(Qt::WindingFill);
    return path;
}

Drawing fieldDrawing(const RealmIdentity& identity, const QRectF& canvas)
{
    const QRectF r = shieldRect(canvas);
    Drawing drawing = field(identity, r);
    drawing.push_back(outlineStep(identity, r));
    return drawing;
}

Drawing shieldDrawing(const RealmIdentity& identity, const QRectF& canvas)
{
    const QRectF r = shieldRect(canvas);
    Drawing drawing = field(identity, r);
    std::ranges::move(chargeDrawing(identity.charge, chargeSquare(r)), std::back_inserter(drawing));
    drawing.push_back(outlineStep(identity, r));
    return drawing;
}

}  // namespace gruk
