#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/actions/organise_plan.h"
#include "core/patrol/file_kind.h"
#include "platform/foundation/uuid.h"

namespace gruk {

/// Tells, for one realm, in which folder files of one kind belong. Moves nothing by itself. A
/// plain value.
struct RealmRule {
    UUID id;
    FileKind kind = FileKind::other;
    /// Taken as it stands.
    std::string destinationFolderName;
    /// Whether a filing is offered after each patrol of the realm.
    bool applyAfterPatrol = false;

    friend bool operator==(const RealmRule&, const RealmRule&) = default;
};

/// What a realm's rules mean together. Pure; any thread.
namespace RealmRules {

/// Rules beyond this many have no effect.
inline constexpr std::size_t maximumRulesPerRealm = 20;

/// The folder of each kind that a rule names; of two rules for one kind the later one holds.
[[nodiscard]] FolderOverrides folderOverrides(const std::vector<RealmRule>& rules);

/// The rules that offer a filing after a patrol, in their order.
[[nodiscard]] std::vector<RealmRule> afterPatrol(const std::vector<RealmRule>& rules);

/// What of `plan` the rules speak of: the moves of their kinds alone; none when no move is left.
[[nodiscard]] std::optional<OrganisePlan> filingPlan(OrganisePlan plan,
                                                     const std::vector<RealmRule>& rules);

/// What of a filing that earlier rules asked for these ask for too: the same kinds into the same
/// folders; none when no move is left.
[[nodiscard]] std::optional<OrganisePlan> stillRuled(OrganisePlan filing,
                                                     const std::vector<RealmRule>& rules);

/// The rules as JSON (docs/formats.md).
[[nodiscard]] std::string encoded(const std::vector<RealmRule>& rules);

/// None unless the whole text is such an array: one rule that is not right makes all of it wrong.
[[nodiscard]] std::optional<std::vector<RealmRule>> decoded(std::string_view text);

}  // namespace RealmRules
}  // namespace gruk
