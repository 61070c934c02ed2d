#include "app/theme/land_painter.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/icons.h"
#include "app/theme/identity_picture.h"
#include "app/theme/land_geometry.h"
#include "app/theme/paper_backdrop.h"
#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

constexpr double seaOutline = 1.2;
/// One wave in each square of this length, somewhere in its middle.
constexpr double waveStep = 78;
constexpr double waveLength = 9;
constexpr double waveHeight = 3.5;
constexpr double waveWidth = 1.3;
/// How far a coast may reach beyond its canvas, of the canvas, and how wide it is drawn.
constexpr double coastReach = 0.045;
constexpr double coastWidth = 1.2;
/// How far a wave keeps off the land and off the edge of the sea.
constexpr double waveDistance = 22;

/// Two crests, one after the other.
void addWave(QPainterPath& path, const QPointF& at)
{
    path.moveTo(at);
    for (int crest = 0; crest < 2; ++crest) {
        const QPointF start = path.currentPosition();
        path.quadTo(start + QPointF(waveLength / 2, -2 * waveHeight),
                    start + QPointF(waveLength, 0));
    }
}

QPainterPath waves(const QRectF& bounds, const QRectF& island)
{
    const QRectF sea = bounds.adjusted(waveDistance, waveDistance, -waveDistance, -waveDistance);
    const QRectF shore =
        island.adjusted(-waveDistance - 2 * waveLength, -waveDistance, waveDistance, waveDistance);
    // Whole steps from the left, the same at each size, so that resizing does not stir them.
    SeededGenerator generator(0);
    QPainterPath path;
    for (double x = sea.left(); x < sea.right(); x += waveStep) {
        for (double y = sea.top(); y < sea.bottom(); y += waveStep) {
            const QPointF at(x + generator.unit(0, waveStep - 2 * waveLength),
                             y + generator.unit(0, waveStep));
            if (sea.contains(at) && sea.contains(at + QPointF(2 * waveLength, 0))
                && !shore.contains(at)) {
                addWave(path, at);
            }
        }
    }
    return path;
}

}  // namespace

void paintLand(QPainter& painter, const QRectF& canvas, const RealmIdentity& identity,
               const Theme& theme)
{
    // On whole pixels, so that it comes out as sharp as it was drawn.
    const QPointF bleed(std::ceil(canvas.width() * coastReach + coastWidth),
                        std::ceil(canvas.height() * coastReach + coastWidth));
    const QRectF area(canvas.topLeft() - bleed,
                      canvas.size() + QSizeF(2 * bleed.x(), 2 * bleed.y()));
    paintIdentityPicture(painter, area, QLatin1String("land"), identity, theme,
                         [&] { return landDrawing(identity, QRectF(bleed, canvas.size())); });
}

QRectF landCanvas(const QRectF& room)
{
    const auto lengthIn = [](double length) {
        return std::max(0.0, std::floor((length - 2 * coastWidth) / (1 + 2 * coastReach)));
    };
    const QSizeF size(lengthIn(room.width()), lengthIn(room.height()));
    const QSizeF rest = (room.size() - size) / 2;
    return {room.topLeft() + QPointF(std::round(rest.width()), std::round(rest.height())), size};
}

void paintSea(QPainter& painter, const QRectF& bounds, const QRectF& island, const Theme& theme)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double half = seaOutline / 2;
    const QPainterPath edge = cutPath(bounds.adjusted(half, half, -half, -half), cardCorners);
    painter.fillPath(edge, theme.colour(Role::paperInset));
    // A clip has hard edges; inside an edge of the same colour they do not show.
    painter.save();
    painter.setClipPath(edge, Qt::IntersectClip);
    const QRectF inner = bounds.adjusted(1, 1, -1, -1);
    painter.setClipRect(inner, Qt::IntersectClip);
    painter.drawTiledPixmap(bounds, paperTile(theme, Role::paperInset, pixelRatio(painter)));
    painter.restore();
    painter.strokePath(edge, QPen(theme.colour(Role::ink, Strength::edge), seaOutline));
    QPen pen(theme.colour(Role::ink, Strength::outline), waveWidth);
    pen.setCapStyle(Qt::RoundCap);
    painter.strokePath(waves(bounds, island), pen);
    painter.restore();
}

}  // namespace gruk
