#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

#include <QApplication>
#include <QImage>
#include <gtest/gtest.h>

#include "app/screens/selection_box.h"
#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/palette.h"
#include "app/theme/theme.h"

namespace gruk {

namespace {

/// What text needs against its ground.
constexpr double readable = 4.5;

struct Light {
    double red = 0;
    double green = 0;
    double blue = 0;
};

Light lightOf(const QColor& colour)
{
    return {colour.redF(), colour.greenF(), colour.blueF()};
}

/// What lies under a colour of that strength shows through it.
Light over(const QColor& colour, double opacity, const Light& ground)
{
    const Light top = lightOf(colour);
    const auto mix = [opacity](double a, double b) { return a * opacity + b * (1 - opacity); };
    return {mix(top.red, ground.red), mix(top.green, ground.green), mix(top.blue, ground.blue)};
}

/// The relative luminance of the Web Content Accessibility Guidelines 2.1.
double luminance(const Light& light)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(light.red) + 0.7152 * linear(light.green) + 0.0722 * linear(light.blue);
}

double contrast(const Light& a, const Light& b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

struct Look {
    AppPaletteTheme palette;
    AppTheme appTheme;
};

class Contrast : public testing::TestWithParam<Look> {
protected:
    Contrast()
    {
        theme.setPaletteTheme(GetParam().palette);
        theme.setAppTheme(GetParam().appTheme);
    }

    /// Every ground on which screens write.
    [[nodiscard]] std::vector<Light> grounds() const
    {
        const Light paper = lightOf(theme.colour(Role::paper));
        const Light inset = lightOf(theme.colour(Role::paperInset));
        const QColor card = theme.colour(Role::paperCard);
        const QColor ink = theme.colour(Role::ink);
        const Light cardOnPaper = over(card, Strength::card, paper);
        return {
            paper,
            inset,
            lightOf(card),
            cardOnPaper,
            over(card, Strength::card, inset),
            // Under the pointer.
            over(ink, Strength::shadow, inset),
        };
    }

    void expectReadable(Role role, double opacity) const
    {
        const QColor colour = theme.colour(role);
        for (const Light& ground : grounds()) {
            EXPECT_GE(contrast(over(colour, opacity, ground), ground), readable)
                << "role " << static_cast<int>(role) << " at " << opacity << ", on "
                << ground.red * 255 << ' ' << ground.green * 255 << ' ' << ground.blue * 255;
        }
    }

    Theme theme;
};

std::vector<Look> looks()
{
    std::vector<Look> all;
    for (std::size_t index = 0; index < paletteThemeCount; ++index) {
        all.push_back({static_cast<AppPaletteTheme>(index), AppTheme::light});
        all.push_back({static_cast<AppPaletteTheme>(index), AppTheme::dark});
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Looks, Contrast, testing::ValuesIn(looks()), [](const auto& look) {
    return std::string(rawName(look.param.palette)) + std::string(rawName(look.param.appTheme));
});

/// The colours of a picture of `widget`, without those that smooth the edges of others.
std::vector<QColor> mostUsed(QWidget& widget, std::size_t count)
{
    const QImage image = widget.grab().toImage();
    std::map<QRgb, int> uses;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ++uses[image.pixel(x, y)];
        }
    }
    std::vector<std::pair<int, QRgb>> order;
    for (const auto& [colour, times] : uses) {
        order.emplace_back(times, colour);
    }
    std::sort(order.rbegin(), order.rend());
    std::vector<QColor> colours;
    for (std::size_t index = 0; index < std::min(count, order.size()); ++index) {
        colours.push_back(QColor::fromRgb(order[index].second));
    }
    return colours;
}

}  // namespace

TEST(ContrastFormula, isTwentyOneForBlackOnWhiteAndOneForThemselves)
{
    EXPECT_NEAR(contrast(lightOf(Qt::white), lightOf(Qt::black)), 21, 1e-9);
    EXPECT_NEAR(contrast(lightOf(Qt::red), lightOf(Qt::red)), 1, 1e-9);
    EXPECT_NEAR(contrast(lightOf(QColor(0x77, 0x77, 0x77)), lightOf(Qt::white)), 4.48, 0.005);
}

