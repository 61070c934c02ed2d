#include "platform/foundation/canonical_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace gruk {

namespace {

// "é" as one character, and as "e" with an accent behind it.
const std::string composed = "caf\xC3\xA9";
const std::string decomposed = "cafe\xCC\x81";

TEST(CanonicalForm, isOneForTextsThatReadAlike)
{
    EXPECT_NE(composed, decomposed);
    EXPECT_EQ(canonicalForm(composed), canonicalForm(decomposed));
    EXPECT_NE(canonicalForm("cafe"), canonicalForm(composed));
}

TEST(CanonicalForm, keepsBytesThatAreNotUTF8)
{
    const std::string bytes = "a\xFF" + decomposed;
    EXPECT_EQ(canonicalForm(bytes), bytes);
    EXPECT_EQ(canonicalForm(""), "");
}

TEST(PlainCompare, putsUpperCaseFirstAndCountsNoNumbers)
{
    EXPECT_TRUE(plainCompare("Zebra", "apple") < 0);
    EXPECT_TRUE(plainCompare("file10", "file2") < 0);
    EXPECT_TRUE(plainCompare("a", "a") == 0);
}

TEST(PlainCompare, comparesCanonicalFormsAndTellsTheirBytesApart)
{
    // Composed, "é" stands behind "z"; as bytes the other form would stand before it.
    EXPECT_TRUE(plainCompare(decomposed, "cafz") > 0);
    EXPECT_TRUE(plainCompare(composed, decomposed) != 0);
    EXPECT_EQ(plainCompare(composed, decomposed) < 0, plainCompare(decomposed, composed) > 0);
}

TEST(PlainCompare, isATotalOrder)
{
    const std::vector<std::string> names = {"",
                                            "A",
                                            "a",
                                            "caf",
                                            composed,
                                            decomposed,
                                            "cafz",
                                            "\xFF",
                                            "\xE2\x80",
                                            "\xF0\x9F\x9A\xA9",
                                            "\xEF\xBF\xBD"};
    for (const std::string& a : names) {
        for (const std::string& b : names) {
            EXPECT_EQ(plainCompare(a, b) == 0, a == b);
            EXPECT_EQ(plainCompare(a, b) < 0, plainCompare(b, a) > 0);
            for (const std::string& c : names) {
                if (plainCompare(a, b) < 0 && plainCompare(b, c) < 0) {
                    EXPECT_TRUE(plainCompare(a, c) < 0);
                }
            }
        }
    }
}

}  // namespace

}  // namespace gruk
