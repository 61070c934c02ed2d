#include "core/actions/stash_service.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/fake_disk.h"

namespace gruk {

namespace {

using Reason = StashFailure::Reason;
using test::FakeDisk;
using testing::ElementsAre;
using testing::IsEmpty;

const FileURL desktop = FileURL::directory("/home/a/Desktop");
const std::string hoard = "/home/a/Desktop/Desktop Hoard \xE2\x80\x94 15 Nov 2026";

StashFailure failure(const FileURL& url, Reason reason, std::string message = {})
{
    return {url, reason, std::move(message)};
}

TEST(StashService, movesEverythingVisibleIntoOneDatedFolder)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/b");
    disk.addFolder("/home/a/Desktop/A");
    disk.add("/home/a/Desktop/A/inside");
    disk.add("/home/a/Desktop/.hidden");
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    EXPECT_EQ(operation.hoardFolder, FileURL::directory(hoard));
    EXPECT_THAT(operation.moved,
                ElementsAre(StashedItem{FileURL::directory("/home/a/Desktop/A"),
                                        FileURL::directory(hoard + "/A")},
                            StashedItem{FileURL("/home/a/Desktop/b"), FileURL(hoard + "/b")}));
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_TRUE(disk.has(hoard + "/A/inside"));
    EXPECT_TRUE(disk.has("/home/a/Desktop/.hidden"));
}

TEST(StashService, writesTheJournalOnceAfterTheMoves)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/b");
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    ASSERT_TRUE(disk.journals.contains(hoard));
    EXPECT_EQ(disk.journals.at(hoard),
              (StashJournalFile{FileURL::directory(hoard), operation.moved, disk.now}));
}

TEST(StashService, aFolderWithOnlyHiddenEntriesGivesNothingAtAll)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/.x");
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    EXPECT_EQ(operation, StashOperation());
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(StashService, aSecondStashOnTheSameDayIsNumberedAndLeavesTheFirstHoardAlone)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/one");
    const StashService service(disk.stashCalls());
    (void)service.stashDesktop(desktop, desktop);
    disk.add("/home/a/Desktop/two");
    const StashOperation second = service.stashDesktop(desktop, desktop);
    EXPECT_EQ(second.hoardFolder, FileURL::directory(hoard + " (2)"));
    EXPECT_TRUE(disk.has(hoard + "/one"));
    EXPECT_TRUE(disk.has(hoard + " (2)/two"));
}

TEST(StashService, aHoardThatLostItsJournalMovesIntoTheNextWhichIsStillNumbered)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/one");
    const StashService service(disk.stashCalls());
    (void)service.stashDesktop(desktop, desktop);
    disk.journals.clear();
    disk.add("/home/a/Desktop/two");
    const StashOperation second = service.stashDesktop(desktop, desktop);
    EXPECT_EQ(second.hoardFolder, FileURL::directory(hoard + " (2)"));
    EXPECT_TRUE(disk.has(hoard + " (2)/Desktop Hoard \xE2\x80\x94 15 Nov 2026/one"));
    EXPECT_TRUE(disk.has(hoard + " (2)/two"));
}

TEST(StashService, aHiddenEntryOfTheHoardsNameMakesTheStashFailWithNothingMoved)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/one");
    disk.addFolder(hoard);
    disk.hidden = {hoard};
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    EXPECT_FALSE(operation.hoardFolder);
    EXPECT_THAT(operation.moved, IsEmpty());
    EXPECT_THAT(operation.failures,
                ElementsAre(failure(FileURL::directory(hoard), Reason::couldNotStash,
                                    "something stands there")));
    EXPECT_TRUE(disk.has("/home/a/Desktop/one"));
}

TEST(StashService, theHomeFolderAVolumeRootAndSlashAreProtected)
{
    const test::EnvironmentVariable home("HOME", "/home/a");
    FakeDisk disk;
    disk.add("/home/a/x");
    disk.volumeRoot = FileURL::directory("/mnt/disk");
    const StashService service(disk.stashCalls());
    const FileURL slash = FileURL::directory("/");
    for (const char* path : {"/home/a", "/mnt/disk", "/"}) {
        const StashOperation operation = service.stashDesktop(FileURL::directory(path), slash);
        EXPECT_FALSE(operation.hoardFolder);
        EXPECT_THAT(operation.failures,
                    ElementsAre(failure(FileURL::directory(path), Reason::protectedLocation)));
    }
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(StashService, aFolderOutsideTheRootIsRefused)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/x");
    const StashOperation operation =
        StashService(disk.stashCalls())
            .stashDesktop(FileURL::directory("/home/a/Desk/../Desktop"),
                          FileURL::directory("/home/a/Desk"));
    EXPECT_FALSE(operation.hoardFolder);
    EXPECT_THAT(operation.failures, ElementsAre(failure(desktop, Reason::outsideAuthorizedRoot)));
}

TEST(StashService, aListingErrorMovesNothing)
{
    FakeDisk disk;
    disk.refusals[desktop.path()] = "unreadable";
    const StashService service(disk.stashCalls());
    const StashOperation operation = service.stashDesktop(desktop, desktop);
    EXPECT_FALSE(operation.hoardFolder);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure(desktop, Reason::couldNotStash, "unreadable")));
    EXPECT_EQ(service.stashableCount(desktop), 0U);
    EXPECT_EQ(service.proposedHoardName(desktop), "Desktop Hoard \xE2\x80\x94 15 Nov 2026");
}

TEST(StashService, aFailedMoveLeavesTheOthersToGoAhead)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    disk.add("/home/a/Desktop/b");
    disk.refusals["/home/a/Desktop/a"] = "busy";
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure(FileURL("/home/a/Desktop/a"), Reason::couldNotStash, "busy")));
    EXPECT_EQ(disk.journals.at(hoard).items, operation.moved);
}

