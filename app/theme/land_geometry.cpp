#include "app/theme/land_geometry.h"

#include <cmath>
#include <numbers>
#include <string>

#include "core/realm/seeded_generator.h"
#include "core/realm/stable_hash.h"

namespace gruk {

namespace {

constexpr double landStrength = 0.5;
constexpr double coastStrength = 0.25;
constexpr double speckleStrength = 0.09;
constexpr double islandOutline = 1.2;
constexpr double islandReach = 0.46;
constexpr int clusters = 6;

std::uint64_t seedOf(const RealmIdentity& identity)
{
    std::string text(rawString(identity.shape));
    for (const std::string_view part :
         {rawString(identity.division), rawString(identity.primary), rawString(identity.secondary),
          rawString(identity.charge)}) {
        text += '|';
        text += part;
    }
    return stableHash(text);
}

// The order of the draws is fixed below: each one moves all that follow.

QPainterPath coast(SeededGenerator& generator, const QRectF& canvas)
{
    const std::uint64_t count = 10 + generator.bounded(5);
    QPainterPath path;
    for (std::uint64_t index = 0; index < count; ++index) {
        const double angle =
            2 * std::numbers::pi * static_cast<double>(index) / static_cast<double>(count);
        const double r = generator.unit(0.82, 1.18);
        const QPointF vertex(
            canvas.center().x() + islandReach * canvas.width() * std::cos(angle) * r,
            canvas.center().y() + islandReach * canvas.height() * std::sin(angle) * r);
        if (index == 0) {
            path.moveTo(vertex);
        } else {
            path.lineTo(vertex);
        }
    }
    path.closeSubpath();
    return path;
}

void addSpeckles(SeededGenerator& generator, const QRectF& canvas, Drawing& drawing)
{
    const double x = canvas.left() + canvas.width() * generator.unit(0.12, 0.88);
    const double y = canvas.top() + canvas.height() * generator.unit(0.12, 0.88);
    const std::uint64_t count = 2 + generator.bounded(3);
    for (std::uint64_t dot = 0; dot < count; ++dot) {
        const double dx = generator.unit(-8, 8);
        const double dy = generator.unit(-8, 8);
        const double radius = generator.unit(1.0, 2.2);
        QPainterPath path;
        path.addEllipse(QPointF(x + dx, y + dy), radius, radius);
        drawing.push_back({.path = path, .role = Role::ink, .opacity = speckleStrength});
    }
}

}  // namespace

Drawing landDrawing(const RealmIdentity& identity, const QRectF& canvas)
{
    SeededGenerator generator(seedOf(identity));
    const QPainterPath land = coast(generator, canvas);
    Drawing drawing = {
        {.path = land, .role = Role::paperInset, .opacity = landStrength},
        {.path = land,
         .role = Role::ink,
         .opacity = coastStrength,
         .stroke = DrawingStroke{.width = islandOutline, .dashes = {4, 3}}},
    };
    for (int cluster = 0; cluster < clusters; ++cluster) {
        addSpeckles(generator, canvas, drawing);
    }
    return drawing;
}

}  // namespace gruk
