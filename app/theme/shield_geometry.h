#pragma once

#include "app/theme/drawing.h"
#include "core/realm/realm_identity.h"

namespace gruk {

/// The outline of a shield of that shape that fills `bounds`, closed.
[[nodiscard]] QPainterPath shieldOutline(FieldShape shape, const QRectF& bounds);

/// The field of a shield in its two tinctures with the outline around it, and no charge: what the
/// shape and the division alone look like.
[[nodiscard]] Drawing fieldDrawing(const RealmIdentity& identity, const QRectF& canvas);

/// The shield of an identity on a canvas of any proportion: the field in the two tinctures, the
/// charge in the paper of cards, and last the outline in ink. The charge stays square, sized from
/// the smaller side. `species` is not drawn.
///
/// A pure function of both, in coordinates of the canvas: one curve of the tusk depends on where
/// the canvas lies, so give each shield a canvas that starts at the origin and move what is
/// painted.
[[nodiscard]] Drawing shieldDrawing(const RealmIdentity& identity, const QRectF& canvas);

}  // namespace gruk
