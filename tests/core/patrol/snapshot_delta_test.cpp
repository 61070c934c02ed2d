#include "core/patrol/snapshot_delta.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace gruk {

namespace {

SnapshotDelta delta(const char* path, Bytes previous, Bytes current)
{
    return {path, SnapshotDelta::Change::grown, previous, current};
}

}  // namespace

TEST(SnapshotDelta, changesHaveTheirRawStrings)
{
    EXPECT_EQ(rawString(SnapshotDelta::Change::added), "new");
    EXPECT_EQ(rawString(SnapshotDelta::Change::grown), "grown");
    EXPECT_EQ(rawString(SnapshotDelta::Change::shrunk), "shrunk");
    EXPECT_EQ(rawString(SnapshotDelta::Change::removed), "removed");
}

TEST(SnapshotDelta, aSmallGrowthStandsBeforeALargeShrink)
{
    EXPECT_TRUE(standsBefore(delta("z", 0, 10), delta("a", 1000, 0)));
    EXPECT_FALSE(standsBefore(delta("a", 1000, 0), delta("z", 0, 10)));
}

TEST(SnapshotDelta, inEachGroupTheLargerMagnitudeStandsFirst)
{
    EXPECT_TRUE(standsBefore(delta("z", 5, 25), delta("a", 5, 24)));
    EXPECT_TRUE(standsBefore(delta("z", 25, 5), delta("a", 24, 5)));
    EXPECT_FALSE(standsBefore(delta("a", 24, 5), delta("z", 25, 5)));
}

TEST(SnapshotDelta, equalMagnitudesStandInTheTextOrderOfTheirPaths)
{
    EXPECT_TRUE(standsBefore(delta("file2", 0, 7), delta("file10", 0, 7)));
    EXPECT_FALSE(standsBefore(delta("file10", 0, 7), delta("file2", 0, 7)));
    EXPECT_TRUE(standsBefore(delta("a/b", 7, 0), delta("a b", 7, 0)));
}

TEST(SnapshotDelta, nothingStandsBeforeItself)
{
    EXPECT_FALSE(standsBefore(delta("a", 1, 2), delta("a", 1, 2)));
    EXPECT_FALSE(standsBefore(delta("a", 2, 2), delta("a", 2, 2)));
}

TEST(SnapshotDelta, theErrorsTellWhatToDo)
{
    const SnapshotDeltaError mismatch(SnapshotDeltaError::Case::rootMismatch);
    const SnapshotDeltaError incomplete(SnapshotDeltaError::Case::incompleteSnapshot);
    EXPECT_NE(std::string(mismatch.what()).find("another folder"), std::string::npos);
    EXPECT_NE(std::string(incomplete.what()).find("unfinished"), std::string::npos);
    for (const auto& error : {mismatch, incomplete}) {
        EXPECT_NE(std::string(error.what()).find("snapshots.json"), std::string::npos);
        EXPECT_TRUE(std::string(error.what()).ends_with("."));
    }
    EXPECT_FALSE(mismatch == incomplete);
}

TEST(SnapshotDeltaDeathTest, aDifferenceBeyondTheRangeStopsTheProgram)
{
    const SnapshotDelta wild = delta("a", std::numeric_limits<Bytes>::min(), 1);
    EXPECT_DEATH(static_cast<void>(wild.netBytes()), "Gruk: stopped");
}

}  // namespace gruk
