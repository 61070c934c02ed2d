#pragma once

#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"

class QPainter;

namespace gruk {

/// Paints a realm's patch of land into `canvas`, as sharp as what `painter` draws on. Rendered once
/// for each look and size and kept by the toolkit's cache.
void paintLand(QPainter& painter, const QRectF& canvas, const RealmIdentity& identity,
               const Theme& theme);

/// The largest canvas whose land, with its coast, stays in `room`. A coast reaches a little beyond
/// its canvas.
[[nodiscard]] QRectF landCanvas(const QRectF& room);

/// Paints the sea of a map over `bounds`: the darkest paper with its grain, its edge cut by hand,
/// and a few waves where the square `island` leaves room for them.
void paintSea(QPainter& painter, const QRectF& bounds, const QRectF& island, const Theme& theme);

}  // namespace gruk
