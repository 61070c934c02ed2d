#include "core/actions/trash_service.h"

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/fake_disk.h"

namespace gruk {

namespace {

using Reason = TrashFailure::Reason;
using test::FakeDisk;
using testing::ElementsAre;
using testing::IsEmpty;

/// A request for the item as it stands now.
TrashRequest request(const FakeDisk& disk, const std::string& path, Bytes size = 0)
{
    return {FileURL(path), size, disk.identity(FileURL(path).standardized().path())};
}

TrashFailure failure(const std::string& path, Reason reason, std::string message = {})
{
    return {FileURL(path), reason, std::move(message)};
}

const FileURL root = FileURL::directory("/realm");

TEST(TrashService, anEmptyRequestListGivesTwoEmptyListsAndTouchesNothing)
{
    FakeDisk disk;
    const TrashOperation operation = TrashService(disk.trashCalls()).moveToTrash({}, root);
    EXPECT_EQ(operation, TrashOperation());
    EXPECT_EQ(operation.totalBytes(), 0);
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(TrashService, movesItemsInTheOrderOfTheRequestsAndAddsUpTheirBytes)
{
    FakeDisk disk;
    disk.add("/realm/b");
    disk.add("/realm/a");
    const TrashOperation operation =
        TrashService(disk.trashCalls())
            .moveToTrash({request(disk, "/realm/b", 30), request(disk, "/realm/a", 12)}, root);
    EXPECT_THAT(operation.moved,
                ElementsAre(TrashedItem{FileURL("/realm/b"), FileURL("/trash/b"), 30},
                            TrashedItem{FileURL("/realm/a"), FileURL("/trash/a"), 12}));
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_EQ(operation.totalBytes(), 42);
    EXPECT_TRUE(disk.has("/trash/a"));
    EXPECT_FALSE(disk.has("/realm/a"));
}

TEST(TrashService, aBatchIsPreparedInPartsSoThatAKilledProcessLeavesFewInfoFilesWithoutItems)
{
    FakeDisk disk;
    constexpr std::size_t count = 100;
    std::vector<TrashRequest> requests;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string path = "/realm/" + std::to_string(i);
        disk.add(path);
        requests.push_back(request(disk, path));
    }
    std::size_t prepared = 0;
    std::size_t moved = 0;
    std::size_t mostWaiting = 0;
    TrashCalls calls = disk.trashCalls();
    calls.prepare = [&](const std::vector<FileURL>& urls) {
        prepared += urls.size();
        mostWaiting = std::max(mostWaiting, prepared - moved);
    };
    calls.trashItem = [&, live = calls.trashItem](const FileURL& url) {
        EXPECT_LT(moved++, prepared) << "each is prepared before it moves";
        return live(url);
    };
    EXPECT_EQ(TrashService(calls).moveToTrash(requests, root).moved.size(), count);
    EXPECT_EQ(prepared, count);
    EXPECT_LE(mostWaiting, 64U);
}

TEST(TrashService, theSameItemTwiceGivesOneTrashedItemAndNoFailure)
{
    FakeDisk disk;
    disk.add("/realm/a");
    const TrashRequest twice = request(disk, "/realm/a", 5);
    TrashRequest asDirectory = twice;
    asDirectory.url = FileURL::directory("/realm/a");
    const TrashOperation operation =
        TrashService(disk.trashCalls()).moveToTrash({twice, twice, asDirectory}, root);
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_EQ(operation.totalBytes(), 5);
}

TEST(TrashService, aPathWithDotsAndItsStandardisedFormAreTheSameItem)
{
    FakeDisk disk;
    disk.add("/Users/a/Desktop/x");
    const FileURL desktop = FileURL::directory("/Users/a");
    const TrashOperation operation =
        TrashService(disk.trashCalls())
            .moveToTrash({request(disk, "/Users/a/Desktop/../Desktop/x"),
                          request(disk, "/Users/a/Desktop/x")},
                         desktop);
    ASSERT_EQ(operation.moved.size(), 1U);
    EXPECT_EQ(operation.moved[0].originalURL, FileURL("/Users/a/Desktop/x"));
    EXPECT_THAT(operation.failures, IsEmpty());
}

TEST(TrashService, aFailureCarriesTheStandardisedForm)
{
    FakeDisk disk;
    const TrashOperation operation =
        TrashService(disk.trashCalls())
            .moveToTrash({{FileURL("/realm/x/../../elsewhere/./y"), 0, {}}}, root);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/elsewhere/y", Reason::outsideAuthorizedRoot)));
}

TEST(TrashService, aSiblingOfTheRootIsOutside)
{
    FakeDisk disk;
    disk.add("/realm2");
    const TrashOperation operation =
        TrashService(disk.trashCalls()).moveToTrash({request(disk, "/realm2")}, root);
    EXPECT_THAT(operation.failures, ElementsAre(failure("/realm2", Reason::outsideAuthorizedRoot)));
    EXPECT_TRUE(disk.has("/realm2"));
}

TEST(TrashService, withRootSlashEveryPathPassesContainmentAndSlashItselfIsProtected)
{
    FakeDisk disk;
    disk.addFolder("/");
    disk.add("/any/where");
    const TrashOperation operation =
        TrashService(disk.trashCalls())
            .moveToTrash({request(disk, "/"), request(disk, "/any/where")},
                         FileURL::directory("/"));
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_THAT(operation.failures, ElementsAre(failure("/", Reason::protectedLocation)));
}

TEST(TrashService, theHomeFolderIsProtectedAndAFolderInsideItIsNot)
{
    const test::EnvironmentVariable home("HOME", "/home/someone");
    FakeDisk disk;
    disk.addFolder("/home/someone");
    disk.addFolder("/home/someone/old");
    const TrashOperation operation =
        TrashService(disk.trashCalls())
            .moveToTrash({request(disk, "/home/someone"), request(disk, "/home/someone/old")},
                         FileURL::directory("/home"));
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/home/someone", Reason::protectedLocation)));
    ASSERT_EQ(operation.moved.size(), 1U);
    EXPECT_EQ(operation.moved[0].originalURL, FileURL("/home/someone/old"));
}

TEST(TrashService, aVolumeRootIsProtectedAlsoWhenItIsTheAuthorisedRoot)
{
    FakeDisk disk;
    disk.addFolder("/Volumes/Disk");
    disk.add("/Volumes/Disk/a");
    TrashCalls calls = disk.trashCalls();
    calls.volumeRoot = defaultVolumeRoot;
    const TrashOperation operation = TrashService(calls).moveToTrash(
        {request(disk, "/Volumes/Disk"), request(disk, "/Volumes/Disk/a")},
        FileURL::directory("/Volumes/Disk"));
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/Volumes/Disk", Reason::protectedLocation)));
    EXPECT_EQ(operation.moved.size(), 1U);
}

TEST(TrashService, theAuthorisedRootItselfIsRefused)
{
    FakeDisk disk;
    disk.addFolder("/realm");
    const TrashOperation operation =
        TrashService(disk.trashCalls()).moveToTrash({request(disk, "/realm")}, root);
    EXPECT_THAT(operation.failures, ElementsAre(failure("/realm", Reason::authorizedRoot)));
    EXPECT_TRUE(disk.has("/realm"));
}

TEST(TrashService, anItemThatIsGoneIsMissingAtItsReviewedPath)
{
    FakeDisk disk;
    const TrashOperation operation =
        TrashService(disk.trashCalls()).moveToTrash({{FileURL("/realm/gone"), 0, {}}}, root);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/gone", Reason::missingAtReviewedPath)));
}

TEST(TrashService, aFileReplacedByAFolderOfTheSameNameHasChanged)
{
    FakeDisk disk;
    disk.add("/realm/a");
    TrashRequest reviewed = request(disk, "/realm/a");
    // The same number, so that the kind alone differs.
    reviewed.expectedIdentity.kind = FileIdentity::Kind::directory;
    const TrashOperation operation = TrashService(disk.trashCalls()).moveToTrash({reviewed}, root);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/a", Reason::itemChangedSinceReview)));
}

TEST(TrashService, anotherInodeOrDeviceIsAChangedItem)
{
    FakeDisk disk;
    disk.add("/realm/a");
    disk.add("/realm/b");
    TrashRequest inode = request(disk, "/realm/a");
    ++inode.expectedIdentity.inode;
    TrashRequest device = request(disk, "/realm/b");
    ++device.expectedIdentity.deviceID;
    const TrashOperation operation =
        TrashService(disk.trashCalls()).moveToTrash({inode, device}, root);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/a", Reason::itemChangedSinceReview),
                            failure("/realm/b", Reason::itemChangedSinceReview)));
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(TrashService, theFirstOccurrenceOfADuplicateDecides)
{
    FakeDisk disk;
    disk.add("/realm/a");
    TrashRequest stale = request(disk, "/realm/a");
    ++stale.expectedIdentity.inode;
    const TrashOperation operation =
        TrashService(disk.trashCalls()).moveToTrash({stale, request(disk, "/realm/a")}, root);
    EXPECT_THAT(operation.moved, IsEmpty());
    EXPECT_EQ(operation.failures.size(), 1U);
}

TEST(TrashService, aRefusedItemDoesNotStopTheBatch)
{
    FakeDisk disk;
    disk.add("/realm/a");
    disk.add("/realm/b");
    disk.refusals["/realm/a"] = "the disk said no";
    const TrashOperation operation =
        TrashService(disk.trashCalls())
            .moveToTrash({request(disk, "/realm/a"), request(disk, "/realm/b")}, root);
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/realm/a", Reason::couldNotTrash, "the disk said no")));
}

TEST(TrashService, anErrorWithAnEmptyDescriptionBecomesUnknownFilesystemError)
{
    FakeDisk disk;
    disk.add("/realm/a");
    disk.add("/trash/b");
    disk.refusals["/realm/a"] = "";
    disk.refusals["/trash/b"] = "";
    const TrashService service(disk.trashCalls());
    const TrashOperation moved = service.moveToTrash({request(disk, "/realm/a")}, root);
    ASSERT_EQ(moved.failures.size(), 1U);
    EXPECT_EQ(moved.failures[0].message, "Unknown filesystem error");
    const RestoreOperation restored =
        service.restore({{FileURL("/realm/b"), FileURL("/trash/b"), 0}});
    EXPECT_THAT(restored.failures, ElementsAre(failure("/realm/b", Reason::couldNotRestore,
                                                       "Unknown filesystem error")));
}

TEST(TrashService, putsItemsBack)
{
    FakeDisk disk;
    disk.add("/realm/a");
    const TrashService service(disk.trashCalls());
    const TrashOperation moved = service.moveToTrash({request(disk, "/realm/a", 7)}, root);
    const RestoreOperation restored = service.restore(moved.moved);
    EXPECT_EQ(restored.restored, moved.moved);
    EXPECT_THAT(restored.failures, IsEmpty());
    EXPECT_TRUE(disk.has("/realm/a"));
}

TEST(TrashService, anOccupiedOriginalPlaceIsReportedWithThatPlace)
{
    FakeDisk disk;
    disk.add("/realm/a");
    disk.add("/trash/a");
    const RestoreOperation operation =
        TrashService(disk.trashCalls()).restore({{FileURL("/realm/a"), FileURL("/trash/a"), 0}});
    EXPECT_THAT(operation.failures, ElementsAre(failure("/realm/a", Reason::destinationExists)));
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(TrashService, anItemGoneFromTheTrashIsReportedWithItsPlaceThere)
{
    FakeDisk disk;
    const RestoreOperation operation =
        TrashService(disk.trashCalls()).restore({{FileURL("/realm/a"), FileURL("/trash/a"), 0}});
    EXPECT_THAT(operation.failures, ElementsAre(failure("/trash/a", Reason::missingFromTrash)));
}

TEST(TrashService, threeCallsAreEnoughForATestThatDoesNotCareForTheRest)
{
    TrashCalls calls;
    calls.trashItem = [](const FileURL&) { return FileURL("/trash/x"); };
    calls.fileExists = [](const FileURL&) { return false; };
    calls.moveItem = [](const FileURL&, const FileURL&) {};
    const TrashOperation operation = TrashService(calls).moveToTrash(
        {{FileURL("/no/such/item"), 0, {}}}, FileURL::directory("/no"));
    EXPECT_THAT(operation.failures,
                ElementsAre(failure("/no/such/item", Reason::missingAtReviewedPath)));
}

TEST(TrashServiceDeathTest, aSumBeyond64BitsStopsTheProgram)
{
    TrashOperation operation;
    operation.moved = {{FileURL("/a"), FileURL("/b"), std::numeric_limits<Bytes>::max()},
                       {FileURL("/c"), FileURL("/d"), 1}};
    EXPECT_DEATH((void)operation.totalBytes(), "");
}

}  // namespace

}  // namespace gruk
