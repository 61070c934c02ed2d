#pragma once

#include <QString>

#include "core/realm/realm_identity.h"

namespace gruk {

/// What the choices of a shield are called.
[[nodiscard]] QString nameOf(FieldShape shape);
[[nodiscard]] QString nameOf(Division division);
[[nodiscard]] QString nameOf(Charge charge);
[[nodiscard]] QString nameOf(Tincture tincture);
[[nodiscard]] QString nameOf(Species species);

/// What a shield shows, in words: "Kite shield, halved in fern and blue, with a lantern". The
/// second tincture of a plain field shows nowhere and is not named, nor is the species.
[[nodiscard]] QString describeShield(const RealmIdentity& identity);

}  // namespace gruk
