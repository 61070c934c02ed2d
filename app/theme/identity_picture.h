#pragma once

#include <QLatin1String>
#include <QRectF>

#include "app/theme/drawing.h"
#include "core/realm/realm_identity.h"
#include "platform/foundation/function_ref.h"

namespace gruk {

/// Paints into `area` what a realm's identity looks like as `kind` ("shield", "land"), as sharp as
/// what `painter` draws on. `draw` gives it for an area of that size at the origin, and is asked
/// once for each look and size: the picture is kept by the toolkit's cache.
void paintIdentityPicture(QPainter& painter, const QRectF& area, QLatin1String kind,
                          const RealmIdentity& identity, const Theme& theme,
                          FunctionRef<Drawing()> draw);

}  // namespace gruk
