#pragma once

#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"

class QPainter;

namespace gruk {

/// Paints the shield of an identity into `canvas`, as sharp as what `painter` draws on. Rendered
/// once for each look and size and kept by the toolkit's cache.
void paintShield(QPainter& painter, const QRectF& canvas, const RealmIdentity& identity,
                 const Theme& theme);

}  // namespace gruk
