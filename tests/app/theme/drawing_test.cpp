#include "app/theme/drawing.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace gruk {

namespace {

QImage paint(const Drawing& drawing, const Theme& theme)
{
    QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintDrawing(painter, drawing, theme);
    return image;
}

QPainterPath rectangle(double x, double y, double w, double h)
{
    QPainterPath path;
    path.addRect(x, y, w, h);
    return path;
}

}  // namespace

TEST(PaintDrawing, laysEachStepOverTheOnesBeforeAndCutsItAtItsClip)
{
    const Theme theme;
    const QImage image = paint(
        {{.path = rectangle(0, 0, 30, 20), .role = Role::fern},
         {.path = rectangle(10, 0, 30, 20), .role = Role::red, .clip = rectangle(0, 0, 20, 20)}},
        theme);
    EXPECT_EQ(image.pixelColor(5, 10), theme.colour(Role::fern));
    EXPECT_EQ(image.pixelColor(15, 10), theme.colour(Role::red));
    EXPECT_EQ(image.pixelColor(25, 10), theme.colour(Role::fern));
    EXPECT_EQ(image.pixelColor(35, 10).alpha(), 0);
}

TEST(PaintDrawing, dashesAreAsLongAsTheyAreSaidToBeWhateverTheWidthOfTheLine)
{
    const Theme theme;
    QPainterPath line(QPointF(0, 10));
    line.lineTo(40, 10);
    const QImage image = paint(
        {{.path = line, .role = Role::ink, .stroke = DrawingStroke{.width = 4, .dashes = {8, 6}}}},
        theme);
    for (int x = 0; x < 40; ++x) {
        EXPECT_EQ(image.pixelColor(x, 10).alpha(), x % 14 < 8 ? 255 : 0) << x;
    }
    EXPECT_EQ(image.pixelColor(4, 13).alpha(), 0);
}

}  // namespace gruk
