#include "app/theme/text.h"

#include <gtest/gtest.h>

namespace gruk {

TEST(Text, bytesThatAreNotTextShowAsReplacements)
{
    EXPECT_EQ(displayString("caf\xe9 \xE2\x82\xAC"), QStringLiteral("caf\uFFFD €"));
    EXPECT_EQ(displayName("a\xff"), QStringLiteral("a\uFFFD"));
}

TEST(Text, aNameNeverTakesTwoLines)
{
    EXPECT_EQ(displayName("a\nb\tc\x7f"), QStringLiteral("a\u240Ab\u2409c\u2421"));
}

TEST(Text, aToolTipIsNeverTakenForMarkup)
{
    EXPECT_TRUE(toolTipText(QStringLiteral("<b>&")).contains(QStringLiteral("&lt;b&gt;&amp;")));
}

TEST(Text, aCountIsGroupedAsTheUserGroupsIt)
{
    EXPECT_EQ(groupedNumber(1234567), QStringLiteral("1,234,567"));
    EXPECT_EQ(groupedNumber(0), QStringLiteral("0"));
}

}  // namespace gruk
