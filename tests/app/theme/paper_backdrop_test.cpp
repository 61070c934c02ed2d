#include "app/theme/paper_backdrop.h"

#include <cmath>
#include <numbers>

#include <QApplication>
#include <QImage>
#include <gtest/gtest.h>

namespace gruk {

namespace {

/// How much ink lies around a point, in pixels covered whole by the grain.
double inkAround(const QImage& image, double x, double y, const Theme& theme)
{
    constexpr int reach = 2;
    const double paper = theme.colour(Role::paper).redF();
    const double full = (paper - theme.colour(Role::ink).redF()) * 0.055;
    double ink = 0;
    for (int row = static_cast<int>(y) - reach; row <= static_cast<int>(y) + reach; ++row) {
        for (int column = static_cast<int>(x) - reach; column <= static_cast<int>(x) + reach;
             ++column) {
            if (image.rect().contains(column, row)) {
                ink += (paper - image.pixelColor(column, row).redF()) / full;
            }
        }
    }
    return ink;
}

}  // namespace

TEST(PaperBackdrop, hasADotAtEachPlaceOfTheGridAndElsewhereNone)
{
    Theme theme;
    PaperBackdrop paper(theme);
    paper.resize(700, 500);
    const QImage image = paper.grab().toImage();
    const double dot = std::numbers::pi * 0.55 * 0.55;
    int dots = 0;
    for (int x = 7; x <= 690; x += 31) {
        for (int y = 11; y <= 490; y += 31) {
            const double aside = (x + y) % 5 == 0 ? 2 : 0;
            EXPECT_NEAR(inkAround(image, x + aside, y, theme), dot, 0.45) << x << ' ' << y;
            ++dots;
        }
    }
    double all = 0;
    const double paperRed = theme.colour(Role::paper).redF();
    const double full = (paperRed - theme.colour(Role::ink).redF()) * 0.055;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            all += (paperRed - image.pixelColor(x, y).redF()) / full;
        }
    }
    EXPECT_NEAR(all, dots * dot, dots * 0.4);
}

TEST(PaperBackdrop, theDotsWhoseColumnAndRowAddUpToAMultipleOfFiveStandAside)
{
    Theme theme;
    PaperBackdrop paper(theme);
    paper.resize(700, 500);
    const QImage image = paper.grab().toImage();
    const auto ink = [&](int x, int y) {
        return theme.colour(Role::paper).red() - image.pixelColor(x, y).red();
    };
    int aside = 0;
    for (int x = 7; x <= 690; x += 31) {
        for (int y = 11; y <= 490; y += 31) {
            const bool standsAside = (x + y) % 5 == 0;
            // The pixel that a dot at its place would cover most of, and the one two further.
            EXPECT_EQ(ink(x, y) > 3, !standsAside) << x << ' ' << y;
            EXPECT_EQ(ink(x + 2, y) > 3, standsAside) << x << ' ' << y;
            aside += standsAside ? 1 : 0;
        }
    }
    EXPECT_GT(aside, 50);
}

TEST(PaperBackdrop, repaintsWithThePalette)
{
    Theme theme;
    PaperBackdrop paper(theme);
    paper.resize(80, 80);
    EXPECT_EQ(paper.grab().toImage().pixelColor(2, 2), theme.colour(Role::paper));
    theme.setPaletteTheme(AppPaletteTheme::tide);
    EXPECT_EQ(paper.grab().toImage().pixelColor(2, 2), theme.colour(Role::paper));
}

}  // namespace gruk
