#include "app/theme/icons.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace gruk {

namespace {

QImage drawn(Icon icon, int scale)
{
    QImage image(24 * scale, 24 * scale, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawIcon(painter, {}, icon, Qt::red, 24);
    return image;
}

int pixelsOf(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

TEST(Icons, everyOneDrawsSomethingInTheColourAskedFor)
{
    for (int index = 0; index <= static_cast<int>(Icon::item); ++index) {
        const QImage image = drawn(static_cast<Icon>(index), 1);
        EXPECT_GT(pixelsOf(image), 30) << "icon " << index;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                EXPECT_EQ(qBlue(image.pixel(x, y)), 0) << "icon " << index;
            }
        }
    }
}

TEST(Icons, areDrawnAsSharpAsTheirPicture)
{
    const QImage sharp = drawn(Icon::folder, 2);
    const QImage blurred = drawn(Icon::folder, 1).scaled(48, 48);
    EXPECT_NE(sharp, blurred);
    EXPECT_GT(pixelsOf(sharp), 2 * pixelsOf(drawn(Icon::folder, 1)));
}

}  // namespace gruk