TEST(StashService, whenEveryMoveFailsTheEmptyHoardStaysWithoutAJournal)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    disk.refusals["/home/a/Desktop/a"] = "";
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    EXPECT_EQ(operation.hoardFolder, FileURL::directory(hoard));
    EXPECT_THAT(operation.moved, IsEmpty());
    EXPECT_THAT(operation.failures,
                ElementsAre(failure(FileURL("/home/a/Desktop/a"), Reason::couldNotStash,
                                    "Unknown filesystem error")));
    EXPECT_TRUE(disk.has(hoard));
    EXPECT_THAT(disk.journals, IsEmpty());
}

TEST(StashService, aJournalThatCannotBeWrittenLeavesTheMovesStanding)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    disk.journalRefusal = "full";
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_THAT(operation.failures, ElementsAre(failure(FileURL::directory(hoard),
                                                        Reason::couldNotWriteJournal, "full")));
    EXPECT_TRUE(disk.has(hoard + "/a"));
}

TEST(StashService, countsAndNamesWhatAStashWouldDoNow)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    disk.add("/home/a/Desktop/b");
    disk.add("/home/a/Desktop/.c");
    const StashService service(disk.stashCalls());
    EXPECT_EQ(service.stashableCount(desktop), 2U);
    EXPECT_EQ(service.proposedHoardName(desktop), "Desktop Hoard \xE2\x80\x94 15 Nov 2026");
    (void)service.stashDesktop(desktop, desktop);
    EXPECT_EQ(service.stashableCount(desktop), 0U);
    EXPECT_EQ(service.proposedHoardName(desktop), "Desktop Hoard \xE2\x80\x94 15 Nov 2026 (2)");
}

TEST(StashService, itemsAreSortedByPlainTextComparison)
{
    FakeDisk disk;
    for (const char* name : {"apple", "Zebra", "file10", "file2"}) {
        disk.add(std::string("/home/a/Desktop/") + name);
    }
    const StashOperation operation = StashService(disk.stashCalls()).stashDesktop(desktop, desktop);
    std::vector<std::string> names;
    for (const StashedItem& item : operation.moved) {
        names.emplace_back(item.originalURL.lastPathComponent());
    }
    EXPECT_THAT(names, ElementsAre("Zebra", "apple", "file10", "file2"));
}

TEST(StashService, putsEverythingBackAndLeavesTheHoardAndItsJournal)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    disk.add("/home/a/Desktop/b");
    const StashService service(disk.stashCalls());
    const StashOperation operation = service.stashDesktop(desktop, desktop);
    const StashRestoreOperation restored = service.restore(operation.moved);
    EXPECT_EQ(restored.restored, operation.moved);
    EXPECT_THAT(restored.failures, IsEmpty());
    EXPECT_TRUE(disk.has("/home/a/Desktop/a"));
    EXPECT_TRUE(disk.has(hoard));
    EXPECT_TRUE(disk.journals.contains(hoard));
}

TEST(StashService, anItemRecreatedAtItsOldPathStaysInTheHoardAndTheOthersGoBack)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    disk.add("/home/a/Desktop/b");
    const StashService service(disk.stashCalls());
    const StashOperation operation = service.stashDesktop(desktop, desktop);
    disk.add("/home/a/Desktop/a");
    const StashRestoreOperation restored = service.restore(operation.moved);
    EXPECT_EQ(restored.restored.size(), 1U);
    EXPECT_THAT(restored.failures,
                ElementsAre(failure(FileURL("/home/a/Desktop/a"), Reason::destinationExists)));
    EXPECT_TRUE(disk.has(hoard + "/a"));
    EXPECT_TRUE(disk.has("/home/a/Desktop/b"));
}

TEST(StashService, anItemThatLeftTheHoardIsMissingFromIt)
{
    FakeDisk disk;
    const StashRestoreOperation restored =
        StashService(disk.stashCalls()).restore({{FileURL("/d/a"), FileURL("/d/h/a")}});
    EXPECT_THAT(restored.failures,
                ElementsAre(failure(FileURL("/d/h/a"), Reason::missingFromHoard)));
}

TEST(StashService, aMoveBackThatIsRefusedIsReportedWithTheOldPlace)
{
    FakeDisk disk;
    disk.add("/d/h/a");
    disk.refusals["/d/h/a"] = "";
    const StashRestoreOperation restored =
        StashService(disk.stashCalls()).restore({{FileURL("/d/a"), FileURL("/d/h/a")}});
    EXPECT_THAT(restored.failures, ElementsAre(failure(FileURL("/d/a"), Reason::couldNotRestore,
                                                       "Unknown filesystem error")));
}

TEST(StashService, aRestoreWithAnEmptyListGivesTwoEmptyLists)
{
    FakeDisk disk;
    EXPECT_EQ(StashService(disk.stashCalls()).restore({}), StashRestoreOperation());
}

TEST(StashService, undoingTwiceReportsEachItemAsAnExistingDestination)
{
    FakeDisk disk;
    disk.add("/home/a/Desktop/a");
    const StashService service(disk.stashCalls());
    const StashOperation operation = service.stashDesktop(desktop, desktop);
    (void)service.restore(operation.moved);
    const StashRestoreOperation again = service.restore(operation.moved);
    EXPECT_THAT(again.restored, IsEmpty());
    EXPECT_THAT(again.failures,
                ElementsAre(failure(FileURL("/home/a/Desktop/a"), Reason::destinationExists)));
}

}  // namespace

}  // namespace gruk
