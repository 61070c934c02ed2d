#pragma once

#include <optional>
#include <string>

#include "platform/foundation/uuid.h"
#include "platform/settings/settings_json.h"

namespace gruk {

/// That a realm's folder has another name now, and what is known of the realm goes with it. Kept in
/// the settings (docs/formats.md) from before the first thing goes until the last one has gone, so
/// that a next start can complete it. A plain value.
struct RealmRenaming {
    UUID grant;
    /// The standardised paths, before and now.
    std::string from;
    std::string to;
    /// What finds the folder where it is now.
    std::string bookmark;
    /// The realm that the new path was already, if its cadence is to be taken over.
    std::optional<UUID> cadenceOf;

    friend bool operator==(const RealmRenaming&, const RealmRenaming&) = default;
};

[[nodiscard]] TextDictionary renamingSetting(const RealmRenaming& renaming);
/// None when it is not right.
[[nodiscard]] std::optional<RealmRenaming> renamingFrom(const UUID& grant,
                                                        const TextDictionary& setting);

}  // namespace gruk
