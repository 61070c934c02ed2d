#pragma once

#include <string>
#include <string_view>

#include "core/actions/grant.h"
#include "platform/foundation/file_url.h"

/// The keys of the settings, each with the type of its value. A realm keeps its cadence by its
/// grant's id, and its rules and folder names by its path.
namespace gruk::SettingKeys {

/// Boolean; absent means true, so that a first run is safe.
inline constexpr std::string_view reviewOnlyMode = "Gruk.reviewOnlyMode";
/// Boolean; absent means false.
inline constexpr std::string_view hasSeenWalkthrough = "hasSeenWalkthrough";
/// Text: "system", "light" or "dark"; absent means "system".
inline constexpr std::string_view appTheme = "appTheme";
/// Text: a palette's raw name; absent means "woodland".
inline constexpr std::string_view paletteTheme = "paletteTheme";

/// Data, as the toolkit writes a window's size and place; absent means the usual size.
inline constexpr std::string_view windowGeometry = "window.geometry";
/// Text: "patrol" or "browse"; absent means "patrol".
inline constexpr std::string_view windowPage = "window.page";
/// Data: the path of the realm that was open, empty for none.
inline constexpr std::string_view windowRealm = "window.realm";

/// Text: a cadence's raw name.
[[nodiscard]] inline std::string cadence(const UUID& grant)
{
    return "cadence." + grant.text();
}
[[nodiscard]] inline std::string cadence(const Grant& grant)
{
    return cadence(grant.id);
}

/// Dictionary: a renaming of the realm that has begun and not ended (`RealmRenaming`).
[[nodiscard]] inline std::string renaming(const UUID& grant)
{
    return "renaming." + grant.text();
}

/// Text: the date when the user last stopped a patrol which then counts as made; absent when one
/// has come to its end since.
[[nodiscard]] inline std::string patrolStopped(const Grant& grant)
{
    return "patrolStopped." + grant.id.text();
}

/// Data: the rules as JSON.
[[nodiscard]] inline std::string realmRules(const FileURL& realm)
{
    return "realmRules." + realm.path();
}

/// Dictionary of text to text: folder names by a kind's raw name.
[[nodiscard]] inline std::string organiseOverrides(const FileURL& realm)
{
    return "organise.overrides." + realm.path();
}

}  // namespace gruk::SettingKeys
