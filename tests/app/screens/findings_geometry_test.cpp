#include "app/screens/findings_geometry.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(FindingsGeometry, rowsOfOneHeightStandOneUnderTheOther)
{
    FindingsGeometry geometry(50);
    geometry.reset(100'000);
    EXPECT_EQ(geometry.totalHeight(), 5'000'000);
    EXPECT_EQ(geometry.top(99'999), 4'999'950);
    EXPECT_EQ(geometry.rowAt(0), 0U);
    EXPECT_EQ(geometry.rowAt(49), 0U);
    EXPECT_EQ(geometry.rowAt(50), 1U);
}

TEST(FindingsGeometry, whatIsOutsideBelongsToTheFirstAndTheLastRow)
{
    FindingsGeometry geometry(50);
    geometry.reset(10);
    EXPECT_EQ(geometry.rowAt(-500), 0U);
    EXPECT_EQ(geometry.rowAt(5'000), 9U);
}

TEST(FindingsGeometry, anOpenRowMovesThoseBelowIt)
{
    FindingsGeometry geometry(50);
    geometry.reset(10);
    geometry.setExtra(3, 120);
    EXPECT_EQ(geometry.top(3), 150);
    EXPECT_EQ(geometry.height(3), 170);
    EXPECT_EQ(geometry.top(4), 320);
    EXPECT_EQ(geometry.totalHeight(), 620);
    EXPECT_EQ(geometry.rowAt(319), 3U);
    EXPECT_EQ(geometry.rowAt(320), 4U);
    geometry.setExtra(3, 0);
    EXPECT_EQ(geometry.totalHeight(), 500);
}

TEST(FindingsGeometry, everyHeightBelongsToTheRowThatSpansIt)
{
    FindingsGeometry geometry(7);
    geometry.reset(40);
    geometry.setExtra(0, 3);
    geometry.setExtra(11, 30);
    geometry.setExtra(39, 5);
    for (int y = 0; y < geometry.totalHeight(); ++y) {
        const std::size_t row = geometry.rowAt(y);
        EXPECT_LE(geometry.top(row), y);
        EXPECT_GT(geometry.top(row) + geometry.height(row), y);
    }
}

TEST(FindingsGeometry, aNewListClosesEveryRow)
{
    FindingsGeometry geometry(50);
    geometry.reset(4);
    geometry.setExtra(1, 10);
    geometry.reset(4);
    EXPECT_EQ(geometry.totalHeight(), 200);
    geometry.reset(0);
    EXPECT_EQ(geometry.totalHeight(), 0);
}

}  // namespace gruk
