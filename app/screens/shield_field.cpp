#include "app/screens/shield_field.h"

#include "app/screens/shield_copy.h"
#include "platform/foundation/require.h"

namespace gruk {

namespace {

constexpr int shapeCount = 4;
constexpr int divisionCount = 4;
constexpr int chargeCount = 8;
constexpr int speciesCount = 5;

}  // namespace

QString titleOf(ShieldField field)
{
    switch (field) {
    case ShieldField::shape:
        return QStringLiteral("SHAPE");
    case ShieldField::division:
        return QStringLiteral("DIVISION");
    case ShieldField::charge:
        return QStringLiteral("CHARGE");
    case ShieldField::primary:
        return QStringLiteral("PRIMARY");
    case ShieldField::secondary:
        return QStringLiteral("SECONDARY");
    case ShieldField::species:
        return QStringLiteral("SPECIES");
    }
    return {};
}

int choicesOf(ShieldField field)
{
    switch (field) {
    case ShieldField::shape:
        return shapeCount;
    case ShieldField::division:
        return divisionCount;
    case ShieldField::charge:
        return chargeCount;
    case ShieldField::primary:
    case ShieldField::secondary:
        return static_cast<int>(tinctureCount);
    case ShieldField::species:
        return speciesCount;
    }
    return 0;
}

QString nameOfChoice(ShieldField field, int choice)
{
    const RealmIdentity chosen = withChoice({}, field, choice);
    switch (field) {
    case ShieldField::shape:
        return nameOf(chosen.shape);
    case ShieldField::division:
        return nameOf(chosen.division);
    case ShieldField::charge:
        return nameOf(chosen.charge);
    case ShieldField::primary:
        return nameOf(chosen.primary);
    case ShieldField::secondary:
        return nameOf(chosen.secondary);
    case ShieldField::species:
        return nameOf(chosen.species);
    }
    return {};
}

int choiceIn(const RealmIdentity& identity, ShieldField field)
{
    switch (field) {
    case ShieldField::shape:
        return static_cast<int>(identity.shape);
    case ShieldField::division:
        return static_cast<int>(identity.division);
    case ShieldField::charge:
        return static_cast<int>(identity.charge);
    case ShieldField::primary:
        return static_cast<int>(identity.primary);
    case ShieldField::secondary:
        return static_cast<int>(identity.secondary);
    case ShieldField::species:
        return static_cast<int>(identity.species);
    }
    return 0;
}

RealmIdentity withChoice(RealmIdentity identity, ShieldField field, int choice)
{
    GRUK_REQUIRE(choice >= 0 && choice < choicesOf(field), "a shield has no such choice");
    switch (field) {
    case ShieldField::shape:
        identity.shape = static_cast<FieldShape>(choice);
        break;
    case ShieldField::division:
        identity.division = static_cast<Division>(choice);
        break;
    case ShieldField::charge:
        identity.charge = static_cast<Charge>(choice);
        break;
    case ShieldField::primary:
        identity.primary = static_cast<Tincture>(choice);
        break;
    case ShieldField::secondary:
        identity.secondary = static_cast<Tincture>(choice);
        break;
    case ShieldField::species:
        identity.species = static_cast<Species>(choice);
        break;
    }
    return identity;
}

}  // namespace gruk
