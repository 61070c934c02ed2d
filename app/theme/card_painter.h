#pragma once

#include <QPainterPath>

#include "app/theme/theme.h"

class QPainter;

namespace gruk {

/// The radii of four corners.
struct Corners {
    double topLeft = 0;
    double topRight = 0;
    double bottomRight = 0;
    double bottomLeft = 0;
};

/// Cut by hand: no two corners match.
inline constexpr Corners cardCorners = {20, 15, 22, 13};
inline constexpr Corners buttonCorners = {12, 9, 13, 8};

/// A rectangle with four corners of its own, each softer than an arc. Radii that do not fit
/// shrink together.
[[nodiscard]] QPainterPath cutPath(const QRectF& bounds, const Corners& corners);

/// What of `bounds` the card itself takes; the rest is its shadow's and its outline's.
[[nodiscard]] QRectF cardBody(const QRectF& bounds);

/// A card that fills `bounds` with its hard shadow.
void paintCard(QPainter& painter, const QRectF& bounds, const Theme& theme);

}  // namespace gruk
