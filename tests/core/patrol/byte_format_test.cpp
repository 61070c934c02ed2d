#include "core/patrol/byte_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "core/realm/seeded_generator.h"

namespace gruk {

namespace {

/// The text of a positive count by long hand: on the decimal digits of the number, with no
/// arithmetic on its value.
std::string longHand(const std::string& digits)
{
    struct Unit {
        std::size_t zeros;
        std::size_t after;
        const char* name;
    };
    const Unit units[] = {{3, 0, "KB"}, {6, 1, "MB"}, {9, 2, "GB"}};
    for (const Unit& unit : units) {
        std::string padded = std::string(unit.zeros + 1, '0') + digits;
        const std::size_t point = padded.size() - unit.zeros;
        const bool roundsUp = padded.at(point + unit.after) >= '5';
        std::string kept = padded.substr(0, point + unit.after);
        for (std::size_t i = kept.size(); roundsUp && i > 0; --i) {
            if (kept[i - 1] != '9') {
                ++kept[i - 1];
                break;
            }
            kept[i - 1] = '0';
        }
        std::string whole = kept.substr(0, point);
        whole.erase(0, std::min(whole.find_first_not_of('0'), whole.size() - 1));
        if (whole.size() > 3 && unit.zeros != 9) {
            continue;
        }
        for (std::size_t place = 3; place < whole.size(); place += 4) {
            whole.insert(whole.size() - place, ",");
        }
        std::string fraction = kept.substr(point);
        fraction.erase(fraction.find_last_not_of('0') + 1);
        return whole + (fraction.empty() ? "" : "." + fraction) + " " + unit.name;
    }
    return "no unit";
}

void expectLongHand(std::uint64_t magnitude)
{
    const std::string expected = longHand(std::to_string(magnitude));
    ASSERT_EQ(ByteFormat::string(static_cast<Bytes>(magnitude)), expected) << magnitude;
    if (magnitude > 0) {
        ASSERT_EQ(ByteFormat::string(-static_cast<Bytes>(magnitude)), "-" + expected);
        ASSERT_EQ(ByteFormat::signedString(static_cast<Bytes>(magnitude)), "+" + expected);
        ASSERT_EQ(ByteFormat::signedString(-static_cast<Bytes>(magnitude)), "\u2212" + expected);
    }
}

}  // namespace

TEST(ByteFormat, zeroReadsZeroKB)
{
    EXPECT_EQ(ByteFormat::string(0), "0 KB");
    EXPECT_EQ(ByteFormat::signedString(0), "0 KB");
}

TEST(ByteFormat, sizesUnderAKilobyteStillReadInKB)
{
    EXPECT_EQ(ByteFormat::string(1), "0 KB");
    EXPECT_EQ(ByteFormat::string(499), "0 KB");
    EXPECT_EQ(ByteFormat::string(500), "1 KB");
    EXPECT_EQ(ByteFormat::string(999), "1 KB");
}

TEST(ByteFormat, theUnitIsTheLargestThatGivesAtLeastOne)
{
    EXPECT_EQ(ByteFormat::string(4'096), "4 KB");
    EXPECT_EQ(ByteFormat::string(999'499), "999 KB");
    EXPECT_EQ(ByteFormat::string(1'000'000), "1 MB");
    EXPECT_EQ(ByteFormat::string(1'000'000'000), "1 GB");
    EXPECT_EQ(ByteFormat::string(5'000'000'000'000), "5,000 GB");
}

TEST(ByteFormat, digitsAfterThePointAreNoneOneAndTwoWithoutTrailingZeros)
{
    EXPECT_EQ(ByteFormat::string(1'234), "1 KB");
    EXPECT_EQ(ByteFormat::string(1'234'567), "1.2 MB");
    EXPECT_EQ(ByteFormat::string(12'000'000), "12 MB");
    EXPECT_EQ(ByteFormat::string(1'234'567'890), "1.23 GB");
    EXPECT_EQ(ByteFormat::string(1'200'000'000), "1.2 GB");
    EXPECT_EQ(ByteFormat::string(1'030'000'000), "1.03 GB");
}

TEST(ByteFormat, aHalfRoundsAwayFromZero)
{
    EXPECT_EQ(ByteFormat::string(2'500), "3 KB");
    EXPECT_EQ(ByteFormat::string(1'250'000), "1.3 MB");
    EXPECT_EQ(ByteFormat::string(1'125'000'000), "1.13 GB");
    EXPECT_EQ(ByteFormat::string(-2'500), "-3 KB");
}

TEST(ByteFormat, aValueThatRoundsUpToAThousandTakesTheNextUnit)
{
    EXPECT_EQ(ByteFormat::string(999'500), "1 MB");
    EXPECT_EQ(ByteFormat::string(999'949'999), "999.9 MB");
    EXPECT_EQ(ByteFormat::string(999'950'000), "1 GB");
    EXPECT_EQ(ByteFormat::string(999'999'999'999), "1,000 GB");
}

TEST(ByteFormat, theExtremesHaveATextToo)
{
    EXPECT_EQ(ByteFormat::string(std::numeric_limits<Bytes>::max()), "9,223,372,036.85 GB");
    EXPECT_EQ(ByteFormat::string(std::numeric_limits<Bytes>::min()), "-9,223,372,036.85 GB");
    EXPECT_EQ(ByteFormat::signedString(std::numeric_limits<Bytes>::min()),
              "\u22129,223,372,036.85 GB");
}

TEST(ByteFormat, agreesWithALongHandComputationAroundEveryBoundary)
{
    for (std::uint64_t power = 1; power <= 10'000'000'000'000; power *= 10) {
        for (const std::uint64_t factor : {1U, 2U, 5U, 25U, 95U, 99U, 125U, 995U, 9995U, 99995U}) {
            const std::uint64_t middle = power * factor;
            for (std::uint64_t value = middle - std::min<std::uint64_t>(middle, 3);
                 value <= middle + 3; ++value) {
                expectLongHand(value);
            }
        }
    }
}

TEST(ByteFormat, agreesWithALongHandComputationOnRandomCounts)
{
    SeededGenerator draw(1);
    for (int i = 0; i < 100'000; ++i) {
        expectLongHand(draw.next() >> (1 + draw.bounded(63)));
    }
}

TEST(ByteFormat, theSignedTextKeepsItsSignWhenItRoundsToZero)
{
    EXPECT_EQ(ByteFormat::signedString(1), "+0 KB");
    EXPECT_EQ(ByteFormat::signedString(-1), "\u22120 KB");
    EXPECT_EQ(ByteFormat::signedString(1'500'000), "+1.5 MB");
    EXPECT_EQ(ByteFormat::signedString(-1'500'000), "\u22121.5 MB");
}

}  // namespace gruk
