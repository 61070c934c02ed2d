#include "app/theme/palette.h"

#include <array>
#include <iterator>
#include <tuple>

#include <gtest/gtest.h>

namespace gruk {

TEST(Palette, hasTheValuesOfTheTable)
{
    struct Shades {
        QRgb dark;
        QRgb light;
    };
    struct Row {
        Role role;
        /// Of woodland, ember, tide and dusk.
        std::array<Shades, paletteThemeCount> palettes;
    };
    const Row rows[] = {
        {Role::fern,
         {{{0xFF7AB382, 0xFF5B9164},
           {0xFFE2B44C, 0xFFD09821},
           {0xFF76BDB4, 0xFF529D96},
           {0xFF969D98, 0xFF69736D}}}},
        {Role::fernDark,
         {{{0xFF4F7D58, 0xFF2D5738},
           {0xFFBA6D36, 0xFF8B431A},
           {0xFF457AAA, 0xFF1D4C7A},
           {0xFF7A659C, 0xFF4C3865}}}},
        {Role::blue,
         {{{0xFF73A6CD, 0xFF4D88B8},
           {0xFF6B96BD, 0xFF47719D},
           {0xFF79BDDD, 0xFF52A5CD},
           {0xFF7A96C8, 0xFF536DA5}}}},
        {Role::yellow,
         {{{0xFFE0C469, 0xFFF4D451},
           {0xFFEDC45C, 0xFFFCCD2D},
           {0xFFDBBD5C, 0xFFEEC838},
           {0xFFD0B465, 0xFFE0BD3F}}}},
        {Role::red,
         {{{0xFFE16056, 0xFFEB3B2F},
           {0xFFE05843, 0xFFE6291F},
           {0xFFD6604C, 0xFFDB3829},
           {0xFFCB5A5A, 0xFFD32D32}}}},
        {Role::ink,
         {{{0xFFEDEBE3, 0xFF0B0B0A},
           {0xFFF0E0D1, 0xFF0E0906},
           {0xFFE6EDF0, 0xFF090B0D},
           {0xFFEBE6ED, 0xFF0B0A0D}}}},
        {Role::terracotta,
         {{{0xFFD37F4B, 0xFFC1622C},
           {0xFFCD5D45, 0xFFAF3425},
           {0xFFD98B71, 0xFFBF6953},
           {0xFFBA838B, 0xFF925A62}}}},
        {Role::teal,
         {{{0xFF609D96, 0xFF3C7A73},
           {0xFFA37C4F, 0xFF765331},
           {0xFF4992A3, 0xFF21697A},
           {0xFF7A849D, 0xFF4C556E}}}},
        {Role::plum,
         {{{0xFF9D6D8E, 0xFF7A4A6B},
           {0xFFBA5A5D, 0xFF8A313C},
           {0xFF7681C4, 0xFF4D589D},
           {0xFF9269A5, 0xFF653D76}}}},
        {Role::olive,
         {{{0xFFAAA56A, 0xFF8A8547},
           {0xFFD4B44A, 0xFFB49021},
           {0xFF8BA99D, 0xFF608076},
           {0xFF9D988F, 0xFF6E6860}}}},
        {Role::slate,
         {{{0xFF8B99A0, 0xFF5C6B73},
           {0xFFAA9883, 0xFF7A6758},
           {0xFF6D8CA3, 0xFF3D5C73},
           {0xFF838794, 0xFF4C505C}}}},
        {Role::sand,
         {{{0xFFD4B88B, 0xFFC9A66B},
           {0xFFE1AF65, 0xFFD3923E},
           {0xFFC9C8B4, 0xFFAAA996},
           {0xFFBAAFB4, 0xFF92858C}}}},
        {Role::paperInset,
         {{{0xFF12110F, 0xFFE6DFD0},
           {0xFF16100C, 0xFFE9DDCA},
           {0xFF0C1112, 0xFFDAE2E2},
           {0xFF110F14, 0xFFE0DAE0}}}},
        {Role::paper,
         {{{0xFF1C1B18, 0xFFF2EFE7},
           {0xFF201813, 0xFFF5EDE0},
           {0xFF13191C, 0xFFE7EDED},
           {0xFF1B181D, 0xFFEDE9ED}}}},
        {Role::paperCard,
         {{{0xFF292724, 0xFFFBF8EF},
           {0xFF2F261D, 0xFFFCF5E7},
           {0xFF21282A, 0xFFF1F6F7},
           {0xFF28252A, 0xFFF6F4F7}}}},
    };
    ASSERT_EQ(std::size(rows), 15U);
    for (const Row& row : rows) {
        for (std::size_t index = 0; index < paletteThemeCount; ++index) {
            const auto palette = static_cast<AppPaletteTheme>(index);
            EXPECT_EQ(paletteColour(row.role, palette, ColourScheme::dark),
                      row.palettes[index].dark);
            EXPECT_EQ(paletteColour(row.role, palette, ColourScheme::light),
                      row.palettes[index].light);
        }
    }
}

TEST(Palette, paperIsLightInLightAndDarkInDarkAndInkTheOtherWayRound)
{
    for (std::size_t index = 0; index < paletteThemeCount; ++index) {
        const auto palette = static_cast<AppPaletteTheme>(index);
        const auto grey = [&](Role role, ColourScheme scheme) {
            return qGray(paletteColour(role, palette, scheme));
        };
        for (const Role paper : {Role::paper, Role::paperCard, Role::paperInset}) {
            EXPECT_GT(grey(paper, ColourScheme::light), 200);
            EXPECT_LT(grey(paper, ColourScheme::dark), 50);
        }
        EXPECT_LT(grey(Role::ink, ColourScheme::light), 20);
        EXPECT_GT(grey(Role::ink, ColourScheme::dark), 220);
    }
}

TEST(Palette, hasARawNameAndALabelEach)
{
    const std::tuple<AppPaletteTheme, std::string_view, QString> names[] = {
        {AppPaletteTheme::woodland, "woodland", QStringLiteral("Woodland")},
        {AppPaletteTheme::ember, "ember", QStringLiteral("Ember")},
        {AppPaletteTheme::tide, "tide", QStringLiteral("Tide")},
        {AppPaletteTheme::dusk, "dusk", QStringLiteral("Dusk")},
    };
    for (const auto& [palette, raw, text] : names) {
        EXPECT_EQ(rawName(palette), raw);
        EXPECT_EQ(label(palette), text);
        EXPECT_EQ(paletteThemeNamed(raw), palette);
    }
    EXPECT_EQ(paletteThemeNamed("forest"), AppPaletteTheme::woodland);
    EXPECT_EQ(paletteThemeNamed(""), AppPaletteTheme::woodland);
}

}  // namespace gruk
