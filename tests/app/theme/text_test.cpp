#include "app/theme/text.h"

#include <QFont>
#include <QFontMetrics>
#include <QLocale>
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

TEST(Text, aCountIsGroupedTheSameInEveryLocale)
{
    const QLocale before;
    for (const QLocale& locale :
         {QLocale(QLocale::German, QLocale::Germany), QLocale(QLocale::English, QLocale::India),
          QLocale(QLocale::French, QLocale::France), QLocale::c()}) {
        QLocale::setDefault(locale);
        EXPECT_EQ(groupedNumber(1234567), QStringLiteral("1,234,567"))
            << locale.name().toStdString();
        EXPECT_EQ(groupedNumber(0), QStringLiteral("0"));
    }
    QLocale::setDefault(before);
}

TEST(Text, linesAreBrokenBetweenWordsAndWithinOneThatIsTooLong)
{
    const QFont font;
    const QFontMetrics metrics(font);
    const int width = metrics.horizontalAdvance(QString(20, QLatin1Char('m')));
    EXPECT_EQ(wrappedLines(QStringLiteral("short"), font, width).size(), 1);
    EXPECT_EQ(wrappedLines({}, font, width).size(), 1);
    EXPECT_EQ(wrappedLines(QStringLiteral("a\n\nb"), font, width).size(), 3);
    const QString name(4'000, QLatin1Char('m'));
    const QStringList lines = wrappedLines(QStringLiteral("the file ") + name, font, width);
    EXPECT_GT(lines.size(), 190);
    for (const QString& line : lines) {
        EXPECT_LE(metrics.horizontalAdvance(line), width + metrics.maxWidth());
    }
    EXPECT_TRUE(lines.join(QString()).contains(name)) << "nothing is left out";
    EXPECT_EQ(wrappedHeight({}, font, width), metrics.height());
}

TEST(Text, aToolTipOfALongNameIsNoWiderThanAScreen)
{
    const QString name(4'000, QLatin1Char('m'));
    const QString text = toolTipText(name);
    EXPECT_FALSE(text.contains(QString(80, QLatin1Char('m'))));
    EXPECT_TRUE(QString(text).remove(QChar(0x200B)).contains(name));
    EXPECT_TRUE(toolTipText(QString(60, QLatin1Char('m'))).contains(QString(60, QLatin1Char('m'))));
}

}  // namespace gruk
