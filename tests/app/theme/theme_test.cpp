#include "app/theme/theme.h"

#include <QApplication>
#include <QFontInfo>
#include <gtest/gtest.h>

#include "app/model/setting_keys.h"
#include "platform/settings/user_defaults.h"
#include "tests/support/temporary_directory.h"

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

TEST(Theme, takesPaletteAndSchemeFromThePreferencesAndKeepsThemThere)
{
    const test::TemporaryDirectory directory;
    const FileURL file = FileURL(directory.path("settings.json"));
    {
        UserDefaults preferences(file);
        Theme theme;
        theme.followPreferences(preferences);
        EXPECT_EQ(theme.paletteTheme(), AppPaletteTheme::woodland);
        EXPECT_EQ(theme.appTheme(), AppTheme::system);
        theme.setPaletteTheme(AppPaletteTheme::dusk);
        theme.setAppTheme(AppTheme::dark);
        EXPECT_EQ(preferences.text(SettingKeys::paletteTheme), "dusk");
        EXPECT_EQ(preferences.text(SettingKeys::appTheme), "dark");
    }
    UserDefaults preferences(file);
    Theme theme;
    theme.followPreferences(preferences);
    EXPECT_EQ(theme.paletteTheme(), AppPaletteTheme::dusk);
    EXPECT_EQ(theme.scheme(), ColourScheme::dark);
}

TEST(Theme, anUnknownPaletteIsWoodlandAndAnUnknownSchemeFollowsTheSystem)
{
    const test::TemporaryDirectory directory;
    UserDefaults preferences(FileURL(directory.path("settings.json")));
    preferences.setText(SettingKeys::paletteTheme, "Ember");
    preferences.setText(SettingKeys::appTheme, "midnight");
    Theme theme;
    theme.followPreferences(preferences);
    EXPECT_EQ(theme.paletteTheme(), AppPaletteTheme::woodland);
    EXPECT_EQ(theme.appTheme(), AppTheme::system);
    EXPECT_EQ(theme.scheme(), ColourScheme::light);
    preferences.setBoolean(SettingKeys::paletteTheme, true);
    theme.followPreferences(preferences);
    EXPECT_EQ(theme.paletteTheme(), AppPaletteTheme::woodland);
}

TEST(Theme, readsAgainWhenTheProgramComesToTheFront)
{
    const test::TemporaryDirectory directory;
    const FileURL file = FileURL(directory.path("settings.json"));
    UserDefaults preferences(file);
    Theme theme;
    theme.followPreferences(preferences);
    int changes = 0;
    QObject::connect(&theme, &Theme::changed, &theme, [&] { ++changes; });
    UserDefaults otherProcess(file);
    otherProcess.setText(SettingKeys::paletteTheme, "tide");
    otherProcess.setText(SettingKeys::appTheme, "dark");
    QEvent activation(QEvent::ApplicationActivate);
    QApplication::sendEvent(qApp, &activation);
    EXPECT_EQ(theme.paletteTheme(), AppPaletteTheme::tide);
    EXPECT_EQ(theme.scheme(), ColourScheme::dark);
    EXPECT_EQ(changes, 1);
    QApplication::sendEvent(qApp, &activation);
    EXPECT_EQ(changes, 1);
}

TEST(Theme, aChoiceThatCannotBeWrittenHoldsAllTheSame)
{
    UserDefaults preferences(FileURL("/proc/no such folder/settings.json"));
    Theme theme;
    theme.followPreferences(preferences);
    theme.setPaletteTheme(AppPaletteTheme::ember);
    EXPECT_EQ(theme.paletteTheme(), AppPaletteTheme::ember);
}

TEST(Theme, theUsersSchemeComesBeforeTheToolkits)
{
    Theme theme;
    theme.setAppTheme(AppTheme::light);
    QApplication::setPalette(desktopPalette(QColor(30, 30, 30), Qt::white));
    EXPECT_EQ(theme.scheme(), ColourScheme::light);
    theme.setAppTheme(AppTheme::system);
    EXPECT_EQ(theme.scheme(), ColourScheme::dark);
    QApplication::setPalette(desktopPalette(Qt::white, Qt::black));
    EXPECT_EQ(theme.scheme(), ColourScheme::light);
}

TEST(Theme, reducedMotionTakesNoTime)
{
    Theme theme;
    EXPECT_EQ(theme.duration(280), 280);
    theme.setReducedMotion(true);
    EXPECT_EQ(theme.duration(280), 0);
}

}  // namespace gruk
