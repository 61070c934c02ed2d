#include "app/theme/palette.h"

#include <algorithm>
#include <array>

#include <QColor>

namespace gruk {

namespace {

/// One colour of one palette.
struct Shade {
    QRgb dark;
    QRgb light;
};

/// The roles of the table: all but the accent.
constexpr std::size_t tableSize = roleCount - 1;

constexpr std::array<std::array<Shade, paletteThemeCount>, tableSize> colours = {{
    // woodland, ember, tide, dusk
    {{{0x7AB382, 0x5B9164}, {0xE2B44C, 0xD09821}, {0x76BDB4, 0x529D96}, {0x969D98, 0x69736D}}},
    {{{0x4F7D58, 0x2D5738}, {0xBA6D36, 0x8B431A}, {0x457AAA, 0x1D4C7A}, {0x7A659C, 0x4C3865}}},
    {{{0x73A6CD, 0x4D88B8}, {0x6B96BD, 0x47719D}, {0x79BDDD, 0x52A5CD}, {0x7A96C8, 0x536DA5}}},
    {{{0xE0C469, 0xF4D451}, {0xEDC45C, 0xFCCD2D}, {0xDBBD5C, 0xEEC838}, {0xD0B465, 0xE0BD3F}}},
    {{{0xE16056, 0xEB3B2F}, {0xE05843, 0xE6291F}, {0xD6604C, 0xDB3829}, {0xCB5A5A, 0xD32D32}}},
    {{{0xEDEBE3, 0x0B0B0A}, {0xF0E0D1, 0x0E0906}, {0xE6EDF0, 0x090B0D}, {0xEBE6ED, 0x0B0A0D}}},
    {{{0xD37F4B, 0xC1622C}, {0xCD5D45, 0xAF3425}, {0xD98B71, 0xBF6953}, {0xBA838B, 0x925A62}}},
    {{{0x609D96, 0x3C7A73}, {0xA37C4F, 0x765331}, {0x4992A3, 0x21697A}, {0x7A849D, 0x4C556E}}},
    {{{0x9D6D8E, 0x7A4A6B}, {0xBA5A5D, 0x8A313C}, {0x7681C4, 0x4D589D}, {0x9269A5, 0x653D76}}},
    {{{0xAAA56A, 0x8A8547}, {0xD4B44A, 0xB49021}, {0x8BA99D, 0x608076}, {0x9D988F, 0x6E6860}}},
    {{{0x8B99A0, 0x5C6B73}, {0xAA9883, 0x7A6758}, {0x6D8CA3, 0x3D5C73}, {0x838794, 0x4C505C}}},
    {{{0xD4B88B, 0xC9A66B}, {0xE1AF65, 0xD3923E}, {0xC9C8B4, 0xAAA996}, {0xBAAFB4, 0x92858C}}},
    {{{0x12110F, 0xE6DFD0}, {0x16100C, 0xE9DDCA}, {0x0C1112, 0xDAE2E2}, {0x110F14, 0xE0DAE0}}},
    {{{0x1C1B18, 0xF2EFE7}, {0x201813, 0xF5EDE0}, {0x13191C, 0xE7EDED}, {0x1B181D, 0xEDE9ED}}},
    {{{0x292724, 0xFBF8EF}, {0x2F261D, 0xFCF5E7}, {0x21282A, 0xF1F6F7}, {0x28252A, 0xF6F4F7}}},
}};

/// How much lighter than `fernDark` the accent is on dark paper, as a part of the way from black to
/// white: enough for every palette, and little more.
constexpr float accentLift = 0.14F;

/// Lightness alone changes, so that each palette keeps the hue it is known by.
QRgb lifted(QRgb colour)
{
    float hue = 0;
    float saturation = 0;
    float lightness = 0;
    QColor::fromRgb(colour).getHslF(&hue, &saturation, &lightness);
    return QColor::fromHslF(hue, saturation, std::min(lightness + accentLift, 1.0F)).rgb();
}

struct Name {
    std::string_view raw;
    const char16_t* label;
};

constexpr std::array<Name, paletteThemeCount> paletteNames = {{
    {"woodland", u"Woodland"},
    {"ember", u"Ember"},
    {"tide", u"Tide"},
    {"dusk", u"Dusk"},
}};

constexpr std::array<Name, appThemeCount> appThemeNames = {{
    {"system", u"System"},
    {"light", u"Light"},
    {"dark", u"Dark"},
}};

/// The case of that name, else the first.
template <typename Case, std::size_t count>
Case named(std::string_view rawName, const std::array<Name, count>& names)
{
    for (std::size_t index = 0; index < count; ++index) {
        if (names[index].raw == rawName) {
            return static_cast<Case>(index);
        }
    }
    return Case{};
}

static_assert(roleOf(Tincture::fern) == Role::fern);
static_assert(roleOf(Tincture::sand) == Role::sand);
static_assert(static_cast<std::size_t>(Role::accent) == tableSize);
static_assert(static_cast<std::size_t>(Role::sand) + 1 == tinctureCount);

}  // namespace

std::string_view rawName(AppPaletteTheme palette)
{
    return paletteNames[static_cast<std::size_t>(palette)].raw;
}

QString label(AppPaletteTheme palette)
{
    return QString::fromUtf16(paletteNames[static_cast<std::size_t>(palette)].label);
}

AppPaletteTheme paletteThemeNamed(std::string_view rawName)
{
    return named<AppPaletteTheme>(rawName, paletteNames);
}

std::string_view rawName(AppTheme appTheme)
{
    return appThemeNames[static_cast<std::size_t>(appTheme)].raw;
}

QString label(AppTheme appTheme)
{
    return QString::fromUtf16(appThemeNames[static_cast<std::size_t>(appTheme)].label);
}

AppTheme appThemeNamed(std::string_view rawName)
{
    return named<AppTheme>(rawName, appThemeNames);
}

QRgb paletteColour(Role role, AppPaletteTheme palette, ColourScheme scheme)
{
    if (role == Role::accent) {
        const QRgb fernDark = paletteColour(Role::fernDark, palette, scheme);
        return scheme == ColourScheme::dark ? lifted(fernDark) : fernDark;
    }
    const Shade& shade = colours[static_cast<std::size_t>(role)][static_cast<std::size_t>(palette)];
    return 0xFF00'0000U | (scheme == ColourScheme::dark ? shade.dark : shade.light);
}

}  // namespace gruk
