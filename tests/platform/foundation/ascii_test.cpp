#include "platform/foundation/ascii.h"

#include <cstddef>

#include <gtest/gtest.h>

namespace gruk {

TEST(ASCII, aHexadecimalDigitHasItsValueInEitherCaseAndNothingElseHasOne)
{
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        const std::size_t lower = lowerHexDigits.find(c);
        const std::size_t upper = upperHexDigits.find(c);
        const std::size_t place = lower != std::string_view::npos ? lower : upper;
        const int expected = place == std::string_view::npos ? -1 : static_cast<int>(place);
        EXPECT_EQ(hexValue(c) < 0 ? -1 : hexValue(c), expected) << code;
    }
}

TEST(ASCII, onlyTheTwentySixCapitalsHaveASmallLetter)
{
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        const bool isCapital = code >= 'A' && code <= 'Z';
        EXPECT_EQ(lowerASCII(c), isCapital ? static_cast<char>(code + 32) : c) << code;
    }
}

TEST(ASCII, aNumberIsDigitsAndNothingElse)
{
    EXPECT_TRUE(isNumber("0"));
    EXPECT_TRUE(isNumber("0123456789"));
    for (const char* text : {"", " 1", "1 ", "-1", "1.0", "1a", "\u0661"}) {
        EXPECT_FALSE(isNumber(text)) << text;
    }
}

TEST(ASCII, aTextIsItUnlessAByteHasItsHighestBitSet)
{
    EXPECT_TRUE(isASCII(""));
    EXPECT_TRUE(isASCII("plain \x7f"));
    EXPECT_FALSE(isASCII("caf\xc3\xa9"));
    EXPECT_FALSE(isASCII("\x80"));
}

TEST(ASCII, aLineLosesBlanksAndACarriageReturnAtItsEndsOnly)
{
    EXPECT_EQ(trimmedLine(" \tPath = a b \r"), "Path = a b");
    EXPECT_EQ(trimmedLine("a"), "a");
    EXPECT_EQ(trimmedLine(" \t\r"), "");
    EXPECT_EQ(trimmedLine(""), "");
}

}  // namespace gruk
