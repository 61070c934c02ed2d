#include "platform/foundation/uuid.h"

#include <set>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace gruk {

namespace {

TEST(UUID, writesUpperCaseInFiveGroups)
{
    UUID uuid;
    for (std::size_t i = 0; i < uuid.bytes.size(); ++i) {
        uuid.bytes[i] = static_cast<std::uint8_t>(0xF0 + i);
    }
    EXPECT_EQ(uuid.text(), "F0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEFF");
    EXPECT_EQ(UUID().text(), "00000000-0000-0000-0000-000000000000");
}

TEST(UUID, readsEitherCase)
{
    const auto upper = UUID::parse("F0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEFF");
    ASSERT_TRUE(upper);
    EXPECT_EQ(UUID::parse("f0f1f2f3-f4f5-f6f7-f8f9-fafbfcfdfeff"), upper);
}

TEST(UUID, refusesAnyOtherForm)
{
    for (const char* text :
         {"", "F0F1F2F3F4F5F6F7F8F9FAFBFCFDFEFF", "{F0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEFF}",
          "F0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEF", "F0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEFFF",
          "G0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEFF", "F0F1F2F3-F4F5-F6F7-F8F9-FAFBFCFDFEF ",
          "F0F1F2F3F-4F5-F6F7-F8F9-FAFBFCFDFEFF", "F0F1F2F3_F4F5-F6F7-F8F9-FAFBFCFDFEFF"}) {
        EXPECT_EQ(UUID::parse(text), std::nullopt) << text;
    }
}

TEST(UUID, aRandomOneSaysThatItIs)
{
    const std::string text = UUID::random().text();
    EXPECT_EQ(text[14], '4');
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos);
}

TEST(UUID, randomOnesDiffer)
{
    std::set<UUID> made;
    for (int i = 0; i < 1'000; ++i) {
        made.insert(UUID::random());
    }
    EXPECT_EQ(made.size(), 1'000U);
}

RC_GTEST_PROP(UUID, readsBackItsText, ())
{
    UUID uuid;
    for (std::uint8_t& byte : uuid.bytes) {
        byte = *rc::gen::arbitrary<std::uint8_t>();
    }
    RC_ASSERT(UUID::parse(uuid.text()) == uuid);
}

}  // namespace

}  // namespace gruk
