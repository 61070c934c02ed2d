#include "core/realm/seeded_generator.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <string>

#include "tests/core/realm/realm_vectors.h"

namespace gruk {

using test::vectorDouble;
using test::vectorInteger;

TEST(SeededGenerator, aGeneratorSeededWithZeroReturnsTheWorkedValueFirst)
{
    EXPECT_EQ(SeededGenerator(0).next(), 0xe220a8397b1dcdafU);
}

TEST(SeededGenerator, nextAgreesWithTheTable)
{
    for (const test::VectorLine& line : test::vectorLines("next")) {
        SeededGenerator generator(vectorInteger(line.fields.at(0)));
        for (std::size_t i = 1; i < line.fields.size(); ++i) {
            ASSERT_EQ(generator.next(), vectorInteger(line.fields[i])) << "line " << line.number;
        }
    }
}

TEST(SeededGenerator, boundedDrawsAgreeWithTheTableAndConsumeAsMuch)
{
    for (const test::VectorLine& line : test::vectorLines("bounded")) {
        SeededGenerator generator(vectorInteger(line.fields.at(0)));
        const std::uint64_t bound = vectorInteger(line.fields.at(1));
        for (std::size_t i = 2; i + 1 < line.fields.size(); ++i) {
            ASSERT_EQ(generator.bounded(bound), vectorInteger(line.fields[i]))
                << "line " << line.number;
        }
        ASSERT_EQ(generator.next(), vectorInteger(line.fields.back())) << "line " << line.number;
    }
}

TEST(SeededGenerator, unitDrawsAgreeWithTheTableToTheBit)
{
    for (const test::VectorLine& line : test::vectorLines("unit")) {
        SeededGenerator generator(vectorInteger(line.fields.at(0)));
        const double lower = vectorDouble(line.fields.at(1));
        const double upper = vectorDouble(line.fields.at(2));
        for (std::size_t i = 3; i + 1 < line.fields.size(); ++i) {
            const double drawn = generator.unit(lower, upper);
            ASSERT_EQ(std::bit_cast<std::uint64_t>(drawn),
                      std::bit_cast<std::uint64_t>(vectorDouble(line.fields[i])))
                << "line " << line.number;
        }
        ASSERT_EQ(generator.next(), vectorInteger(line.fields.back())) << "line " << line.number;
    }
}

/// Of n = 3 * 2^62 the product with r has 3r mod 4 times 2^62 as its low half, and t is 2^62: a
/// low half of 0 is rejected, 1 and 2 are below n and accepted, 3 is not below n.
constexpr std::uint64_t threeQuarters = std::uint64_t{3} << 62;

std::uint64_t seedWithFirstRemainder(std::uint64_t wanted)
{
    for (std::uint64_t seed = 0;; ++seed) {
        if (SeededGenerator(seed).next() * 3 % 4 == wanted) {
            return seed;
        }
    }
}

TEST(SeededGenerator, aLowBelowTheBoundButAtOrAboveTheThresholdIsAcceptedWithoutARedraw)
{
    for (const std::uint64_t remainder : {1U, 2U, 3U}) {
        const std::uint64_t seed = seedWithFirstRemainder(remainder);
        SeededGenerator plain(seed);
        SeededGenerator drawing(seed);
        const std::uint64_t r = plain.next();
        EXPECT_EQ(drawing.bounded(threeQuarters), r / 4 * 3 + r % 4 * 3 / 4);
        EXPECT_EQ(drawing.next(), plain.next());
    }
}

TEST(SeededGenerator, aRejectedDrawConsumesOneMoreValue)
{
    const std::uint64_t seed = seedWithFirstRemainder(0);
    SeededGenerator plain(seed);
    SeededGenerator drawing(seed);
    std::uint64_t r = plain.next();
    while (r * 3 % 4 == 0) {
        r = plain.next();
    }
    EXPECT_EQ(drawing.bounded(threeQuarters), r / 4 * 3 + r % 4 * 3 / 4);
    EXPECT_EQ(drawing.next(), plain.next());
}

TEST(SeededGenerator, aBoundOfOneAlwaysGivesZero)
{
    SeededGenerator generator(7);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(generator.bounded(1), 0U);
    }
}

TEST(SeededGenerator, aPickIsOneBoundedDraw)
{
    const std::array<std::string, 5> list = {"a", "b", "c", "d", "e"};
    SeededGenerator picking(99);
    SeededGenerator drawing(99);
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(picking.pick(std::span<const std::string>(list)), list.at(drawing.bounded(5)));
    }
}

TEST(SeededGeneratorDeathTest, aBoundOfZeroStopsTheProgram)
{
    SeededGenerator generator(1);
    EXPECT_DEATH(generator.bounded(0), "Gruk: stopped");
}

TEST(SeededGeneratorDeathTest, aPickFromAnEmptyListStopsTheProgram)
{
    SeededGenerator generator(1);
    EXPECT_DEATH(generator.pick(std::span<const int>()), "Gruk: stopped");
}

}  // namespace gruk
