#include "app/screens/territory_labels.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <gtest/gtest.h>

#include "app/screens/territory_map_painter.h"
#include "app/theme/land_text.h"
#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

/// A name of 64 by 12 pixels, and a size of 40 by 9.
constexpr TerritoryLabelInk usual = {{-32, -6, 64, 12}, {-20, -4, 40, 9}};
const QChar ellipsis(0x2026);

RealmSummary realm(const std::string& name, Bytes bytes)
{
    RealmSummary summary;
    summary.path = "/realms/" + name;
    summary.displayName = name;
    summary.totalBytes = bytes;
    return summary;
}

/// Names as users have them, and some that reach far out of a line.
std::vector<RealmSummary> someRealms(int count, double smallest, SeededGenerator& draw)
{
    const std::vector<std::string> names = {
        "Photographs",
        "Letters",
        "src",
        "Recordings from the Northern Islands, summer of 1998",
        "📷 Фото 🏔🏔🏔",
        "مستندات العائلة",
        "Z\xCC\x88\xCC\x81\xCC\x88\xCC\x81\xCC\x88\xCC\x81 a\xCC\xA3\xCC\xA4\xCC\xA3",
        "写真と手紙",
        "Qjgy_Åß",
        "x",
    };
    std::vector<RealmSummary> realms;
    for (int index = 0; index < count; ++index) {
        RealmSummary each = realm(std::to_string(draw.next()),
                                  static_cast<Bytes>(std::pow(10.0, draw.unit(smallest, 12))));
        each.displayName = names[draw.next() % names.size()];
        if (index >= static_cast<int>(names.size())) {
            each.displayName += " " + std::to_string(index);
        }
        realms.push_back(each);
    }
    return realms;
}

/// A map with its labels, on a side of that length.
struct Labelled {
    Labelled(std::vector<RealmSummary> summaries, double length)
        : realms(std::move(summaries)), side(length), map(territoryMap(realms)),
          labels(territoryLabels(map, realms, side, theme))
    {
        for (const Territory& territory : map.territories) {
            paths.push_back(territoryPath(territory, side));
        }
    }

    /// What is drawn of each line of a label.
    [[nodiscard]] std::vector<QRectF> ink(std::size_t index) const
    {
        const TerritoryLabel& label = *labels.at(index);
        std::vector<QRectF> lines = {
            landTextInk(theme, LandLine::name, label.name).translated(label.place.name)};
        if (label.place.size) {
            lines.push_back(
                landTextInk(theme, LandLine::size, label.size).translated(*label.place.size));
        }
        return lines;
    }
    [[nodiscard]] std::ptrdiff_t cells(std::size_t index) const
    {
        return std::ranges::count(map.owners, index);
    }

    Theme theme;
    std::vector<RealmSummary> realms;
    double side;
    TerritoryMap map;
    TerritoryLabels labels;
    std::vector<QPainterPath> paths;
};

/// How many pixels of a label are drawn inside its land and how many outside, at that pixel ratio.
std::pair<int, int> pixelsOf(const Labelled& map, std::size_t index, double ratio)
{
    QImage image((QSizeF(map.side, map.side) * ratio).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    TerritoryLabels only(map.labels.size());
    only[index] = map.labels[index];
    paintTerritories(painter, {}, {}, only, map.side, map.theme);
    painter.end();
    std::pair<int, int> pixels;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const QPointF middle((x + 0.5) / ratio, (y + 0.5) / ratio);
            if (qAlpha(row[x]) > 0) {
                ++(map.paths[index].contains(middle) ? pixels.first : pixels.second);
            }
        }
    }
    return pixels;
}

/// Calls `check` for maps of few and many realms, of much the same size and of very different ones.
template <typename Check>
void forManyMaps(const std::vector<double>& sides, const Check& check)
{
    SeededGenerator draw(6);
    for (const int count : {1, 2, 5, 12, 20, 35, 50}) {
        for (const double smallest : {3.0, 9.0, 11.0}) {
            for (const double side : sides) {
                check(Labelled(someRealms(count, smallest, draw), side));
            }
        }
    }
}

TerritoryLabel labelOf(const std::string& name, double length)
{
    const Labelled one({realm(name, 5)}, length);
    return one.labels.at(0).value_or(TerritoryLabel());
}

}  // namespace

