#pragma once

#include "app/theme/drawing.h"
#include "core/realm/realm_identity.h"

namespace gruk {

/// A realm's patch of land on a canvas: a dashed coast with speckles inland, the same on every
/// launch and machine. A pure function of the identity, but for its `species`, and the canvas; a
/// larger canvas has the same coast, larger, under speckles of the same size.
[[nodiscard]] Drawing landDrawing(const RealmIdentity& identity, const QRectF& canvas);

}  // namespace gruk
