#include "core/actions/realm_rules.h"

#include <algorithm>
#include <boost/json.hpp>
#include <iterator>
#include <utility>

#include "core/actions/json_fields.h"
#include "platform/foundation/json_path.h"

namespace gruk::RealmRules {

namespace {

namespace json = boost::json;

std::optional<RealmRule> decodedRule(const json::value& value)
{
    const json::object* const object = value.if_object();
    if (object == nullptr) {
        return std::nullopt;
    }
    const auto idText = jsonTextField(*object, "id");
    const auto kindText = jsonTextField(*object, "kind");
    const auto nameText = jsonTextField(*object, "destinationFolderName");
    const auto applies = jsonBooleanField(*object, "applyAfterPatrol");
    if (!idText || !kindText || !nameText || !applies) {
        return std::nullopt;
    }
    const auto id = UUID::parse(*idText);
    const auto kind = fileKind(*kindText);
    auto name = pathFromJSONText(*nameText);
    if (!id || !kind || !name) {
        return std::nullopt;
    }
    return RealmRule{*id, *kind, *std::move(name), *applies};
}

}  // namespace

FolderOverrides folderOverrides(const std::vector<RealmRule>& rules)
{
    FolderOverrides overrides;
    const std::size_t count = std::min(rules.size(), maximumRulesPerRealm);
    for (std::size_t i = 0; i < count; ++i) {
        overrides[rules[i].kind] = rules[i].destinationFolderName;
    }
    return overrides;
}

std::vector<RealmRule> afterPatrol(const std::vector<RealmRule>& rules)
{
    std::vector<RealmRule> result;
    std::ranges::copy_if(rules, std::back_inserter(result), &RealmRule::applyAfterPatrol);
    return result;
}

std::optional<OrganisePlan> filingPlan(OrganisePlan plan, const std::vector<RealmRule>& rules)
{
    std::erase_if(plan.moves, [&](const OrganisePlan::CategoryMove& move) {
        return std::ranges::find(rules, move.kind, &RealmRule::kind) == rules.end();
    });
    return plan.moves.empty() ? std::nullopt : std::optional(std::move(plan));
}

std::optional<OrganisePlan> stillRuled(OrganisePlan filing, const std::vector<RealmRule>& rules)
{
    const FolderOverrides folders = folderOverrides(rules);
    std::erase_if(filing.moves, [&](const OrganisePlan::CategoryMove& move) {
        const auto folder = folders.find(move.kind);
        return folder == folders.end() || folder->second != move.destinationFolderName;
    });
    return filing.moves.empty() ? std::nullopt : std::optional(std::move(filing));
}

std::string encoded(const std::vector<RealmRule>& rules)
{
    json::array array;
    for (const RealmRule& rule : rules) {
        array.push_back(
            json::object{{"id", rule.id.text()},
                         {"kind", rawString(rule.kind)},
                         {"destinationFolderName", jsonPathText(rule.destinationFolderName)},
                         {"applyAfterPatrol", rule.applyAfterPatrol}});
    }
    return compactJSON(array);
}

std::optional<std::vector<RealmRule>> decoded(std::string_view text)
{
    const std::optional<json::value> root = jsonValue(text);
    const json::array* const array = root ? root->if_array() : nullptr;
    if (array == nullptr) {
        return std::nullopt;
    }
    std::vector<RealmRule> rules;
    for (const json::value& value : *array) {
        std::optional<RealmRule> rule = decodedRule(value);
        if (!rule) {
            return std::nullopt;
        }
        rules.push_back(*std::move(rule));
    }
    return rules;
}

}  // namespace gruk::RealmRules
