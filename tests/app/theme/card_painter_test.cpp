#include "app/theme/card_painter.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

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

}  // namespace gruk