TEST_P(Contrast, inkCanBeReadWholeAndQuiet)
{
    expectReadable(Role::ink, Strength::full);
    expectReadable(Role::ink, Strength::quiet);
}

TEST_P(Contrast, whateverRoleTextIsMeantToHaveCanBeRead)
{
    for (std::size_t index = 0; index < roleCount; ++index) {
        expectReadable(textRole(static_cast<Role>(index)), Strength::full);
    }
}

TEST_P(Contrast, aLabelWritesInTheRoleThatCanBeRead)
{
    Label label(theme, TextStyle::body);
    label.setColour(Role::red);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), theme.colour(Role::ink));
    label.setColour(Role::fernDark);
    EXPECT_EQ(label.palette().color(QPalette::WindowText), theme.colour(Role::accent));
}

TEST_P(Contrast, aSelectionCanBeRead)
{
    const QPalette palette = theme.windowPalette();
    EXPECT_GE(contrast(lightOf(palette.color(QPalette::HighlightedText)),
                       lightOf(palette.color(QPalette::Highlight))),
              readable);
    EXPECT_GE(
        contrast(lightOf(palette.color(QPalette::Link)), lightOf(palette.color(QPalette::Base))),
        readable);
}

TEST_P(Contrast, thePrimaryButtonCanBeReadAlsoUnderThePointer)
{
    // A row of full blocks: text and ground are each large areas of one colour.
    Button button(theme, Button::Kind::primary, QString(12, QChar(0x2588)));
    button.resize(button.sizeHint());
    for (const bool isUnderThePointer : {false, true}) {
        button.setAttribute(Qt::WA_UnderMouse, isUnderThePointer);
        const std::vector<QColor> colours = mostUsed(button, 2);
        ASSERT_EQ(colours.size(), 2U);
        EXPECT_GE(contrast(lightOf(colours[0]), lightOf(colours[1])), readable)
            << colours[0].name().toStdString() << ' ' << colours[1].name().toStdString();
    }
}

TEST_P(Contrast, aDisabledPrimaryButtonStillTellsWhatGoesOn)
{
    QWidget paper;
    paper.setPalette(theme.windowPalette());
    Button button(theme, Button::Kind::primary, QString(12, QChar(0x2588)), &paper);
    button.resize(button.sizeHint());
    paper.resize(button.size());
    button.setEnabled(false);
    const std::vector<QColor> colours = mostUsed(paper, 2);
    ASSERT_EQ(colours.size(), 2U);
    EXPECT_GE(contrast(lightOf(colours[0]), lightOf(colours[1])), readable)
        << colours[0].name().toStdString() << ' ' << colours[1].name().toStdString();
}

TEST_P(Contrast, theTickOfASelectionBoxCanBeRead)
{
    QWidget paper;
    paper.setPalette(theme.windowPalette());
    SelectionBox box(theme, &paper);
    box.setChecked(true);
    paper.resize(box.size());
    std::vector<QColor> colours = mostUsed(paper, 3);
    std::erase(colours, theme.colour(Role::paper));
    ASSERT_EQ(colours.size(), 2U);
    EXPECT_GE(contrast(lightOf(colours[0]), lightOf(colours[1])), readable)
        << colours[0].name().toStdString() << ' ' << colours[1].name().toStdString();
}

TEST_P(Contrast, theAccentIsFernDarkOrItsOwnHueMadeLighter)
{
    const QColor accent = theme.windowPalette().color(QPalette::Link);
    const QColor fernDark = theme.colour(Role::fernDark);
    if (theme.scheme() == ColourScheme::light) {
        EXPECT_EQ(accent, fernDark);
        return;
    }
    EXPECT_NEAR(accent.hslHueF(), fernDark.hslHueF(), 0.01);
    EXPECT_NEAR(accent.hslSaturationF(), fernDark.hslSaturationF(), 0.02);
    EXPECT_GT(accent.lightnessF(), fernDark.lightnessF());
}

}  // namespace gruk
