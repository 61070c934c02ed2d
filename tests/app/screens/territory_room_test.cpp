#include "app/screens/territory_room.h"

#include <cmath>

#include <QPainterPath>
#include <QRectF>
#include <gtest/gtest.h>

#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

constexpr double cell = 10;
constexpr double side = mapResolution * cell;

GridLoop box(double left, double top, double right, double bottom)
{
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

/// A map of lands with these borders.
TerritoryMap mapOf(const std::vector<std::vector<GridLoop>>& lands)
{
    TerritoryMap map;
    for (const std::vector<GridLoop>& borders : lands) {
        map.territories.push_back({map.territories.size(), borders, anchorOf(borders)});
    }
    return map;
}

TerritoryMap randomMap(int count, SeededGenerator& draw)
{
    std::vector<RealmSummary> realms;
    for (int index = 0; index < count; ++index) {
        RealmSummary realm;
        realm.path = "/realms/" + std::to_string(draw.next());
        realm.totalBytes = static_cast<Bytes>(std::pow(10.0, draw.unit(6, 12)));
        realms.push_back(realm);
    }
    return territoryMap(realms);
}

}  // namespace

TEST(TerritoryRoom, isAllThatItsBordersLeaveFree)
{
    const TerritoryRoom room(mapOf({{box(10, 10, 20, 20)}}), side);
    EXPECT_EQ(room.anchor(0), QPointF(150, 150));
    EXPECT_EQ(room.bounds(0), QRect(100, 100, 100, 100));
    // The pixel that a border runs through, or along, is not free.
    EXPECT_EQ(room.free(0, 101, 199), (std::vector<FreeStretch>{{101, 200}}));
    EXPECT_EQ(room.free(0, 101.2, 110.7), (std::vector<FreeStretch>{{101, 200}}));
    EXPECT_TRUE(room.free(0, 99, 150).empty());
    EXPECT_TRUE(room.free(0, 100.5, 150).empty());
    EXPECT_TRUE(room.free(0, 150, 202).empty());
}

TEST(TerritoryRoom, goesAroundWhatLiesInALand)
{
    const TerritoryRoom room(
        mapOf({{box(10, 10, 30, 20), box(18, 12, 20, 14)}, {box(18, 12, 20, 14)}}), side);
    EXPECT_EQ(room.free(0, 125, 130), (std::vector<FreeStretch>{{101, 180}, {201, 300}}));
    EXPECT_EQ(room.free(1, 125, 130), (std::vector<FreeStretch>{{181, 200}}));
    EXPECT_EQ(room.free(0, 145, 150), (std::vector<FreeStretch>{{101, 300}}));
    EXPECT_EQ(room.free(0, 115, 145), (std::vector<FreeStretch>{{101, 180}, {201, 300}}));
}

TEST(TerritoryRoom, whatTwoLandsWouldTakeIsFreeInNeither)
{
    const TerritoryRoom room(mapOf({{box(10, 10, 30, 20)}, {box(25, 10, 40, 20)}}), side);
    EXPECT_EQ(room.free(0, 150, 160), (std::vector<FreeStretch>{{101, 250}}));
    EXPECT_EQ(room.free(1, 150, 160), (std::vector<FreeStretch>{{301, 400}}));
}

TEST(TerritoryRoom, isWhollyInTheLandThatIsPainted)
{
    SeededGenerator draw(21);
    int stretches = 0;
    for (const int count : {1, 3, 12, 50}) {
        const TerritoryMap map = randomMap(count, draw);
        const TerritoryRoom room(map, side);
        std::vector<QPainterPath> paths;
        for (const Territory& territory : map.territories) {
            paths.push_back(territoryPath(territory, side));
        }
        for (int attempt = 0; attempt < 200; ++attempt) {
            const std::size_t index = draw.next() % paths.size();
            const double top = draw.unit(0, side);
            const double bottom = top + draw.unit(1, 20);
            for (const FreeStretch& free : room.free(index, top, bottom)) {
                ++stretches;
                const QRectF rect(QPointF(free.left, top), QPointF(free.right, bottom));
                EXPECT_TRUE(paths[index].contains(rect));
                for (std::size_t other = 0; other < paths.size(); ++other) {
                    EXPECT_FALSE(other != index && paths[other].intersects(rect));
                }
            }
        }
    }
    EXPECT_GT(stretches, 100);
}

TEST(TerritoryRoom, leavesOutHardlyMoreThanThePixelsOfTheBorders)
{
    SeededGenerator draw(22);
    const TerritoryMap map = randomMap(12, draw);
    const TerritoryRoom room(map, side);
    for (std::size_t index = 0; index < map.territories.size(); ++index) {
        const QPainterPath path = territoryPath(map.territories[index], side);
        for (int y = 0; y < side; y += 7) {
            const std::vector<FreeStretch> stretches = room.free(index, y, y + 1);
            for (int x = 0; x < side; x += 7) {
                constexpr double near = 3;
                const bool isFree = std::ranges::any_of(stretches, [&](const FreeStretch& free) {
                    return free.left <= x && x + 1 <= free.right;
                });
                EXPECT_TRUE(isFree
                            || !path.contains(QRectF(x - near, y - near, 2 * near, 2 * near)));
            }
        }
    }
}

TEST(TerritoryRoom, thereIsNoneOnAMapOfNoSize)
{
    SeededGenerator draw(23);
    const TerritoryMap map = randomMap(3, draw);
    for (const double none : {0.0, -5.0}) {
        const TerritoryRoom room(map, none);
        EXPECT_TRUE(room.free(0, 0, 1).empty());
        EXPECT_TRUE(room.free(2, -1, 1).empty());
    }
}

}  // namespace gruk
