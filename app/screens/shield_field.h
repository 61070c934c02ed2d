#pragma once

#include <array>

#include <QString>

#include "core/realm/realm_identity.h"

namespace gruk {

/// What can be chosen of a shield, in the order in which it is offered.
enum class ShieldField : std::uint8_t { shape, division, charge, primary, secondary, species };
inline constexpr std::array shieldFields = {
    ShieldField::shape,   ShieldField::division,  ShieldField::charge,
    ShieldField::primary, ShieldField::secondary, ShieldField::species,
};

/// What the row of the field is headed with.
[[nodiscard]] QString titleOf(ShieldField field);

/// How many choices there are. Each is known by its place among the cases.
[[nodiscard]] int choicesOf(ShieldField field);
[[nodiscard]] QString nameOfChoice(ShieldField field, int choice);

/// The choice that `identity` has made.
[[nodiscard]] int choiceIn(const RealmIdentity& identity, ShieldField field);

/// `identity` with another choice in one field and the same in all others.
[[nodiscard]] RealmIdentity withChoice(RealmIdentity identity, ShieldField field, int choice);

}  // namespace gruk
