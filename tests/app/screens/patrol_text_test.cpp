#include "app/screens/patrol_text.h"

#include <gtest/gtest.h>

#include "tests/support/environment.h"

namespace gruk {

namespace {

HeavyItem heavy(std::optional<Bytes> delta, std::optional<std::int64_t> days)
{
    HeavyItem item;
    item.byteDeltaSincePrevious = delta;
    item.daysUntouched = days;
    return item;
}

}  // namespace

TEST(PatrolText, tellsWhenTheRealmWasLastPatrolled)
{
    EXPECT_EQ(PatrolText::lastPatrolled(nullptr), QStringLiteral("No baseline yet"));
    const test::EnvironmentVariable zone("TZ", "UTC");
    ScanSnapshot snapshot;
    snapshot.capturedAt = {1'795'161'909.7};
    EXPECT_EQ(PatrolText::lastPatrolled(&snapshot),
              QStringLiteral("Last patrolled 20 November 2026 at 08:05"));
}

TEST(PatrolText, countsThePathsAndNamesTheFolderOnceThereIsOne)
{
    EXPECT_EQ(PatrolText::progress(std::nullopt), QStringLiteral("0 paths checked so far"));
    EXPECT_EQ(PatrolText::progress(PatrolProgress{12'345, ""}),
              QStringLiteral("12,345 paths checked so far"));
    EXPECT_EQ(PatrolText::progress(PatrolProgress{12'345, "a/b\xff"}),
              QStringLiteral("12,345 paths checked so far · a/b\uFFFD"));
}

TEST(PatrolText, namesTheOtherRealmThatIsPatrolled)
{
    EXPECT_EQ(PatrolText::otherRealm("Music", PatrolProgress{1'000, "x"}),
              QStringLiteral("The Gruk is off patrolling Music — 1,000 paths so far."));
    EXPECT_EQ(PatrolText::otherRealm("Music", std::nullopt),
              QStringLiteral("The Gruk is off patrolling Music — 0 paths so far."));
    EXPECT_EQ(PatrolText::otherRealmNote("Music"),
              QStringLiteral("One patrol at a time — the Gruk finishes Music first."));
}

TEST(PatrolText, hasAWordForEachReason)
{
    using Reason = ReviewFinding::Reason;
    EXPECT_EQ(PatrolText::reasonLabel(Reason::rapidGrowth), QStringLiteral("Grew quickly"));
    EXPECT_EQ(PatrolText::reasonLabel(Reason::duplicateDownload),
              QStringLiteral("Likely duplicate"));
    EXPECT_EQ(PatrolText::reasonLabel(Reason::oldInstaller), QStringLiteral("Old installer"));
    EXPECT_EQ(PatrolText::reasonLabel(Reason::regenerableCache), QStringLiteral("Known cache"));
}

TEST(PatrolText, aHeavyItemIsToldByItsChangeFirst)
{
    EXPECT_EQ(PatrolText::heavyNote(heavy(17'000'000, 400), true),
              QStringLiteral("grew +17 MB since last patrol"));
    EXPECT_EQ(PatrolText::heavyNote(heavy(-14'000'000, 400), true),
              QStringLiteral("shrank −14 MB since last patrol"));
}

TEST(PatrolText, thenByHowLongItWasUntouched)
{
    EXPECT_EQ(PatrolText::heavyNote(heavy(0, 90), true), QStringLiteral("untouched for 3 months"));
    EXPECT_EQ(PatrolText::heavyNote(heavy(std::nullopt, 119), false),
              QStringLiteral("untouched for 3 months"));
    EXPECT_EQ(PatrolText::heavyNote(heavy(0, 89), true),
              QStringLiteral("no change since last patrol"));
}

TEST(PatrolText, thenByWhetherThereIsAnythingToCompareWith)
{
    EXPECT_EQ(PatrolText::heavyNote(heavy(std::nullopt, std::nullopt), false),
              QStringLiteral("first look — no comparison yet"));
    EXPECT_EQ(PatrolText::heavyNote(heavy(0, std::nullopt), true),
              QStringLiteral("no change since last patrol"));
    // The patrol before could not see the place.
    EXPECT_EQ(PatrolText::heavyNote(heavy(std::nullopt, std::nullopt), true),
              QStringLiteral("first look — no comparison yet"));
}

TEST(PatrolText, aHeavyItemThatWasNotThereBeforeIsNewHoweverOld)
{
    HeavyItem item = heavy(std::nullopt, 400);
    item.isNew = true;
    EXPECT_EQ(PatrolText::heavyNote(item, true), QStringLiteral("new since last patrol"));
}

TEST(PatrolText, introducesTheBigStuffWithTheTotal)
{
    EXPECT_EQ(PatrolText::heavyIntroduction(395'900'000),
              QStringLiteral("Findings need evidence to make this list. These are just your "
                             "395.9 MB biggest items, and what's changed about them since the "
                             "last patrol."));
}

}  // namespace gruk
