#include "core/realm/realm_summary.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/random_snapshot.h"

namespace gruk {

namespace {

constexpr Date now{1'800'000'000};

Grant grantOf(const std::string& path)
{
    return {UUID{}, path, "bookmark", Date{0}};
}

RealmHistory historyOf(const std::vector<SnapshotEntry>& entries, Date capturedAt = now)
{
    RealmHistory history;
    history.latestSnapshot = test::snapshotOf(entries);
    history.latestSnapshot->capturedAt = capturedAt;
    return history;
}

SnapshotEntry entry(const std::string& path, Bytes size)
{
    return {path, size, std::nullopt, FileKind::other, false};
}

Bytes totalOf(const std::vector<SnapshotEntry>& entries)
{
    return RealmSummaryBuilder::summary(grantOf("/realm"), historyOf(entries), PatrolCadence::off,
                                        now)
        .totalBytes;
}

bool isOverdue(PatrolCadence cadence, double secondsAgo)
{
    const RealmHistory history = historyOf({}, Date{now.secondsSince1970 - secondsAgo});
    return RealmSummaryBuilder::summary(grantOf("/realm"), history, cadence, now).isOverdue;
}

std::string displayName(const std::string& path)
{
    return RealmSummaryBuilder::summary(grantOf(path), {}, PatrolCadence::off, now).displayName;
}

}  // namespace

TEST(RealmSummary, keepsThePathAsItWasGranted)
{
    for (const std::string path : {"/", "/Volumes/Archive", "/Data/", "/a\xff"}) {
        EXPECT_EQ(RealmSummaryBuilder::summary(grantOf(path), {}, PatrolCadence::off, now).path,
                  path);
    }
}

TEST(RealmSummary, isCalledByTheLastComponentOfThePath)
{
    EXPECT_EQ(displayName("/Volumes/Archive"), "Archive");
    EXPECT_EQ(displayName("/Data/"), "Data");
    EXPECT_EQ(displayName("/a\xff"), "a\xff");
}

TEST(RealmSummary, aGrantOfTheRootIsCalledSlash)
{
    EXPECT_EQ(displayName("/"), "/");
}

TEST(RealmSummary, aRealmWithoutAHistoryHasNoBytesNoFindingsNoPatrolAndIsNotOverdue)
{
    const RealmSummary expected{"/realm", "realm", 0, 0, std::nullopt, false};
    for (const PatrolCadence cadence : allPatrolCadences) {
        EXPECT_EQ(RealmSummaryBuilder::summary(grantOf("/realm"), {}, cadence, now), expected);
    }
}

TEST(RealmSummary, aSnapshotWithoutEntriesHasNoBytesButAPatrol)
{
    const Date captured{1'700'000'000};
    const RealmSummary summary = RealmSummaryBuilder::summary(
        grantOf("/realm"), historyOf({}, captured), PatrolCadence::off, now);
    EXPECT_EQ(summary.totalBytes, 0);
    EXPECT_EQ(summary.lastPatrolled, captured);
}

TEST(RealmSummary, ofAFolderAndWhatLiesInItOnlyTheFolderCounts)
{
    EXPECT_EQ(totalOf({entry("a", 100), entry("a/b", 60), entry("a/b/c", 50)}), 100);
    EXPECT_EQ(totalOf({entry("a", 100), entry("a/b", 60), entry("b", 7)}), 107);
}

TEST(RealmSummary, sumsTheTopLevelOfAnySnapshot)
{
    SeededGenerator draw(52);
    for (int round = 0; round < 300; ++round) {
        const auto entries = test::randomEntries(draw, 1 + draw.bounded(60));
        Bytes expected = 0;
        for (const SnapshotEntry& one : entries) {
            const bool isTop = one.relativePath.find('/') == std::string::npos;
            expected += isTop ? one.allocatedSize : 0;
        }
        ASSERT_EQ(totalOf(entries), expected);
    }
}

TEST(RealmSummary, anIncompleteSnapshotIsSummedLikeACompleteOne)
{
    RealmHistory history = historyOf({entry("a", 100)});
    history.latestSnapshot->isComplete = false;
    EXPECT_EQ(RealmSummaryBuilder::summary(grantOf("/realm"), history, PatrolCadence::off, now)
                  .totalBytes,
              100);
}

TEST(RealmSummary, aDailyRealmIsOverdueExactlyADayAfterItsPatrol)
{
    EXPECT_TRUE(isOverdue(PatrolCadence::daily, 86'400));
    EXPECT_FALSE(isOverdue(PatrolCadence::daily, 86'399));
    EXPECT_FALSE(isOverdue(PatrolCadence::daily, -86'400));
}

TEST(RealmSummary, aWeeklyRealmIsOverdueExactlyAWeekAfterItsPatrol)
{
    EXPECT_TRUE(isOverdue(PatrolCadence::weekly, 604'800));
    EXPECT_FALSE(isOverdue(PatrolCadence::weekly, 604'799));
}

TEST(RealmSummary, aRealmOnGuardOrLeftAloneIsNeverOverdue)
{
    for (const double seconds : {0.0, 86'400.0, 1e9, 1e12}) {
        EXPECT_FALSE(isOverdue(PatrolCadence::standGuard, seconds));
        EXPECT_FALSE(isOverdue(PatrolCadence::off, seconds));
    }
}

TEST(RealmSummary, findingsAreCountedAsStored)
{
    RealmHistory history = historyOf({});
    history.findings.resize(17);
    EXPECT_EQ(RealmSummaryBuilder::summary(grantOf("/realm"), history, PatrolCadence::off, now)
                  .findingsCount,
              17U);
}

TEST(RealmSummaryDeathTest, aTotalBeyondTheRangeStopsTheProgram)
{
    constexpr Bytes most = std::numeric_limits<Bytes>::max();
    EXPECT_EQ(totalOf({entry("a", most)}), most);
    EXPECT_DEATH((void)totalOf({entry("a", most), entry("b", 1)}), "Gruk: stopped");
}

}  // namespace gruk
