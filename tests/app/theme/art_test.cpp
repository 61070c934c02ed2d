#include "app/theme/art.h"

#include <algorithm>
#include <cmath>
#include <set>

#include <QAccessible>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include "app/theme/resources.h"

namespace gruk {

namespace {

constexpr const char* drawings[] = {
    "gruk_hero",         "gruk_state_map",       "gruk_state_report",
    "gruk_state_patrol", "gruk_state_celebrate", "gruk_state_attack",
    "program",
};
constexpr AppPaletteTheme palettes[] = {AppPaletteTheme::woodland, AppPaletteTheme::ember,
                                        AppPaletteTheme::tide, AppPaletteTheme::dusk};
constexpr ColourScheme schemes[] = {ColourScheme::dark, ColourScheme::light};

QByteArray drawing(const char* name)
{
    return themeResource(QStringLiteral("art/%1.svg").arg(QLatin1String(name)));
}

/// Every colour that a drawing names, in whatever way one can be named.
std::set<QRgb> coloursOf(const QByteArray& svg)
{
    static const QRegularExpression colour(
        QStringLiteral("(?:fill|stroke|color|stop-color)=\"([^\"]*)\""));
    std::set<QRgb> colours;
    for (auto matches = colour.globalMatch(QString::fromUtf8(svg)); matches.hasNext();) {
        const QString value = matches.next().captured(1);
        EXPECT_TRUE(value.startsWith(QLatin1Char('#'))) << value.toStdString();
        colours.insert(QColor(value).rgba());
    }
    return colours;
}

std::set<QRgb> table(AppPaletteTheme palette, ColourScheme scheme)
{
    std::set<QRgb> colours;
    // Without the accent, which no drawing may use.
    for (std::size_t index = 0; index < static_cast<std::size_t>(Role::accent); ++index) {
        colours.insert(paletteColour(static_cast<Role>(index), palette, scheme));
    }
    return colours;
}

QImage painted(Art art, const Theme& theme, int size, int scale = 1)
{
    QImage image(size * scale, size * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintArt(painter, QRectF(0, 0, size, size), art, theme);
    return image;
}

int pixelsOf(const QImage& image, const QColor& colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += image.pixelColor(x, y) == colour ? 1 : 0;
        }
    }
    return count;
}

/// How far two pictures are apart, of 255 for each channel.
double distance(const QImage& a, const QImage& b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            sum += std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other))
                   + std::abs(qBlue(one) - qBlue(other)) + std::abs(qAlpha(one) - qAlpha(other));
        }
    }
    return sum / (4.0 * a.width() * a.height());
}

}  // namespace

TEST(Art, noColourOutsideTheLightWoodlandTableStandsInADrawing)
{
    const std::set<QRgb> allowed = table(AppPaletteTheme::woodland, ColourScheme::light);
    for (const char* name : drawings) {
        const std::set<QRgb> colours = coloursOf(drawing(name));
        EXPECT_GT(colours.size(), 5U) << name;
        EXPECT_TRUE(std::ranges::includes(allowed, colours)) << name;
    }
}

TEST(Art, everyDrawingUsesFlatAreasOnly)
{
    const QRegularExpression elements(QStringLiteral("<([a-zA-Z]+)"));
    for (const char* name : drawings) {
        std::set<QString> found;
        const QString text = QString::fromUtf8(drawing(name));
        for (auto matches = elements.globalMatch(text); matches.hasNext();) {
            found.insert(matches.next().captured(1));
        }
        EXPECT_EQ(found, (std::set{QStringLiteral("path"), QStringLiteral("svg")})) << name;
        EXPECT_FALSE(text.contains(QStringLiteral("style="))) << name;
    }
}

TEST(Art, isRecolouredByRoleForEveryPaletteAndScheme)
{
    for (const AppPaletteTheme palette : palettes) {
        for (const ColourScheme scheme : schemes) {
            const std::set<QRgb> allowed = table(palette, scheme);
            for (const char* name : drawings) {
                const QByteArray svg = recoloured(drawing(name), palette, scheme);
                EXPECT_TRUE(std::ranges::includes(allowed, coloursOf(svg))) << name;
                EXPECT_TRUE(QSvgRenderer(svg).isValid()) << name;
            }
        }
    }
}

TEST(Art, isTheCommittedDrawingInLightWoodland)
{
    for (const char* name : drawings) {
        const QByteArray svg = drawing(name);
        EXPECT_EQ(recoloured(svg, AppPaletteTheme::woodland, ColourScheme::light).toUpper(),
                  svg.toUpper());
    }
}