TEST(TerritoryLabels, standAboutTheAnchorWhereThereIsRoom)
{
    const TerritoryMap map = territoryMap({realm("Forest", 1'000)});
    const auto place = territoryLabelPlace(TerritoryRoom(map, 480), 0, usual);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->name, QPointF(240, 234));
    EXPECT_EQ(place->size, QPointF(240, 247));
}

TEST(TerritoryLabels, neverLeaveTheirLandNorCollide)
{
    forManyMaps({240, 380, 476, 560}, [](const Labelled& map) {
        std::vector<QRectF> drawn;
        for (std::size_t index = 0; index < map.labels.size(); ++index) {
            if (!map.labels[index]) {
                continue;
            }
            for (const QRectF& line : map.ink(index)) {
                EXPECT_TRUE(map.paths[index].contains(line)) << index << " at " << map.side;
                for (std::size_t other = 0; other < map.paths.size(); ++other) {
                    EXPECT_FALSE(other != index && map.paths[other].intersects(line));
                }
                for (const QRectF& former : drawn) {
                    EXPECT_FALSE(line.intersects(former));
                }
                drawn.push_back(line);
            }
        }
    });
}

TEST(TerritoryLabels, noPixelOfOneIsDrawnOutsideItsLand)
{
    int labels = 0;
    for (const auto& [side, ratio] :
         {std::pair(380, 1.0), std::pair(476, 1.5), std::pair(560, 2.0)}) {
        forManyMaps({static_cast<double>(side)}, [&, scale = ratio](const Labelled& map) {
            for (std::size_t index = 0; index < map.labels.size(); ++index) {
                if (map.labels[index]) {
                    ++labels;
                    const auto [inside, outside] = pixelsOf(map, index, scale);
                    EXPECT_GT(inside, 0);
                    EXPECT_EQ(outside, 0) << map.labels[index]->name.toStdString() << " at "
                                          << map.side << " x " << scale;
                }
            }
        });
    }
    EXPECT_GT(labels, 300);
}

TEST(TerritoryLabels, smallLandDropsItsSecondLineThenItsFirst)
{
    // Five cells wide and as high, ever smaller.
    TerritoryMap map;
    map.territories = {{0, {{{10, 10}, {15, 10}, {15, 15}, {10, 15}}}, {12.5, 12.5}}};
    bool wasAlone = false;
    bool wasGone = false;
    for (int side = 800; side > 0; side -= 4) {
        const auto place = territoryLabelPlace(TerritoryRoom(map, side), 0, usual);
        EXPECT_FALSE(wasGone && place) << side;
        EXPECT_FALSE(wasAlone && place && place->size) << side;
        wasAlone = wasAlone || (place && !place->size);
        wasGone = wasGone || !place;
    }
    EXPECT_TRUE(wasGone);
    // A short name in a land that is too low for both lines.
    const TerritoryLabelInk narrow = {{-5, -6, 10, 12}, {-5, -4, 10, 9}};
    EXPECT_TRUE(territoryLabelPlace(TerritoryRoom(map, 300), 0, narrow)->size);
    const auto place = territoryLabelPlace(TerritoryRoom(map, 192), 0, narrow);
    ASSERT_TRUE(place);
    EXPECT_FALSE(place->size);
    EXPECT_EQ(place->name, QPointF(50, 50)) << "in the middle of its land";
    EXPECT_FALSE(territoryLabelPlace(TerritoryRoom(map, 96), 0, narrow));
}

TEST(TerritoryLabels, leaveAnAnchorThatLiesInOtherLand)
{
    // The large realm's anchor is the middle of the map, which another one may hold.
    SeededGenerator draw(7);
    int moved = 0;
    for (int attempt = 0; attempt < 50; ++attempt) {
        std::vector<RealmSummary> realms = {realm("Forest", 900'000'000'000)};
        for (int index = 0; index < 8; ++index) {
            realms.push_back(realm(std::to_string(draw.next()), 4'000'000'000));
        }
        const TerritoryMap map = territoryMap(realms);
        const GridPoint& anchor = map.territories[0].anchor;
        if (territoryAt(map, {anchor.x, anchor.y}, 48) == 0U) {
            continue;
        }
        ++moved;
        const auto place = territoryLabelPlace(TerritoryRoom(map, 560), 0, usual);
        ASSERT_TRUE(place && place->size);
        const QPainterPath path = territoryPath(map.territories[0], 560);
        EXPECT_TRUE(path.contains(usual.name.translated(place->name)));
        EXPECT_TRUE(path.contains(usual.size.translated(*place->size)));
    }
    EXPECT_GT(moved, 0);
}

TEST(TerritoryLabels, haveSomeLandAroundThemWhereThereIsThatMuch)
{
    // The anchor, the middle of the corners, lies at the left of what is a wedge.
    TerritoryMap map;
    map.territories = {{0, {{{10, 10}, {40, 10}, {40, 30}, {10, 30}}}, {10, 20}}};
    const auto place = territoryLabelPlace(TerritoryRoom(map, 480), 0, usual);
    ASSERT_TRUE(place && place->size);
    const double left = place->name.x() + usual.name.left();
    EXPECT_GE(left, 100 + 3);
    EXPECT_LE(left, 100 + 5) << "no farther from the anchor than that";
    EXPECT_EQ(place->size->y(), 207);
}

TEST(TerritoryLabels, noBorderRunsThroughBetweenTheLines)
{
    // An inlet of other land comes in from the right, as high as the gap between the lines.
    TerritoryMap map;
    const GridLoop around = {{10, 10},    {30, 10},    {30, 20.1}, {11, 20.1},
                             {11, 20.15}, {30, 20.15}, {30, 30},   {10, 30}};
    map.territories = {{0, {around}, {20, 20}}};
    const TerritoryRoom room(map, 480);
    const auto place = territoryLabelPlace(room, 0, usual);
    ASSERT_TRUE(place && place->size);
    EXPECT_NE(place->size->y(), 207);
    const bool isAbove = place->size->y() + usual.size.bottom() < 201;
    const bool isBelow = place->name.y() + usual.name.top() > 201;
    EXPECT_TRUE(isAbove || isBelow);
}

TEST(TerritoryLabels, aNameThatIsTooLongIsShortenedInItsMiddle)
{
    const std::string name(255, 'm');
    const Labelled map({realm(name, 5), realm("Letters", 5)}, 560);
    const auto& label = map.labels.at(0);
    ASSERT_TRUE(label);
    EXPECT_TRUE(label->place.size);
    EXPECT_TRUE(label->name.startsWith(QStringLiteral("mmm")));
    EXPECT_TRUE(label->name.contains(ellipsis));
    EXPECT_TRUE(label->name.endsWith(QStringLiteral("mmm")));
    EXPECT_FALSE(label->isWhole);
    EXPECT_TRUE(map.labels.at(1)->isWhole);
}

TEST(TerritoryLabels, theShortestFormOfANameIsItsFirstTwoLetters)
{
    const QString shortest = QStringLiteral("Ph") + ellipsis;
    QStringList forms;
    for (double side = 200; side > 0; --side) {
        const QString form = labelOf("Photographs", side).name;
        if (!form.isEmpty() && !forms.contains(form)) {
            forms.append(form);
        }
        EXPECT_TRUE(form.isEmpty() || form == forms.last()) << "it only ever becomes shorter";
    }
    EXPECT_EQ(forms.first(), QStringLiteral("Photographs"));
    EXPECT_EQ(forms.mid(forms.size() - 2),
              (QStringList{QStringLiteral("Pho") + ellipsis, shortest}));
    // A letter is what a reader takes for one, and three are no longer than two with the mark.
    QStringList ends;
    for (const char* name : {"src", "a\xCC\x88o\xCC\x88u\xCC\x88stria"}) {
        QString end;
        for (double side = 200; side > 0; --side) {
            const QString form = labelOf(name, side).name;
            end = form.isEmpty() ? end : form;
        }
        ends.append(end);
    }
    EXPECT_EQ(ends,
              (QStringList{QStringLiteral("src"), QStringLiteral("a\u0308o\u0308") + ellipsis}));
}

TEST(TerritoryLabels, hardlyALandThatIsMoreThanADotStaysWithoutOne)
{
    // By the length of the map, for land of twelve cells and more: what was found, less a little
    // for another font. 476 is what the smallest window has.
    struct Bound {
        double side;
        double share;
        int always;
    };
    for (const auto& [side, share, always] :
         {Bound{380, 0.95, 32}, Bound{476, 0.99, 16}, Bound{560, 0.99, 16}}) {
        int lands = 0;
        int named = 0;
        forManyMaps({side}, [&](const Labelled& map) {
            for (std::size_t index = 0; index < map.labels.size(); ++index) {
                const bool isNamed = map.labels[index].has_value();
                lands += map.cells(index) >= 12 ? 1 : 0;
                named += map.cells(index) >= 12 && isNamed ? 1 : 0;
                EXPECT_TRUE(isNamed || map.cells(index) < always)
                    << map.cells(index) << " cells at " << side;
            }
        });
        EXPECT_GE(named, share * lands) << "of " << lands << " at " << side;
        EXPECT_GT(lands, 100);
    }
}

TEST(TerritoryLabels, haveNoRoomOnAMapOfNoSize)
{
    const TerritoryMap map = territoryMap({realm("Forest", 1'000)});
    EXPECT_FALSE(territoryLabelPlace(TerritoryRoom(map, 0), 0, usual));
    EXPECT_FALSE(territoryLabelPlace(TerritoryRoom(map, -5), 0, usual));
}

}  // namespace gruk
