#include "core/browse/sort_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

namespace gruk {

namespace {

using Positions = std::vector<std::uint32_t>;
constexpr Bytes gigabyte = 1'000'000'000;

/// The two groups as the words say it, by a plain stable sort.
Positions plainOldForgotten(const std::vector<SortKey>& rows)
{
    Positions order(rows.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        const bool largeA = rows[a].size.value_or(0) >= 104'857'600;
        const bool largeB = rows[b].size.value_or(0) >= 104'857'600;
        if (largeA != largeB) {
            return largeA;
        }
        if (rows[a].lastOpened && rows[b].lastOpened) {
            return *rows[a].lastOpened < *rows[b].lastOpened;
        }
        return rows[a].lastOpened.has_value() && !rows[b].lastOpened.has_value();
    });
    return order;
}

}  // namespace

TEST(SortOrder, theOrdersStandInTheirOrderWithTheirTexts)
{
    std::vector<std::string_view> texts;
    for (const SortOrder order : allSortOrders) {
        texts.push_back(rawString(order));
        EXPECT_EQ(sortOrder(rawString(order)), order);
    }
    EXPECT_EQ(texts, (std::vector<std::string_view>{"sizeDescending", "sizeAscending",
                                                    "oldForgotten", "name"}));
    EXPECT_EQ(sortOrder("Name"), std::nullopt);
    EXPECT_EQ(sortOrder(""), std::nullopt);
}

TEST(SortOrder, sizesGoFromLargeToSmallOrSmallToLargeAndUnknownCountsAsZero)
{
    const std::vector<SortKey> rows = {{5, {}, 0}, {std::nullopt, {}, 0}, {7, {}, 0}, {1, {}, 0}};
    EXPECT_EQ(arranged(rows, SortOrder::sizeDescending), (Positions{2, 0, 3, 1}));
    EXPECT_EQ(arranged(rows, SortOrder::sizeAscending), (Positions{1, 3, 0, 2}));
}

TEST(SortOrder, rowsOfEqualSizeKeepTheirOrderEitherWay)
{
    const std::vector<SortKey> rows = {
        {5, {}, 0}, {0, {}, 0}, {5, {}, 0}, {std::nullopt, {}, 0}, {5, {}, 0}};
    EXPECT_EQ(arranged(rows, SortOrder::sizeDescending), (Positions{0, 2, 4, 1, 3}));
    EXPECT_EQ(arranged(rows, SortOrder::sizeAscending), (Positions{1, 3, 0, 2, 4}));
}

TEST(SortOrder, namesGoByTheirRanks)
{
    const std::vector<SortKey> rows = {{1, {}, 2}, {2, {}, 0}, {3, {}, 1}};
    EXPECT_EQ(arranged(rows, SortOrder::name), (Positions{1, 2, 0}));
}

TEST(SortOrder, aFileOfExactlyAHundredMebibytesBelongsToTheFirstGroup)
{
    const std::vector<SortKey> rows = {{104'857'599, Date{1}, 0}, {104'857'600, Date{2}, 0}};
    EXPECT_EQ(arranged(rows, SortOrder::oldForgotten), (Positions{1, 0}));
}

TEST(SortOrder, anUndatedGigabyteComesAfterADatedFileOf200Megabytes)
{
    const std::vector<SortKey> rows = {{gigabyte, std::nullopt, 0}, {gigabyte / 5, Date{5}, 0}};
    EXPECT_EQ(arranged(rows, SortOrder::oldForgotten), (Positions{1, 0}));
}

TEST(SortOrder, anUnknownSizeIsInTheSecondGroup)
{
    const std::vector<SortKey> rows = {{std::nullopt, Date{1}, 0}, {gigabyte, Date{2}, 0}};
    EXPECT_EQ(arranged(rows, SortOrder::oldForgotten), (Positions{1, 0}));
}

TEST(SortOrder, inEachGroupTheOldestStandFirstAndTheNeverOpenedCloseItInTheirOrder)
{
    const std::vector<SortKey> rows = {{1, std::nullopt, 0},
                                       {gigabyte, std::nullopt, 0},
                                       {1, Date{-9}, 0},
                                       {gigabyte, Date{8}, 0},
                                       {gigabyte, Date{7}, 0},
                                       {2, std::nullopt, 0},
                                       {gigabyte, std::nullopt, 0},
                                       {1, Date{-10}, 0}};
    EXPECT_EQ(arranged(rows, SortOrder::oldForgotten), (Positions{4, 3, 1, 6, 7, 2, 0, 5}));
}

TEST(SortOrder, oldForgottenIsWhatAPlainStableSortMakes)
{
    std::mt19937 random(20261121);
    for (int round = 0; round < 200; ++round) {
        std::vector<SortKey> rows(random() % 60);
        for (SortKey& row : rows) {
            if (random() % 4 != 0) {
                row.size = static_cast<Bytes>(104'857'598 + random() % 4);
            }
            if (random() % 3 != 0) {
                row.lastOpened = Date{static_cast<double>(random() % 5)};
            }
        }
        ASSERT_EQ(arranged(rows, SortOrder::oldForgotten), plainOldForgotten(rows));
    }
}

TEST(SortOrder, aFewThatChangedArePutWhereSortingAllAnewWouldPutThem)
{
    std::mt19937 random(20261122);
    const auto anyKey = [&] {
        SortKey row;
        if (random() % 4 != 0) {
            row.size = static_cast<Bytes>(104'857'598 + random() % 4);
        }
        if (random() % 3 != 0) {
            row.lastOpened = Date{static_cast<double>(random() % 5)};
        }
        return row;
    };
    for (int round = 0; round < 400; ++round) {
        const SortOrder order = allSortOrders[random() % allSortOrders.size()];
        std::vector<SortKey> rows(random() % 60);
        for (std::uint32_t i = 0; i < rows.size(); ++i) {
            rows[i] = anyKey();
            rows[i].nameRank = i * 7 % 61;
        }
        Positions positions = arranged(rows, order);
        std::vector<bool> hasChanged(rows.size());
        for (std::uint32_t i = 0; i < rows.size(); ++i) {
            if (random() % 5 == 0) {
                const std::uint32_t rank = rows[i].nameRank;
                rows[i] = anyKey();
                rows[i].nameRank = rank;
                hasChanged[i] = true;
            }
        }
        rearrange(
            positions, hasChanged, [&](std::uint32_t position) { return rows[position]; }, order);
        ASSERT_EQ(positions, arranged(rows, order)) << rawString(order);
    }
}

TEST(SortOrder, whatChangedButIsNotShownIsNotPutAmongTheRest)
{
    const std::vector<SortKey> rows = {{1, {}, 0}, {9, {}, 0}, {5, {}, 0}, {3, {}, 0}};
    Positions positions = {2, 0};
    rearrange(
        positions, {true, true, false, false},
        [&](std::uint32_t position) { return rows[position]; }, SortOrder::sizeAscending);
    EXPECT_EQ(positions, (Positions{0, 2}));
}

TEST(SortOrder, nothingIsArrangedToNothing)
{
    for (const SortOrder order : allSortOrders) {
        EXPECT_TRUE(arranged({}, order).empty());
    }
}

}  // namespace gruk
