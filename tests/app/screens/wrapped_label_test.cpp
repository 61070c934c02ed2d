#include "app/screens/wrapped_label.h"

#include <gtest/gtest.h>

namespace gruk {

namespace {

constexpr int width = 200;

class WrappedLabelTest : public testing::Test {
protected:
    [[nodiscard]] int linesOf(const QString& text)
    {
        label.setFullText(text);
        return label.heightForWidth(width) / label.fontMetrics().lineSpacing();
    }

    Theme theme;
    WrappedLabel label{theme, TextStyle::detail, 3};
};

}  // namespace

TEST_F(WrappedLabelTest, takesALineForAShortText)
{
    EXPECT_EQ(linesOf(QStringLiteral("short")), 1);
    EXPECT_EQ(linesOf({}), 1);
}

TEST_F(WrappedLabelTest, wrapsBetweenWordsAndWithinOneThatIsTooLong)
{
    EXPECT_EQ(linesOf(QStringLiteral("some words that take two lines of it")), 2);
    EXPECT_EQ(linesOf(QString(40, QLatin1Char('m'))), 3);
}

TEST_F(WrappedLabelTest, neverTakesMoreLinesThanItMayAndKeepsTheWholeTextInItsToolTip)
{
    const QString name(5'000, QLatin1Char('m'));
    EXPECT_EQ(linesOf(name), 3);
    EXPECT_EQ(label.text(), name);
    EXPECT_TRUE(label.toolTip().remove(QChar(0x200B)).contains(name));
}

}  // namespace gruk
