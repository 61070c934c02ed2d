#pragma once

#include <cstdint>
#include <string_view>

#include <QRgb>
#include <QString>

#include "core/realm/realm_identity.h"

namespace gruk {

/// What a colour is for. The first twelve are the tinctures of the shields, in their order; the
/// next three are the shades of paper. `ink` is the text, `red` marks errors, `yellow` warnings,
/// `blue` the status line and the focus. `accent` is what calls for a press or was chosen: it is
/// no colour of its own but `fernDark`, on dark paper as much lighter as it must be for text in it
/// or on it to be read.
enum class Role : std::uint8_t {
    fern,
    fernDark,
    blue,
    yellow,
    red,
    ink,
    terracotta,
    teal,
    plum,
    olive,
    slate,
    sand,
    paperInset,
    paper,
    paperCard,
    accent,
};
inline constexpr std::size_t roleCount = 16;

/// The colour that a tincture shows: the one of the same name, by position.
[[nodiscard]] constexpr Role roleOf(Tincture tincture)
{
    return static_cast<Role>(tincture);
}

/// The palettes, in the order in which they are offered.
enum class AppPaletteTheme : std::uint8_t { woodland, ember, tide, dusk };
inline constexpr std::size_t paletteThemeCount = 4;

/// What a palette is called in the settings file, and in the settings window.
[[nodiscard]] std::string_view rawName(AppPaletteTheme palette);
[[nodiscard]] QString label(AppPaletteTheme palette);
/// The palette of that raw name; `woodland` for any other.
[[nodiscard]] AppPaletteTheme paletteThemeNamed(std::string_view rawName);

enum class ColourScheme : std::uint8_t { dark, light };

/// What the user chose of the two, or to have what the desktop has.
enum class AppTheme : std::uint8_t { system, light, dark };
inline constexpr std::size_t appThemeCount = 3;

[[nodiscard]] std::string_view rawName(AppTheme appTheme);
[[nodiscard]] QString label(AppTheme appTheme);
/// The one of that raw name; `system` for any other.
[[nodiscard]] AppTheme appThemeNamed(std::string_view rawName);

/// The colour for text that is meant to be in `role`: the nearest that every palette makes readable
/// on paper, at least 4.5 to 1.
[[nodiscard]] constexpr Role textRole(Role role)
{
    const bool isAccent = role == Role::fern || role == Role::fernDark || role == Role::accent;
    return isAccent ? Role::accent : Role::ink;
}

/// The one table of colours, with the accent that is made of it. Opaque sRGB.
[[nodiscard]] QRgb paletteColour(Role role, AppPaletteTheme palette, ColourScheme scheme);

}  // namespace gruk
