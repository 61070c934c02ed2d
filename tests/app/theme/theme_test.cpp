#include "app/theme/theme.h"

#include <QApplication>
#include <QFontInfo>
#include <gtest/gtest.h>

namespace gruk {

namespace {

QPalette desktopPalette(const QColor& window, const QColor& text)
{
    QPalette palette;
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

}  // namespace

TEST(Theme, followsTheDesktopFromLightToDarkAndBack)
{
    QApplication::setPalette(desktopPalette(Qt::white, Qt::black));
    Theme theme;
    int changes = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { ++changes; });
    EXPECT_EQ(theme.scheme(), ColourScheme::light);
    EXPECT_EQ(theme.colour(Role::paper), QColor(0xF2, 0xEF, 0xE7));

    QApplication::setPalette(desktopPalette(QColor(30, 30, 30), Qt::white));
    EXPECT_EQ(theme.scheme(), ColourScheme::dark);
    EXPECT_EQ(theme.colour(Role::paper), QColor(0x1C, 0x1B, 0x18));
    EXPECT_EQ(changes, 1);

    QApplication::setPalette(desktopPalette(Qt::white, Qt::black));
    EXPECT_EQ(theme.scheme(), ColourScheme::light);
    EXPECT_EQ(changes, 2);
}

TEST(Theme, aChangeOfPaletteRepaints)
{
    Theme theme;
    bool changed = false;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { changed = true; });
    const QColor before = theme.colour(Role::fernDark);
    theme.setPaletteTheme(AppPaletteTheme::ember);
    EXPECT_TRUE(changed);
    EXPECT_NE(theme.colour(Role::fernDark), before);
}

TEST(Theme, givesAColourTheStrengthAskedFor)
{
    const Theme theme;
    EXPECT_EQ(theme.colour(Role::ink).alpha(), 255);
    EXPECT_NEAR(theme.colour(Role::ink, 0.64).alphaF(), 0.64, 0.01);
}

TEST(Theme, usesOnlyTheSizesOfTheHouse)
{
    const Theme theme;
    const std::pair<TextStyle, int> sizes[] = {
        {TextStyle::eyebrow, 11},   {TextStyle::small, 11},        {TextStyle::detail, 12},
        {TextStyle::body, 13},      {TextStyle::bodyStrong, 13},   {TextStyle::lead, 15},
        {TextStyle::brand, 18},     {TextStyle::sectionTitle, 18}, {TextStyle::value, 24},
        {TextStyle::pageTitle, 32},
    };
    for (const auto& [style, size] : sizes) {
        EXPECT_EQ(theme.font(style).pixelSize(), size);
    }
    EXPECT_TRUE(theme.font(TextStyle::body).families().contains(QStringLiteral("Quicksand")));
    EXPECT_FALSE(theme.font(TextStyle::body).families().last().isEmpty());
}

}  // namespace gruk
