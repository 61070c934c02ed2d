#include "app/theme/land_text.h"

#include <set>
#include <utility>

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "tests/support/paint_recorder.h"

namespace gruk {

namespace {

using test::PaintRecorder;

std::vector<PaintRecorder::Text> painted(const QPointF& centre, const QString& text, LandLine line,
                                         const Theme& theme)
{
    PaintRecorder recorder;
    QPainter painter(&recorder);
    paintLandText(painter, centre, text, line, theme);
    painter.end();
    return recorder.texts();
}

constexpr QPointF centre(200, 100);

}  // namespace

TEST(LandText, theNameIsSemiboldOf11AndTheSizeMediumOf9)
{
    const Theme theme;
    EXPECT_EQ(landFont(theme, LandLine::name).pixelSize(), 11);
    EXPECT_EQ(landFont(theme, LandLine::name).weight(), QFont::DemiBold);
    EXPECT_EQ(landFont(theme, LandLine::size).pixelSize(), 9);
    EXPECT_EQ(landFont(theme, LandLine::size).weight(), QFont::Medium);
    for (const LandLine line : {LandLine::name, LandLine::size}) {
        EXPECT_TRUE(
            landFont(theme, line).families().first().startsWith(QStringLiteral("Quicksand")));
        for (const PaintRecorder::Text& each :
             painted(centre, QStringLiteral("Forest"), line, theme)) {
            EXPECT_EQ(each.font.pixelSize(), landFont(theme, line).pixelSize());
            EXPECT_EQ(each.font.weight(), landFont(theme, line).weight());
        }
    }
}

TEST(LandText, isPaintedInInkInEightDirectionsAndThenInPaperOnTop)
{
    const Theme theme;
    const auto texts = painted(centre, QStringLiteral("Forest"), LandLine::name, theme);
    ASSERT_EQ(texts.size(), 9U);
    const PaintRecorder::Text& top = texts.back();
    EXPECT_EQ(top.colour, theme.colour(Role::paperCard));
    std::set<std::pair<double, double>> around;
    for (std::size_t index = 0; index < 8; ++index) {
        EXPECT_EQ(texts[index].text, QStringLiteral("Forest"));
        EXPECT_EQ(texts[index].colour, theme.colour(Role::ink));
        const QPointF aside = texts[index].start - top.start;
        around.emplace(aside.x(), aside.y());
    }
    EXPECT_EQ(around, (std::set<std::pair<double, double>>{
                          {-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-1, 1}, {0, 1}, {1, 1}}));
}

TEST(LandText, theSizeIsALittleQuieter)
{
    const Theme theme;
    const auto texts = painted(centre, QStringLiteral("5 MB"), LandLine::size, theme);
    ASSERT_EQ(texts.size(), 9U);
    EXPECT_EQ(texts.back().colour, theme.colour(Role::paperCard, 0.85));
    EXPECT_NEAR(texts.back().colour.alphaF(), 0.85, 0.005);
    EXPECT_EQ(texts.front().colour.alpha(), 255);
}

TEST(LandText, isCentredOnItsPoint)
{
    const Theme theme;
    for (const LandLine line : {LandLine::name, LandLine::size}) {
        for (const QString& text : {QStringLiteral("Forest"), QStringLiteral("A longer name")}) {
            const PaintRecorder::Text top = painted(centre, text, line, theme).back();
            const QFontMetricsF metrics(landFont(theme, line));
            const double left = top.start.x();
            const double right = left + metrics.horizontalAdvance(text);
            const double head = top.start.y() - metrics.ascent();
            const double foot = top.start.y() + metrics.descent();
            EXPECT_NEAR((left + right) / 2, centre.x(), 0.01);
            EXPECT_NEAR((head + foot) / 2, centre.y(), 0.01);
        }
    }
}

TEST(LandText, itsInkIsAllThatIsDrawnOfItAndHardlyMore)
{
    const Theme theme;
    for (const LandLine line : {LandLine::name, LandLine::size}) {
        for (const QString& text :
             {QStringLiteral("Forest"), QStringLiteral("Qjgy_Å"), QStringLiteral("—"),
              QStringLiteral("Z\u0308\u0301\u0308\u0301\u0308 a\u0323\u0324\u0323"),
              QStringLiteral("مستندات"), QStringLiteral("📷 5,2 GB")}) {
            QImage image(400, 200, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent);
            QPainter painter(&image);
            paintLandText(painter, centre, text, line, theme);
            painter.end();
            QRect drawn;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (image.pixelColor(x, y).alpha() > 0) {
                        drawn |= QRect(x, y, 1, 1);
                    }
                }
            }
            const QRectF ink = landTextInk(theme, line, text).translated(centre);
            constexpr double pixel = 1;
            EXPECT_TRUE(ink.adjusted(-pixel, -pixel, pixel, pixel).contains(drawn))
                << text.toStdString();
            constexpr double hardly = 3;
            EXPECT_TRUE(QRectF(drawn).adjusted(-hardly, -hardly, hardly, hardly).contains(ink))
                << text.toStdString();
        }
    }
}

}  // namespace gruk
