#include "core/realm/realm_identity.h"

#include <algorithm>
#include <span>

#include "core/realm/seeded_generator.h"
#include "core/realm/stable_hash.h"

namespace gruk {

namespace {

constexpr std::array<std::string_view, 4> shapeNames = {"round", "kite", "banner", "square"};
constexpr std::array<std::string_view, 4> divisionNames = {"plain", "halved", "striped", "chevron"};
constexpr std::array<std::string_view, 8> chargeNames = {"disk", "lantern", "tree", "mountain",
                                                         "star", "tusk",    "key",  "acorn"};
constexpr std::array<std::string_view, tinctureCount> tinctureNames = {
    "fern",       "fernDark", "blue", "yellow", "red",   "ink",
    "terracotta", "teal",     "plum", "olive",  "slate", "sand"};
constexpr std::array<std::string_view, 5> speciesNames = {"gruk", "dragon", "fairy", "human",
                                                          "wizard"};

template <typename Case>
Case drawCase(SeededGenerator& generator, std::size_t count)
{
    return static_cast<Case>(generator.bounded(count));
}

/// The case whose name stands at its own position in `names`.
template <typename Case, std::size_t count>
std::optional<Case> caseNamed(const std::array<std::string_view, count>& names,
                              std::string_view name)
{
    const auto found = std::ranges::find(names, name);
    return found == names.end() ? std::nullopt
                                : std::optional(static_cast<Case>(found - names.begin()));
}

}  // namespace

std::string_view rawString(FieldShape shape)
{
    return shapeNames.at(static_cast<std::size_t>(shape));
}

std::string_view rawString(Division division)
{
    return divisionNames.at(static_cast<std::size_t>(division));
}

std::string_view rawString(Charge charge)
{
    return chargeNames.at(static_cast<std::size_t>(charge));
}

std::string_view rawString(Tincture tincture)
{
    return tinctureNames.at(static_cast<std::size_t>(tincture));
}

std::string_view rawString(Species species)
{
    return speciesNames.at(static_cast<std::size_t>(species));
}

std::optional<FieldShape> fieldShape(std::string_view rawString)
{
    return caseNamed<FieldShape>(shapeNames, rawString);
}

std::optional<Division> division(std::string_view rawString)
{
    return caseNamed<Division>(divisionNames, rawString);
}

std::optional<Charge> charge(std::string_view rawString)
{
    return caseNamed<Charge>(chargeNames, rawString);
}

std::optional<Tincture> tincture(std::string_view rawString)
{
    return caseNamed<Tincture>(tinctureNames, rawString);
}

std::optional<Species> species(std::string_view rawString)
{
    return caseNamed<Species>(speciesNames, rawString);
}

RealmIdentity RealmIdentity::derive(std::string_view path)
{
    SeededGenerator generator(stableHash(path));
    RealmIdentity identity;
    // The order of the draws is part of the format and is not the order of the fields.
    identity.shape = drawCase<FieldShape>(generator, shapeNames.size());
    identity.division = drawCase<Division>(generator, divisionNames.size());
    identity.charge = drawCase<Charge>(generator, chargeNames.size());
    identity.primary = drawCase<Tincture>(generator, tinctureCount);

    std::array<Tincture, tinctureCount - 1> others{};
    for (std::size_t i = 0, at = 0; i < tinctureCount; ++i) {
        if (static_cast<Tincture>(i) != identity.primary) {
            others.at(at++) = static_cast<Tincture>(i);
        }
    }
    identity.secondary = generator.pick(std::span<const Tincture>(others));
    identity.species = drawCase<Species>(generator, speciesNames.size());
    return identity;
}

}  // namespace gruk