TEST(Art, anOutlineIsLightAtNightWhileTheEyesStayDark)
{
    const QByteArray outline = R"(<path fill="#0B0B0A" d="M0 0"/>)";
    const QByteArray eye = R"(<path fill="#0B0B0A" class="steady" d="M0 0"/>)";
    const QByteArray shine = R"(<path fill="#FBF8EF" class="steady" d="M0 0"/>)";
    const auto atNight = [](const QByteArray& svg) {
        return recoloured(svg, AppPaletteTheme::tide, ColourScheme::dark);
    };
    EXPECT_EQ(atNight(outline), R"(<path fill="#e6edf0" d="M0 0"/>)");
    EXPECT_EQ(atNight(eye), R"(<path fill="#0c1112" class="steady" d="M0 0"/>)");
    EXPECT_EQ(atNight(shine), R"(<path fill="#e6edf0" class="steady" d="M0 0"/>)");
    // A mark counts for its own element only.
    EXPECT_EQ(atNight(outline + eye), atNight(outline) + atNight(eye));
}

TEST(Art, keepsAColourThatHasNoRole)
{
    const QByteArray svg = R"(<path fill="#123456" d="M0 0"/><path fill="#5B9164" d="M0 0"/>)";
    EXPECT_EQ(recoloured(svg, AppPaletteTheme::woodland, ColourScheme::dark),
              R"(<path fill="#123456" d="M0 0"/><path fill="#7ab382" d="M0 0"/>)");
}

TEST(Art, everyPictureShowsTheGrukInTheColoursOfTheTheme)
{
    Theme theme;
    for (const AppPaletteTheme palette : palettes) {
        theme.setPaletteTheme(palette);
        for (int index = 0; index < artCount; ++index) {
            const QImage image = painted(static_cast<Art>(index), theme, 240);
            EXPECT_GT(pixelsOf(image, theme.colour(Role::fern)), 2'000) << index;
            EXPECT_GT(pixelsOf(image, theme.colour(Role::fernDark)), 1'000) << index;
            EXPECT_GT(pixelsOf(image, theme.colour(Role::ink)), 1'000) << index;
        }
    }
}

TEST(Art, standsInTheMiddleOfWhatIsNotSquare)
{
    const Theme theme;
    QImage wide(200, 100, QImage::Format_ARGB32_Premultiplied);
    wide.fill(Qt::transparent);
    QPainter painter(&wide);
    paintArt(painter, wide.rect(), Art::grukHero, theme);
    painter.end();
    EXPECT_EQ(wide.copy(50, 0, 100, 100), painted(Art::grukHero, theme, 100));
    QImage sides = wide;
    sides.detach();
    for (int y = 0; y < wide.height(); ++y) {
        EXPECT_EQ(qAlpha(wide.pixel(20, y)), 0);
        EXPECT_EQ(qAlpha(wide.pixel(180, y)), 0);
    }
}

TEST(Art, isPaintedAsSharpAsItsPictureAndAgainAfterAChangeOfPalette)
{
    Theme theme;
    const QImage plain = painted(Art::grukHero, theme, 96);
    const QImage sharp = painted(Art::grukHero, theme, 96, 2);
    EXPECT_EQ(sharp.size(), QSize(192, 192));
    EXPECT_GT(distance(sharp, plain.scaled(192, 192)), 1);
    theme.setPaletteTheme(AppPaletteTheme::ember);
    EXPECT_GT(distance(painted(Art::grukHero, theme, 96), plain), 5);
    theme.setPaletteTheme(AppPaletteTheme::woodland);
    EXPECT_EQ(painted(Art::grukHero, theme, 96), plain);
}

TEST(Art, nothingIsPaintedIntoNoSpace)
{
    const Theme theme;
    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintArt(painter, QRectF(0, 0, 0, 10), Art::grukHero, theme);
    painter.end();
    EXPECT_EQ(pixelsOf(image, QColor(Qt::transparent)), 100);
}

TEST(ArtView, isAPictureOfItsName)
{
    Theme theme;
    const QString name = QStringLiteral("A friendly green Gruk");
    ArtView view(theme, Art::grukHero, name);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Graphic);
    EXPECT_EQ(accessible->text(QAccessible::Name), name);
}

TEST(ArtView, isDecorationWithoutAName)
{
    Theme theme;
    ArtView view(theme, Art::grukStateMap, {});
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
    ASSERT_NE(accessible, nullptr);
    EXPECT_NE(accessible->role(), QAccessible::Graphic);
}

TEST(ArtView, showsAnotherPictureWhenTold)
{
    Theme theme;
    ArtView view(theme, Art::grukHero, {});
    view.resize(96, 96);
    const auto picture = [&] {
        QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view.render(&image, {}, {}, QWidget::DrawChildren);
        return image;
    };
    const QImage hero = picture();
    EXPECT_EQ(hero, painted(Art::grukHero, theme, 96));
    view.setArt(Art::grukStateAttack);
    EXPECT_EQ(picture(), painted(Art::grukStateAttack, theme, 96));
    EXPECT_NE(picture(), hero);
}

TEST(ProgramIcon, hasThePicturesThatWindowsAskFor)
{
    const QIcon icon = programIcon();
    for (const int size : {16, 24, 32, 48, 128}) {
        const QImage image = icon.pixmap(QSize(size, size)).toImage();
        EXPECT_EQ(image.size(), QSize(size, size));
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
        EXPECT_EQ(qAlpha(image.pixel(size / 2, size / 2)), 255);
    }
}

TEST(ProgramIcon, thePicturesForTheDesktopAreMadeFromTheDrawing)
{
    for (const int size : {48, 128}) {
        const QString file = QStringLiteral(GRUK_PACKAGING "/icons/hicolor/%1x%1/apps/"
                                                           "io.github.gruk.Gruk.png")
                                 .arg(size);
        const QImage committed(file);
        ASSERT_EQ(committed.size(), QSize(size, size)) << file.toStdString();
        const QImage drawn = programIcon().pixmap(QSize(size, size)).toImage();
        EXPECT_LT(distance(committed.convertToFormat(QImage::Format_ARGB32),
                           drawn.convertToFormat(QImage::Format_ARGB32)),
                  1);
    }
}

TEST(ProgramIcon, theSymbolicOneIsOneColourOnTheSmallGrid)
{
    QSvgRenderer symbol(QStringLiteral(GRUK_PACKAGING "/icons/hicolor/symbolic/apps/"
                                                      "io.github.gruk.Gruk-symbolic.svg"));
    ASSERT_TRUE(symbol.isValid());
    EXPECT_EQ(symbol.defaultSize(), QSize(16, 16));
    QImage image(64, 64, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    symbol.render(&painter);
    painter.end();
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255) {
                colours.insert(image.pixel(x, y));
            }
        }
    }
    EXPECT_EQ(colours.size(), 1U);
}

}  // namespace gruk
