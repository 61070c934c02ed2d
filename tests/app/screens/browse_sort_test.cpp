#include "app/screens/browse_sort.h"

#include <vector>

#include <gtest/gtest.h>

namespace gruk {

namespace {

using Sorts = std::vector<TableSort>;

constexpr auto name = ScanNodeModel::nameColumn;
constexpr auto size = ScanNodeModel::sizeColumn;
constexpr auto kind = ScanNodeModel::kindColumn;
constexpr auto forward = Qt::AscendingOrder;
constexpr auto reverse = Qt::DescendingOrder;

}  // namespace

TEST(BrowseSort, namesHaveOneOrderWhicheverDirectionTheHeaderShows)
{
    EXPECT_EQ(sessionOrder(Sorts{{name, forward}}), SortOrder::name);
    EXPECT_EQ(sessionOrder(Sorts{{name, reverse}}), SortOrder::name);
}

TEST(BrowseSort, sizesFollowTheDirection)
{
    EXPECT_EQ(sessionOrder(Sorts{{size, forward}}), SortOrder::sizeAscending);
    EXPECT_EQ(sessionOrder(Sorts{{size, reverse}}), SortOrder::sizeDescending);
}

TEST(BrowseSort, onlyTheFirstCounts)
{
    EXPECT_EQ(sessionOrder(Sorts{{size, forward}, {name, forward}}), SortOrder::sizeAscending);
    EXPECT_EQ(sessionOrder(Sorts{{name, forward}, {size, reverse}}), SortOrder::name);
}

TEST(BrowseSort, noOrAnotherColumnLeavesTheOrderAlone)
{
    EXPECT_EQ(sessionOrder(Sorts{}), std::nullopt);
    EXPECT_EQ(sessionOrder(Sorts{{kind, forward}, {name, forward}}), std::nullopt);
    EXPECT_EQ(sessionOrder(Sorts{{ScanNodeModel::lastOpenedColumn, reverse}}), std::nullopt);
}

TEST(BrowseSort, onlyNameAndSizeAreSortable)
{
    EXPECT_TRUE(isSortable(name));
    EXPECT_TRUE(isSortable(size));
    EXPECT_FALSE(isSortable(kind));
    EXPECT_FALSE(isSortable(ScanNodeModel::lastOpenedColumn));
}

TEST(BrowseSort, theHeaderShowsTheOrderThatTheSessionHas)
{
    for (const SortOrder order :
         {SortOrder::name, SortOrder::sizeAscending, SortOrder::sizeDescending}) {
        EXPECT_EQ(sessionOrder(Sorts{tableSort(order).value()}), order);
    }
    EXPECT_EQ(tableSort(SortOrder::oldForgotten), std::nullopt);
}

TEST(BrowseSort, sizesBeginWithTheLargestAndTurnRoundAtEachFurtherPress)
{
    const TableSort largest{size, reverse};
    const TableSort smallest{size, forward};
    EXPECT_EQ(sortAfterPress(size, std::nullopt), largest);
    EXPECT_EQ(sortAfterPress(size, TableSort{name, forward}), largest);
    EXPECT_EQ(sortAfterPress(size, largest), smallest);
    EXPECT_EQ(sortAfterPress(size, smallest), largest);
    EXPECT_EQ(sortAfterPress(name, largest), (TableSort{name, forward}));
    EXPECT_EQ(sortAfterPress(name, TableSort{name, forward}), (TableSort{name, forward}));
}

}  // namespace gruk
