#pragma once

#include "app/theme/drawing.h"
#include "core/realm/realm_identity.h"

namespace gruk {

/// A shield's charge in `square`, in the paper of cards. The key's last tooth reaches a little
/// beyond the square.
///
/// A pure function; where the square lies changes one curve of the tusk, as `shieldDrawing` says.
[[nodiscard]] Drawing chargeDrawing(Charge charge, const QRectF& square);

}  // namespace gruk
