#include "app/theme/palette.h"

#include <tuple>

#include <QApplication>
#include <gtest/gtest.h>

#include "app/theme/theme.h"
#include "core/realm/realm_identity.h"

namespace gruk {

TEST(Palette, hasTheValuesOfTheTable)
{
    struct Case {
        Role role;
        AppPaletteTheme palette;
        QRgb dark;
        QRgb light;
    };
    const Case cases[] = {
        {Role::fern, AppPaletteTheme::woodland, 0xFF7AB382, 0xFF5B9164},
        {Role::fernDark, AppPaletteTheme::woodland, 0xFF4F7D58, 0xFF2D5738},
        {Role::blue, AppPaletteTheme::ember, 0xFF6B96BD, 0xFF47719D},
        {Role::yellow, AppPaletteTheme::dusk, 0xFFD0B465, 0xFFE0BD3F},
        {Role::red, AppPaletteTheme::tide, 0xFFD6604C, 0xFFDB3829},
        {Role::ink, AppPaletteTheme::woodland, 0xFFEDEBE3, 0xFF0B0B0A},
        {Role::terracotta, AppPaletteTheme::dusk, 0xFFBA838B, 0xFF925A62},
        {Role::teal, AppPaletteTheme::ember, 0xFFA37C4F, 0xFF765331},
        {Role::plum, AppPaletteTheme::tide, 0xFF7681C4, 0xFF4D589D},
        {Role::olive, AppPaletteTheme::ember, 0xFFD4B44A, 0xFFB49021},
        {Role::slate, AppPaletteTheme::woodland, 0xFF8B99A0, 0xFF5C6B73},
        {Role::sand, AppPaletteTheme::dusk, 0xFFBAAFB4, 0xFF92858C},
        {Role::paperInset, AppPaletteTheme::ember, 0xFF16100C, 0xFFE9DDCA},
        {Role::paper, AppPaletteTheme::tide, 0xFF13191C, 0xFFE7EDED},
        {Role::paperCard, AppPaletteTheme::dusk, 0xFF28252A, 0xFFF6F4F7},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(paletteColour(each.role, each.palette, ColourScheme::dark), each.dark);
        EXPECT_EQ(paletteColour(each.role, each.palette, ColourScheme::light), each.light);
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

TEST(Palette, changingItLeavesEveryRealmIdentityAsItWas)
{
    const RealmIdentity before = RealmIdentity::derive("/home/gruk/Downloads");
    Theme theme;
    for (std::size_t index = 0; index < paletteThemeCount; ++index) {
        theme.setPaletteTheme(static_cast<AppPaletteTheme>(index));
        EXPECT_EQ(RealmIdentity::derive("/home/gruk/Downloads"), before);
    }
}

}  // namespace gruk
