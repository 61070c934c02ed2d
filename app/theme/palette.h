#pragma once

#include <cstdint>
#include <string_view>

#include <QRgb>
#include <QString>

#include "core/realm/realm_identity.h"

namespace gruk {

/// What a colour is for. The first twelve are the tinctures of the shields, in their order; the
/// last three are the shades of paper. `fernDark` is the accent, `ink` the text, `red` marks
/// errors, `yellow` warnings, `blue` the status line and the focus.
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
};
inline constexpr std::size_t roleCount = 15;

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

/// The accent where text is involved: links are written in it, and what is written in `paperCard`
/// on it can be read. `fernDark` is too dark for both on dark paper.
[[nodiscard]] constexpr Role accentRole(ColourScheme scheme)
{
    return scheme == ColourScheme::dark ? Role::fern : Role::fernDark;
}

/// The colour for text that is meant to be in `role`: that one where every palette makes it
/// readable on paper, else the nearest that is. At least 4.5 to 1.
[[nodiscard]] constexpr Role textRole(Role role, ColourScheme scheme)
{
    return role == Role::fern || role == Role::fernDark ? accentRole(scheme) : Role::ink;
}

/// The one table of colours. Opaque sRGB.
[[nodiscard]] QRgb paletteColour(Role role, AppPaletteTheme palette, ColourScheme scheme);

}  // namespace gruk
