#include "app/screens/shield_copy.h"

namespace gruk {

namespace {

/// The words of each vocabulary, in the order of its cases.
constexpr std::array shapeNames = {"Round", "Kite", "Banner", "Square"};
constexpr std::array divisionNames = {"Plain", "Halved", "Striped", "Chevron"};
constexpr std::array chargeNames = {"Disk", "Lantern", "Tree", "Mountain",
                                    "Star", "Tusk",    "Key",  "Acorn"};
constexpr std::array tinctureNames = {"Fern",       "Dark fern", "Blue", "Yellow", "Red",   "Ink",
                                      "Terracotta", "Teal",      "Plum", "Olive",  "Slate", "Sand"};
constexpr std::array speciesNames = {"Gruk", "Dragon", "Fairy", "Human", "Wizard"};

template <typename Names, typename Case>
QString word(const Names& names, Case value)
{
    return QString::fromLatin1(names.at(static_cast<std::size_t>(value)));
}

QString fieldWords(const RealmIdentity& identity)
{
    const QString primary = nameOf(identity.primary).toLower();
    const QString secondary = nameOf(identity.secondary).toLower();
    switch (identity.division) {
    case Division::plain:
        return QStringLiteral("plain %1").arg(primary);
    case Division::halved:
        return QStringLiteral("halved in %1 and %2").arg(primary, secondary);
    case Division::striped:
        return QStringLiteral("striped in %1 and %2").arg(primary, secondary);
    case Division::chevron:
        return QStringLiteral("%1 with a chevron in %2").arg(primary, secondary);
    }
    return primary;
}

}  // namespace

QString nameOf(FieldShape shape)
{
    return word(shapeNames, shape);
}

QString nameOf(Division division)
{
    return word(divisionNames, division);
}

QString nameOf(Charge charge)
{
    return word(chargeNames, charge);
}

QString nameOf(Tincture tincture)
{
    return word(tinctureNames, tincture);
}

QString nameOf(Species species)
{
    return word(speciesNames, species);
}

QString describeShield(const RealmIdentity& identity)
{
    const QString article =
        identity.charge == Charge::acorn ? QStringLiteral("an") : QStringLiteral("a");
    return QStringLiteral("%1 shield, %2, with %3 %4")
        .arg(nameOf(identity.shape), fieldWords(identity), article,
             nameOf(identity.charge).toLower());
}

}  // namespace gruk
