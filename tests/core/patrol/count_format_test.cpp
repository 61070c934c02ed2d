#include "core/patrol/count_format.h"

#include <cstddef>
#include <limits>

#include <gtest/gtest.h>

namespace gruk {

TEST(CountFormat, groupsByThreeDigits)
{
    EXPECT_EQ(CountFormat::string(0), "0");
    EXPECT_EQ(CountFormat::string(999), "999");
    EXPECT_EQ(CountFormat::string(1'000), "1,000");
    EXPECT_EQ(CountFormat::string(std::size_t{123'456}), "123,456");
    EXPECT_EQ(CountFormat::string(1'234'567), "1,234,567");
    EXPECT_EQ(CountFormat::string(-999), "-999");
    EXPECT_EQ(CountFormat::string(-1'000), "-1,000");
    EXPECT_EQ(CountFormat::string(std::numeric_limits<std::int64_t>::min()),
              "-9,223,372,036,854,775,808");
}

}  // namespace gruk
