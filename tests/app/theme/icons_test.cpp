#include "app/theme/icons.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <gtest/gtest.h>

namespace gruk {

namespace {

struct Look {
    int size;
    int scale;
};

constexpr std::array looks = {Look{16, 1}, Look{22, 1}, Look{24, 1},
                              Look{16, 2}, Look{22, 2}, Look{24, 2}};

QImage drawn(Icon icon, Look look, const QColor& colour = Qt::red)
{
    QImage image(look.size * look.scale, look.size * look.scale,
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(look.scale);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawIcon(painter, {}, icon, colour, look.size);
    return image;
}

/// Visits the premultiplied pixels.
template <typename Visit>
void forEachPixel(const QImage& image, Visit visit)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            visit(x, y, line[x]);
        }
    }
}

int pixelsOf(const QImage& image)
{
    int count = 0;
    forEachPixel(image, [&](int, int, QRgb pixel) { count += qAlpha(pixel) > 0 ? 1 : 0; });
    return count;
}

std::string describe(int index, Look look)
{
    return "icon " + std::to_string(index) + " at " + std::to_string(look.size) + " times "
           + std::to_string(look.scale);
}

}  // namespace

TEST(Icons, everyOneDrawsSomethingInEverySize)
{
    for (const Look look : looks) {
        for (int index = 0; index < iconCount; ++index) {
            int strong = 0;
            forEachPixel(drawn(static_cast<Icon>(index), look),
                         [&](int, int, QRgb pixel) { strong += qAlpha(pixel) > 127 ? 1 : 0; });
            const int side = look.size * look.scale;
            EXPECT_GT(strong, side * side / 40) << describe(index, look);
            EXPECT_LT(strong, side * side * 3 / 4) << describe(index, look);
        }
    }
}

TEST(Icons, everyOneStaysInsideTheGridWithAMarginAround)
{
    for (const Look look : looks) {
        for (int index = 0; index < iconCount; ++index) {
            const int last = look.size * look.scale - 1;
            int outside = 0;
            forEachPixel(drawn(static_cast<Icon>(index), look), [&](int x, int y, QRgb pixel) {
                const bool isMargin = x == 0 || y == 0 || x == last || y == last;
                outside += isMargin && qAlpha(pixel) > 0 ? 1 : 0;
            });
            EXPECT_EQ(outside, 0) << describe(index, look);
        }
    }
}

TEST(Icons, noneHasAColourButTheOneAskedFor)
{
    const QColor colour(0, 255, 0);
    for (const Look look : looks) {
        for (int index = 0; index < iconCount; ++index) {
            int others = 0;
            forEachPixel(drawn(static_cast<Icon>(index), look, colour), [&](int, int, QRgb pixel) {
                const bool isAsked =
                    qRed(pixel) == 0 && qBlue(pixel) == 0 && qGreen(pixel) == qAlpha(pixel);
                others += isAsked ? 0 : 1;
            });
            EXPECT_EQ(others, 0) << describe(index, look);
        }
    }
}

TEST(Icons, whatIsLeftOutOfASolidOneShowsTheGround)
{
    QImage image(24, 24, QImage::Format_RGB32);
    image.fill(Qt::yellow);
    QPainter painter(&image);
    drawIcon(painter, {}, Icon::removed, Qt::blue, 24);
    painter.end();
    EXPECT_EQ(image.pixelColor(12, 7), QColor(Qt::blue));
    // The stroke of the minus is narrower than two pixels, so that one of its rows is pure.
    const QColor minus = image.pixelColor(12, 12);
    EXPECT_GT(minus.red(), 200);
    EXPECT_LT(minus.blue(), 55);
}

TEST(Icons, areAsStrongAsTheirColour)
{
    QColor half(Qt::red);
    half.setAlpha(128);
    const QImage image = drawn(Icon::check, {24, 1}, half);
    int strongest = 0;
    forEachPixel(image,
                 [&](int, int, QRgb pixel) { strongest = std::max(strongest, qAlpha(pixel)); });
    EXPECT_EQ(strongest, 128);
}

TEST(Icons, areDrawnAsSharpAsTheirPicture)
{
    const QImage sharp = drawn(Icon::folder, {24, 2});
    const QImage blurred = drawn(Icon::folder, {24, 1}).scaled(48, 48);
    EXPECT_NE(sharp, blurred);
    EXPECT_GT(pixelsOf(sharp), 2 * pixelsOf(drawn(Icon::folder, {24, 1})));
}

TEST(Icons, noTwoLookTheSame)
{
    std::set<std::string> pictures;
    for (int index = 0; index < iconCount; ++index) {
        const QImage image = drawn(static_cast<Icon>(index), {24, 1});
        pictures.emplace(reinterpret_cast<const char*>(image.constBits()),
                         static_cast<std::size_t>(image.sizeInBytes()));
    }
    EXPECT_EQ(pictures.size(), static_cast<std::size_t>(iconCount));
}

TEST(Icons, everyKindOfItemHasOneOfItsOwn)
{
    std::set<Icon> icons;
    for (const FileKind kind : allFileKinds) {
        icons.insert(iconFor(kind));
    }
    EXPECT_EQ(icons.size(), allFileKinds.size());
}

TEST(Icons, staySharpAndRightWhenTheCacheIsEmpty)
{
    const QImage before = drawn(Icon::lockShield, {22, 1});
    QPixmapCache::clear();
    EXPECT_EQ(drawn(Icon::lockShield, {22, 1}), before);
}

}  // namespace gruk
