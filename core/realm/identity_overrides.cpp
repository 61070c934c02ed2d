#include "core/realm/identity_overrides.h"

#include <boost/json.hpp>
#include <utility>

#include "core/actions/json_fields.h"
#include "platform/foundation/canonical_text.h"
#include "platform/foundation/json_path.h"

namespace gruk {

namespace {

namespace json = boost::json;

/// The member `key` as one of the cases that `read` knows.
template <typename Case>
std::optional<Case> member(const json::object& object, std::string_view key,
                           std::optional<Case> (*read)(std::string_view))
{
    const std::optional<std::string_view> name = jsonTextField(object, key);
    return name ? read(*name) : std::nullopt;
}

std::optional<RealmIdentity> decodedIdentity(const json::value& value)
{
    const json::object* const object = value.if_object();
    if (object == nullptr) {
        return std::nullopt;
    }
    const auto shape = member(*object, "shape", fieldShape);
    const auto division = member(*object, "division", gruk::division);
    const auto primary = member(*object, "primary", tincture);
    const auto secondary = member(*object, "secondary", tincture);
    const auto charge = member(*object, "charge", gruk::charge);
    const auto species = member(*object, "species", gruk::species);
    if (!shape || !division || !primary || !secondary || !charge || !species) {
        return std::nullopt;
    }
    return RealmIdentity{*shape, *division, *primary, *secondary, *charge, *species};
}

json::object encodedIdentity(const RealmIdentity& identity)
{
    return {{"shape", rawString(identity.shape)},     {"division", rawString(identity.division)},
            {"primary", rawString(identity.primary)}, {"secondary", rawString(identity.secondary)},
            {"charge", rawString(identity.charge)},   {"species", rawString(identity.species)}};
}

}  // namespace

bool CanonicalLess::operator()(std::string_view a, std::string_view b) const
{
    return canonicalForm(a) < canonicalForm(b);
}

std::string identityOverridesJSON(const IdentityOverrides& overrides)
{
    json::object root;
    for (const auto& [path, identity] : overrides) {
        root.emplace(jsonPathText(path), encodedIdentity(identity));
    }
    return compactJSON(root);
}

std::optional<IdentityOverrides> identityOverrides(std::string_view content)
{
    const std::optional<json::value> root = jsonValue(content);
    const json::object* const object = root ? root->if_object() : nullptr;
    if (object == nullptr) {
        return std::nullopt;
    }
    IdentityOverrides overrides;
    for (const auto& [key, value] : *object) {
        std::optional<std::string> path = pathFromJSONText(key);
        const std::optional<RealmIdentity> identity = decodedIdentity(value);
        if (!path || !identity) {
            return std::nullopt;
        }
        overrides.insert_or_assign(*std::move(path), *identity);
    }
    return overrides;
}

}  // namespace gruk
