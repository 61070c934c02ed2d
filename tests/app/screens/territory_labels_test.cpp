#include "app/screens/territory_labels.h"

#include <algorithm>
#include <cmath>

#include <QRectF>
#include <gtest/gtest.h>

#include "app/screens/territory_map_painter.h"
#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

constexpr TerritoryLabelSize usual = {{64, 16}, {40, 13}};

RealmSummary realm(const std::string& name, Bytes bytes)
{
    RealmSummary summary;
    summary.path = "/realms/" + name;
    summary.displayName = name;
    summary.totalBytes = bytes;
    return summary;
}

QRectF around(const QPointF& centre, const QSizeF& size)
{
    return {centre - QPointF(size.width() / 2, size.height() / 2), size};
}

QRectF boxOf(const TerritoryLabelPlace& place, const TerritoryLabelSize& size)
{
    const QRectF name = around(place.name, size.name);
    return place.size ? name.united(around(*place.size, size.size)) : name;
}

}  // namespace

TEST(TerritoryLabels, standAboutTheAnchorWhereThereIsRoom)
{
    const TerritoryMap map = territoryMap({realm("Forest", 1'000)});
    const auto place = territoryLabelPlace(map, 0, usual, 480);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->name, QPointF(240, 234));
    EXPECT_EQ(place->size, QPointF(240, 247));
}

TEST(TerritoryLabels, neverLeaveTheirLandNorCollide)
{
    SeededGenerator draw(6);
    for (const int count : {2, 3, 5, 10, 20, 50}) {
        std::vector<RealmSummary> realms;
        for (int index = 0; index < count; ++index) {
            realms.push_back(realm("r" + std::to_string(draw.next()),
                                   static_cast<Bytes>(std::pow(10.0, draw.unit(3, 12)))));
        }
        const TerritoryMap map = territoryMap(realms);
        for (const double side : {240.0, 560.0, 900.0}) {
            std::vector<QRectF> boxes;
            for (std::size_t index = 0; index < map.territories.size(); ++index) {
                const auto place = territoryLabelPlace(map, index, usual, side);
                if (!place) {
                    continue;
                }
                const QRectF box = boxOf(*place, usual);
                EXPECT_TRUE(territoryPath(map.territories[index], side).contains(box))
                    << realms[map.territories[index].summary].path << " at " << side;
                for (const QRectF& other : boxes) {
                    EXPECT_FALSE(box.intersects(other));
                }
                boxes.push_back(box);
            }
            EXPECT_FALSE(boxes.empty());
        }
    }
}

TEST(TerritoryLabels, smallLandDropsItsSecondLineThenItsFirst)
{
    const TerritoryMap map = territoryMap({realm("Forest", 100'000'000), realm("Old disk", 0)});
    const auto disk = [&](double side) { return territoryLabelPlace(map, 1, usual, side); };
    // One cell, which is 480 and then smaller.
    ASSERT_EQ(map.territories[1].borders.size(), 1U);
    ASSERT_TRUE(disk(48.0 * 480));
    EXPECT_TRUE(disk(48.0 * 480)->size);
    bool wasAlone = false;
    bool wasGone = false;
    for (int length = 480; length > 0; --length) {
        const auto place = disk(48.0 * length);
        EXPECT_FALSE(wasGone && place) << length;
        EXPECT_FALSE(wasAlone && place && place->size) << length;
        wasAlone = wasAlone || (place && !place->size);
        wasGone = wasGone || !place;
    }
    EXPECT_TRUE(wasGone);
    // A short name in a land that is too low for both lines.
    const TerritoryLabelSize narrow = {{10, 16}, {10, 13}};
    const auto place = territoryLabelPlace(map, 1, narrow, 48.0 * 40);
    ASSERT_TRUE(place);
    EXPECT_FALSE(place->size);
    const GridPoint& anchor = map.territories[1].anchor;
    EXPECT_EQ(place->name, QPointF(anchor.x * 40, anchor.y * 40)) << "in the middle of its land";
    EXPECT_TRUE(territoryLabelPlace(map, 1, narrow, 48.0 * 60)->size);
    EXPECT_FALSE(territoryLabelPlace(map, 1, narrow, 48.0 * 30));
}

TEST(TerritoryLabels, leaveAnAnchorThatLiesInOtherLand)
{
    // The large realm's anchor is the middle of the map, which another one may hold.
    SeededGenerator draw(7);
    int moved = 0;
    for (int attempt = 0; attempt < 200; ++attempt) {
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
        const auto place = territoryLabelPlace(map, 0, usual, 560);
        ASSERT_TRUE(place && place->size);
        EXPECT_TRUE(territoryPath(map.territories[0], 560).contains(boxOf(*place, usual)));
    }
    EXPECT_GT(moved, 0);
}

TEST(TerritoryLabels, aNameThatIsTooLongIsShortenedInItsMiddle)
{
    const Theme theme;
    const std::string name(255, 'm');
    const std::vector<RealmSummary> realms = {realm(name, 5), realm("Letters", 5)};
    const TerritoryMap map = territoryMap(realms);
    const auto label = territoryLabel(map, 0, realms[0], 560, theme);
    ASSERT_TRUE(label);
    EXPECT_TRUE(label->place.size);
    EXPECT_TRUE(label->name.startsWith(QStringLiteral("mmm")));
    EXPECT_TRUE(label->name.contains(QChar(0x2026)));
    EXPECT_TRUE(label->name.endsWith(QStringLiteral("mmm")));
    EXPECT_FALSE(label->isWhole);
    EXPECT_TRUE(territoryLabel(map, 1, realms[1], 560, theme)->isWhole);
}

TEST(TerritoryLabels, namesEveryLandThatIsMoreThanADot)
{
    const Theme theme;
    SeededGenerator draw(9);
    for (const int count : {3, 8, 20, 50}) {
        std::vector<RealmSummary> realms;
        for (int index = 0; index < count; ++index) {
            realms.push_back(realm("Photographs " + std::to_string(draw.next() % 1'000),
                                   static_cast<Bytes>(std::pow(10.0, draw.unit(9, 12)))));
        }
        const TerritoryMap map = territoryMap(realms);
        for (const double side : {440.0, 560.0}) {
            for (std::size_t index = 0; index < map.territories.size(); ++index) {
                const auto cells = std::ranges::count(map.owners, index);
                const RealmSummary& summary = realms[map.territories[index].summary];
                const auto label = territoryLabel(map, index, summary, side, theme);
                EXPECT_EQ(label.has_value() || cells < 12, true) << cells << " cells at " << side;
                if (label) {
                    EXPECT_EQ(territoryAt(map, label->place.name, side), index)
                        << "it stands in the land that it names";
                }
            }
        }
    }
}

TEST(TerritoryLabels, useRoomThatLiesBetweenTheMiddlesOfTheCells)
{
    // Six cells by two, so that their middle is a corner of cells.
    TerritoryMap map;
    map.owners.assign(static_cast<std::size_t>(mapResolution * mapResolution), 1);
    for (int x = 10; x < 16; ++x) {
        for (int y = 10; y < 12; ++y) {
            map.owners[static_cast<std::size_t>(x * mapResolution + y)] = 0;
        }
    }
    Territory land;
    land.anchor = {11, 11};
    map.territories = {land, Territory{1, {}, {30, 30}}};
    const auto place = territoryLabelPlace(map, 0, {{54, 14}, {40, 13}}, 48.0 * 10);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->name, QPointF(130, 110));
}

TEST(TerritoryLabels, haveNoRoomOnAMapOfNoSize)
{
    const TerritoryMap map = territoryMap({realm("Forest", 1'000)});
    EXPECT_FALSE(territoryLabelPlace(map, 0, usual, 0));
    EXPECT_FALSE(territoryLabelPlace(map, 0, usual, -5));
}

}  // namespace gruk
