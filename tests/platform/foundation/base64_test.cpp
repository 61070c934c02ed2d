#include "platform/foundation/base64.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace gruk {

namespace {

// The test vectors of RFC 4648, section 10.
TEST(Base64, encodesTheVectorsOfItsStandard)
{
    EXPECT_EQ(base64Encoded(""), "");
    EXPECT_EQ(base64Encoded("f"), "Zg==");
    EXPECT_EQ(base64Encoded("fo"), "Zm8=");
    EXPECT_EQ(base64Encoded("foo"), "Zm9v");
    EXPECT_EQ(base64Encoded("foob"), "Zm9vYg==");
    EXPECT_EQ(base64Encoded("fooba"), "Zm9vYmE=");
    EXPECT_EQ(base64Encoded("foobar"), "Zm9vYmFy");
}

TEST(Base64, usesTheStandardAlphabet)
{
    EXPECT_EQ(base64Encoded("\xFB\xEF\xBE"), "++++");
    EXPECT_EQ(base64Encoded("\xFF\xFF\xFF"), "////");
    EXPECT_EQ(base64Decoded("-___"), std::nullopt);
}

TEST(Base64, refusesWhatItDoesNotWrite)
{
    for (const char* text :
         {"Zg", "Zg=", "Zg===", "=", "====", "Z===", "Zg==Zg==", "Zm9v\n", "Zm9v ", " Zm9v", "Zm=v",
          "Z=9v", "Zm9v====", "Zh==", "Zm9=", "Zm9*", "Zm\xC3\xA9v"}) {
        EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
    }
}

RC_GTEST_PROP(Base64, readsBackAnyBytes, (const std::string& bytes))
{
    const std::string text = base64Encoded(bytes);
    RC_ASSERT(text.size() == (bytes.size() + 2) / 3 * 4);
    RC_ASSERT(base64Decoded(text) == bytes);
}

RC_GTEST_PROP(Base64, noTwoTextsReadAsTheSameBytes, ())
{
    const auto digit = rc::gen::elementOf(std::string("ABQgwZ19+/="));
    const auto text = *rc::gen::container<std::string>(8, digit);
    const auto bytes = base64Decoded(text);
    RC_ASSERT((!bytes || base64Encoded(*bytes) == text));
}

}  // namespace

}  // namespace gruk
