#include "app/theme/charge_geometry.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace gruk {

namespace {

/// Areas that touch are parts of one path, so that no hair shows between them; they must then turn
/// the same way round, as `addRect` and `addEllipse` do: clockwise on the screen.
QPainterPath joined()
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    return path;
}

void addTriangle(QPainterPath& path, const QPointF& first, const QPointF& second,
                 const QPointF& third)
{
    path.moveTo(first);
    path.lineTo(second);
    path.lineTo(third);
    path.closeSubpath();
}

QPainterPath ring(const QRectF& bounds, double inset)
{
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    path.addEllipse(bounds);
    path.addEllipse(bounds.adjusted(inset, inset, -inset, -inset));
    return path;
}

DrawingStep inPaper(QPainterPath path, double opacity = Strength::full)
{
    return {.path = std::move(path), .role = Role::paperCard, .opacity = opacity};
}

Drawing disk(const QRectF& c)
{
    constexpr double hole = 0.28;
    return {inPaper(ring(c, hole * c.width()))};
}

Drawing lantern(const QRectF& c)
{
    const double s = c.width();
    const QRectF body(c.left() + 0.2 * s, c.top() + 0.3 * s, 0.6 * s, 0.6 * s);
    const double radius = body.width() / 4;
    QPainterPath path = joined();
    path.addRoundedRect(body, radius, radius);
    addTriangle(path, body.topLeft(), {body.center().x(), c.top()}, body.topRight());
    return {inPaper(path)};
}

Drawing tree(const QRectF& c)
{
    const double s = c.width();
    const double middle = c.center().x();
    const double ground = c.top() + 0.65 * s;
    QPainterPath path = joined();
    addTriangle(path, {middle, c.top()}, {c.right(), ground}, {c.left(), ground});
    path.addRect(QRectF(middle - 0.08 * s, ground, 0.16 * s, 0.35 * s));
    return {inPaper(path)};
}

Drawing mountain(const QRectF& c)
{
    constexpr double distance = 0.7;
    const double s = c.width();
    QPainterPath far = joined();
    addTriangle(far, c.bottomLeft(), {c.left() + 0.62 * s, c.top()}, c.bottomRight());
    QPainterPath near = joined();
    addTriangle(near, {c.left() + 0.1 * s, c.bottom()}, {c.left() + 0.42 * s, c.top() + 0.28 * s},
                {c.left() + 0.74 * s, c.bottom()});
    return {inPaper(far, distance), inPaper(near)};
}

Drawing star(const QRectF& c)
{
    constexpr int vertices = 10;
    constexpr double innerShare = 0.42;
    const double outer = c.width() / 2;
    QPainterPath path = joined();
    for (int index = 0; index < vertices; ++index) {
        const double angle = std::numbers::pi * (2.0 * index / vertices - 0.5);
        const double radius = index % 2 == 0 ? outer : outer * innerShare;
        const QPointF vertex =
            c.center() + QPointF(radius * std::cos(angle), radius * std::sin(angle));
        if (index == 0) {
            path.moveTo(vertex);
        } else {
            path.lineTo(vertex);
        }
    }
    path.closeSubpath();
    return {inPaper(path)};
}

Drawing tusk(const QRectF& c)
{
    const double s = c.width();
    const double middle = c.center().y();
    QPainterPath path = joined();
    path.moveTo(c.left() + 0.15 * s, c.top() + 0.15 * s);
    path.quadTo({c.left(), middle}, {c.left() + 0.35 * s, c.bottom()});
    // Of the coordinate itself, not of a length in the square: a shield's place in its canvas
    // gives the tusk its belly.
    path.quadTo({0.9 * c.right(), middle}, {c.left() + 0.15 * s, c.top() + 0.15 * s});
    path.closeSubpath();
    return {inPaper(path)};
}

Drawing key(const QRectF& c)
{
    const double s = c.width();
    const double d = 0.42 * s;
    const QRectF bow(c.left(), c.top() + (s - d) / 2, d, d);
    const double t = 0.16 * s;
    const double start = bow.right() - 0.1 * d;
    const QRectF shaft(start, c.center().y() - t / 2, c.right() - start, t);
    const double u = 0.8 * t;
    QPainterPath rest = joined();
    rest.addRect(shaft);
    rest.addRect(QRectF(c.right() - 1.8 * u, shaft.bottom(), u, 0.9 * t));
    rest.addRect(QRectF(c.right() - 0.6 * u, shaft.bottom(), u, 1.3 * t));
    return {inPaper(ring(bow, 0.28 * d)), inPaper(rest)};
}

Drawing acorn(const QRectF& c)
{
    constexpr double halfTurn = 180;
    const double s = c.width();
    const QRectF nut(c.left() + 0.2 * s, c.top() + 0.35 * s, 0.6 * s, 0.55 * s);
    QPainterPath nutPath = joined();
    nutPath.addEllipse(nut);
    const double radius = 0.36 * s;
    const QPointF centre(c.center().x(), nut.top() + 0.12 * nut.height());
    const QRectF round(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    QPainterPath cap = joined();
    cap.arcMoveTo(round, halfTurn);
    cap.arcTo(round, halfTurn, -halfTurn);
    cap.closeSubpath();
    return {inPaper(nutPath), inPaper(cap)};
}

}  // namespace

Drawing chargeDrawing(Charge charge, const QRectF& square)
{
    switch (charge) {
    case Charge::disk:
        return disk(square);
    case Charge::lantern:
        return lantern(square);
    case Charge::tree:
        return tree(square);
    case Charge::mountain:
        return mountain(square);
    case Charge::star:
        return star(square);
    case Charge::tusk:
        return tusk(square);
    case Charge::key:
        return key(square);
    case Charge::acorn:
        return acorn(square);
    }
    return {};
}

}  // namespace gruk
