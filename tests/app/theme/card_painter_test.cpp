#include "app/theme/card_painter.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

#include "app/theme/card.h"
#include "tests/support/paint_recorder.h"

namespace gruk {

TEST(CutPath, fillsItsBoundsAndCutsEachCornerByItsOwnRadius)
{
    const QPainterPath path = cutPath(QRectF(0, 0, 200, 100), cardCorners);
    EXPECT_EQ(path.boundingRect(), QRectF(0, 0, 200, 100));
    EXPECT_TRUE(path.contains(QPointF(100, 50)));
    EXPECT_TRUE(path.contains(QPointF(100, 0.5)));
    EXPECT_FALSE(path.contains(QPointF(2, 2)));
    EXPECT_FALSE(path.contains(QPointF(198, 98)));
    // The corner at the bottom left is the smallest, the one at the bottom right the largest.
    EXPECT_TRUE(path.contains(QPointF(5, 95)));
    EXPECT_FALSE(path.contains(QPointF(195, 95)));
}

TEST(CutPath, shrinksRadiiThatDoNotFit)
{
    const QRectF tiny(10, 10, 8, 4);
    EXPECT_EQ(cutPath(tiny, cardCorners).boundingRect(), tiny);
    EXPECT_TRUE(cutPath(tiny, cardCorners).contains(tiny.center()));
}

TEST(Card, castsAHardShadowToTheRightAndDown)
{
    const Theme theme;
    QImage image(100, 80, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintCard(painter, QRectF(0, 0, 100, 80), theme);
    painter.end();
    EXPECT_EQ(qAlpha(image.pixel(50, 40)), 224);  // The card at 0.88.
    EXPECT_EQ(qAlpha(image.pixel(98, 40)), 18);   // Its shadow at 0.07.
    EXPECT_EQ(qAlpha(image.pixel(50, 78)), 18);
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
    EXPECT_EQ(qAlpha(image.pixel(99, 0)), 0);
}

TEST(Card, hasTheRadiiOfTheHouseEachAnother)
{
    EXPECT_EQ(cardCorners.topLeft, 20);
    EXPECT_EQ(cardCorners.topRight, 15);
    EXPECT_EQ(cardCorners.bottomRight, 22);
    EXPECT_EQ(cardCorners.bottomLeft, 13);
    // Each side runs straight from where one corner ends to where the next begins.
    const QPainterPath path = cutPath(QRectF(0, 0, 200, 100), cardCorners);
    const auto at = [&path](int index) {
        return QPointF(path.elementAt(index).x, path.elementAt(index).y);
    };
    EXPECT_EQ(at(0), QPointF(20, 0));
    EXPECT_EQ(at(1), QPointF(185, 0));
    EXPECT_EQ(at(4), QPointF(200, 15));
    EXPECT_EQ(at(5), QPointF(200, 78));
    EXPECT_EQ(at(8), QPointF(178, 100));
    EXPECT_EQ(at(9), QPointF(13, 100));
    EXPECT_EQ(at(12), QPointF(0, 87));
    EXPECT_EQ(at(13), QPointF(0, 20));
}

TEST(Card, itsOutlineIsMiteredUpTo10)
{
    const Theme theme;
    test::PaintRecorder recorder;
    QPainter painter(&recorder);
    paintCard(painter, QRectF(0, 0, 100, 80), theme);
    painter.end();
    ASSERT_FALSE(recorder.paths().empty());
    const QPen& outline = recorder.paths().back().pen;
    EXPECT_EQ(outline.joinStyle(), Qt::MiterJoin);
    EXPECT_EQ(outline.miterLimit(), 10);
    EXPECT_EQ(outline.widthF(), 1.2);
    EXPECT_EQ(outline.color(), theme.colour(Role::ink, 0.16));
}

TEST(Card, itsContentIsPaddedOnAllEdges)
{
    Theme theme;
    Card card(theme, 17);
    card.resize(200, 100);
    // Right and below, the shadow takes three more.
    EXPECT_EQ(card.contentsRect(), QRect(17, 17, 200 - 2 * 17 - 3, 100 - 2 * 17 - 3));
}

TEST(Card, isOutlinedInInkAt016By12)
{
    const Theme theme;
    QImage image(100, 80, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintCard(painter, QRectF(0, 0, 100, 80), theme);
    painter.end();
    // Half of the line, 0.6, lies on each side of the edge at x = 1: all of it in two columns.
    const auto darkening = [&](int x) {
        return image.pixelColor(50, 40).red() - image.pixelColor(x, 40).red();
    };
    const double ink = image.pixelColor(50, 40).red() - theme.colour(Role::ink).red();
    EXPECT_NEAR(darkening(1) / ink, 0.6 * 0.16, 0.015);
    const double outside = 255 - image.pixelColor(0, 40).red();
    EXPECT_NEAR(outside / (255 - theme.colour(Role::ink).red()), 0.6 * 0.16, 0.015);
    EXPECT_EQ(darkening(3), 0);
}

}  // namespace gruk
