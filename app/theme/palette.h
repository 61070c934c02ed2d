#pragma once

#include <cstdint>

#include <QRgb>

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

enum class ColourScheme : std::uint8_t { dark, light };

/// The one table of colours. Opaque sRGB.
[[nodiscard]] QRgb paletteColour(Role role, AppPaletteTheme palette, ColourScheme scheme);

}  // namespace gruk
