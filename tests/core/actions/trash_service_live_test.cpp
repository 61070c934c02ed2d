#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/trash_service.h"
#include "tests/support/moves_house.h"
#include "tests/support/private_mounts.h"
#include "tests/support/same_number.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using Reason = TrashFailure::Reason;
using test::MovesHouse;
using testing::IsEmpty;

class TrashServiceLive : public testing::Test {
protected:
    [[nodiscard]] static TrashRequest request(const std::string& path)
    {
        const FileURL url(path);
        return {url, 1, TrashService::currentIdentity(url).value()};
    }

    /// The reason for which the one item was refused.
    [[nodiscard]] Reason refusal(const TrashRequest& request) const
    {
        const TrashOperation operation = service.moveToTrash({request}, house.realm());
        EXPECT_THAT(operation.moved, IsEmpty());
        EXPECT_EQ(operation.failures.size(), 1U);
        return operation.failures.empty() ? Reason::couldNotRestore : operation.failures[0].reason;
    }

    [[nodiscard]] std::string file(const std::string& name, const std::string& content = "x") const
    {
        return house.home().fileWith("realm/" + name, content);
    }

    MovesHouse house;
    TrashService service;
};

TEST_F(TrashServiceLive, movesAFileAndPutsItBack)
{
    const std::string path = file("a b%.txt", "content");
    const auto before = house.census();
    const TrashOperation operation = service.moveToTrash({request(path)}, house.realm());
    ASSERT_EQ(operation.moved.size(), 1U);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(operation.moved[0].trashURL.path(),
              house.home().path(".local/share/Trash/files/a b%.txt"));
    EXPECT_EQ(house.census(), before);
    const RestoreOperation restored = service.restore(operation.moved, house.realm());
    EXPECT_EQ(restored.restored, operation.moved);
    EXPECT_EQ(house.home().read("realm/a b%.txt"), "content");
    EXPECT_TRUE(fs::is_empty(house.home().path(".local/share/Trash/info")));
}

TEST_F(TrashServiceLive, whatLiesInAFolderThatIsNotTheGrantedOneStays)
{
    const std::string path = file("a", "one");
    const std::string other = file("b", "two");
    const TrashOperation operation =
        service.moveToTrash({request(path), request(other)}, house.realm(), [] { return false; });
    EXPECT_THAT(operation.moved, IsEmpty());
    EXPECT_EQ(operation.failures.size(), 2U);
    EXPECT_TRUE(fs::exists(path));
    EXPECT_TRUE(fs::exists(other));
    EXPECT_FALSE(fs::exists(house.home().path(".local/share/Trash/info/a.trashinfo")));
}

TEST_F(TrashServiceLive, aFileThatOnlyGrewIsMoved)
{
    const std::string path = file("a");
    const TrashRequest reviewed = request(path);
    std::ofstream(path, std::ios::app) << "more";
    EXPECT_EQ(service.moveToTrash({reviewed}, house.realm()).moved.size(), 1U);
}

TEST_F(TrashServiceLive, aFileReplacedByAFolderOrAnotherFileHasChanged)
{
    const std::string path = file("a");
    const TrashRequest reviewed = request(path);
    fs::rename(path, house.home().path("realm/kept"));
    fs::create_directory(path);
    EXPECT_EQ(refusal(reviewed), Reason::itemChangedSinceReview);
    fs::remove(path);
    (void)file("a");
    EXPECT_EQ(refusal(reviewed), Reason::itemChangedSinceReview);
    fs::remove(path);
    EXPECT_EQ(refusal(reviewed), Reason::missingAtReviewedPath);
}

TEST_F(TrashServiceLive, aSymbolicLinkIsJudgedAsALinkAndMovingItMovesTheLink)
{
    const std::string target = file("target");
    const std::string link = house.home().symbolicLink("realm/link", "target");
    const TrashRequest reviewed = request(link);
    EXPECT_EQ(reviewed.expectedIdentity.kind, FileIdentity::Kind::symbolicLink);
    EXPECT_NE(reviewed.expectedIdentity.inode, request(target).expectedIdentity.inode);
    const TrashOperation operation = service.moveToTrash({reviewed}, house.realm());
    ASSERT_EQ(operation.moved.size(), 1U);
    EXPECT_TRUE(fs::exists(target));
    EXPECT_TRUE(fs::is_symlink(operation.moved[0].trashURL.path()));
}

TEST_F(TrashServiceLive, aLinkThatLeadsNowhereFromInsideTheTrashIsPutBack)
{
    (void)file("target");
    const std::string link = house.home().symbolicLink("realm/link", "target");
    const TrashOperation operation = service.moveToTrash({request(link)}, house.realm());
    ASSERT_EQ(operation.moved.size(), 1U);
    EXPECT_FALSE(fs::exists(operation.moved[0].trashURL.path())) << "the link leads nowhere there";
    EXPECT_EQ(service.restore(operation.moved, house.realm()).restored, operation.moved);
    EXPECT_EQ(fs::read_symlink(link), "target");
}

TEST_F(TrashServiceLive, aDanglingLinkAtTheOriginalPlaceIsNoExistingDestinationButTheMoveRefuses)
{
    const std::string path = file("a");
    const TrashOperation operation = service.moveToTrash({request(path)}, house.realm());
    (void)house.home().symbolicLink("realm/a", "nowhere");
    const RestoreOperation restored = service.restore(operation.moved, house.realm());
    ASSERT_EQ(restored.failures.size(), 1U);
    EXPECT_EQ(restored.failures[0].reason, Reason::couldNotRestore);
    EXPECT_THAT(restored.failures[0].message, testing::HasSubstr("File exists"));
    EXPECT_EQ(fs::read_symlink(path), "nowhere");
}

TEST_F(TrashServiceLive, aMissingParentIsNotMadeAgain)
{
    const std::string path = file("folder/a");
    const TrashOperation operation = service.moveToTrash({request(path)}, house.realm());
    fs::remove(house.home().path("realm/folder"));
    const RestoreOperation restored = service.restore(operation.moved, house.realm());
    ASSERT_EQ(restored.failures.size(), 1U);
    EXPECT_EQ(restored.failures[0].reason, Reason::couldNotRestore);
    EXPECT_FALSE(fs::exists(house.home().path("realm/folder")));
    EXPECT_TRUE(fs::exists(operation.moved[0].trashURL.path()));
}

TEST_F(TrashServiceLive, restoringTwiceReportsAnExistingDestination)
{
    const TrashOperation operation = service.moveToTrash({request(file("a"))}, house.realm());
    (void)service.restore(operation.moved, house.realm());
    const RestoreOperation again = service.restore(operation.moved, house.realm());
    ASSERT_EQ(again.failures.size(), 1U);
    EXPECT_EQ(again.failures[0].reason, Reason::destinationExists);
}

TEST_F(TrashServiceLive, aWayThroughALinkOutOfTheRealmIsNotTaken)
{
    (void)house.home().fileWith("outside/a", "not ours");
    (void)house.home().symbolicLink("realm/way", house.outside().path());
    const FileURL url = house.realm().appending("way/a");
    const TrashRequest through{url, 1, TrashService::currentIdentity(url).value()};
    EXPECT_EQ(refusal(through), Reason::couldNotTrash);
    EXPECT_EQ(house.home().read("outside/a"), "not ours");
}

TEST_F(TrashServiceLive, aRealmThatIsReachedThroughALinkIsUsable)
{
    (void)file("a");
    (void)house.home().symbolicLink("alias", "realm");
    const FileURL alias = FileURL::directory(house.home().path("alias"));
    const TrashOperation operation =
        service.moveToTrash({request(alias.appending("a").path())}, alias);
    ASSERT_EQ(operation.moved.size(), 1U) << operation.failures.at(0).message;
    EXPECT_EQ(service.restore(operation.moved, alias).restored, operation.moved);
    EXPECT_TRUE(fs::exists(house.home().path("realm/a")));
}

TEST_F(TrashServiceLive, theTopOfAMountedVolumeIsProtectedWhereverItIsMounted)
{
    const std::string disk = house.home().folder("realm/disk");
    const auto run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(disk);
        if (refusal(request(disk)) != Reason::protectedLocation) {
            return "the top was not protected";
        }
        std::ofstream(disk + "/a") << "x";
        const TrashOperation operation = service.moveToTrash({request(disk + "/a")}, house.realm());
        return operation.moved.size() == 1 ? "" : "what lies below could not be moved";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(TrashServiceLive, aFolderWithAVolumeMountedInsideIsRefusedAndTheVolumeStays)
{
    const std::string disk = house.home().folder("realm/folder/disk");
    const auto run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(disk);
        std::ofstream(disk + "/precious") << "x";
        const TrashOperation operation =
            service.moveToTrash({request(house.home().path("realm/folder"))}, house.realm());
        if (!operation.moved.empty()) {
            return "the folder took the volume along";
        }
        return fs::exists(disk + "/precious")
                       && operation.failures.at(0).message.ends_with("a volume is mounted in it")
                   ? ""
                   : operation.failures.at(0).message;
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(TrashServiceLive, anotherItemThatTookThePlaceInTheTrashIsNotPutBackAsOurs)
{
    const TrashOperation ours =
        service.moveToTrash({request(file("a.txt", "ours"))}, house.realm());
    // The Trash is emptied, and another program puts an item of the same name there.
    const std::string trash = house.home().path(".local/share/Trash");
    fs::remove(trash + "/files/a.txt");
    fs::remove(trash + "/info/a.txt.trashinfo");
    std::ofstream(trash + "/files/a.txt") << "theirs";
    std::ofstream(trash + "/info/a.txt.trashinfo")
        << "[Trash Info]\nPath=/elsewhere/a.txt\nDeletionDate=2026-11-21T00:00:00\n";
    const RestoreOperation restored = service.restore(ours.moved, house.realm());
    ASSERT_EQ(restored.failures.size(), 1U);
    EXPECT_EQ(restored.failures[0].reason, Reason::couldNotRestore);
    EXPECT_FALSE(fs::exists(house.home().path("realm/a.txt")));
    EXPECT_TRUE(fs::exists(trash + "/files/a.txt"));
    EXPECT_TRUE(fs::exists(trash + "/info/a.txt.trashinfo"));
}

TEST_F(TrashServiceLive, theHomeFolderIsProtectedByWhateverPathItIsReached)
{
    (void)house.home().symbolicLink("outside/alias", house.home().path());
    const FileURL alias = house.outside().appending("alias", FileURL::Names::directory);
    const FileURL home = FileURL::directory(house.home().path());
    EXPECT_TRUE(isProtectedLocation(alias, liveFolderVolumeRoot(alias)));
    EXPECT_FALSE(isProtectedLocation(alias, liveVolumeRoot(alias))) << "the link itself is no home";
    EXPECT_TRUE(isProtectedLocation(home, liveVolumeRoot(home)));
    const FileURL inside = house.realm();
    EXPECT_FALSE(isProtectedLocation(inside, liveFolderVolumeRoot(inside)));
}

TEST_F(TrashServiceLive, theHomeFolderAndTheRootAreProtectedWhereTheRootIsMountedInItself)
{
    const std::string again = house.home().folder("outside/again");
    const auto run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountAgain("/", again);
        // As a system says it that does not number its mounts and shows no table of them.
        MoveCalls calls;
        calls.facts = [live = calls.facts](int folder, const char* name, LastLink link,
                                           PlaceFacts& facts) {
            const int result = live(folder, name, link, facts);
            facts.mount = 0;
            return result;
        };
        std::string complaint;
        for (const MoveCalls& each : {MoveCalls::live(), calls}) {
            const FileURL root = FileURL::directory(again);
            const FileURL home = FileURL::directory(again + house.home().path());
            const FileURL inside = FileURL::directory(again + house.realm().path());
            if (!isProtectedLocation(root, liveVolumeRoot(root, each))
                || !isProtectedLocation(root, liveFolderVolumeRoot(root, each))) {
                complaint += "the root is not protected. ";
            }
            if (!isProtectedLocation(home, liveVolumeRoot(home, each))
                || !isProtectedLocation(home, liveFolderVolumeRoot(home, each))) {
                complaint += "the home is not protected. ";
            }
            if (isProtectedLocation(inside, liveVolumeRoot(inside, each))) {
                complaint += "a folder in the home is protected. ";
            }
        }
        test::detach(again);
        return complaint;
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "nothing may be mounted here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(TrashServiceLive, everythingIsProtectedWhileTheTableOfMountsCannotBeRead)
{
    const std::string path = file("a");
    MoveCalls calls;
    calls.mounts = [](MoveCalls::MountVisitor) { return -EIO; };
    const TrashOperation operation =
        TrashService(calls).moveToTrash({request(path)}, house.realm());
    ASSERT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(operation.failures[0].reason, Reason::protectedLocation);
    EXPECT_TRUE(fs::exists(path));
}

TEST_F(TrashServiceLive, anItemMadeAnewUnderTheNumberOfTheReviewedOneHasChanged)
{
    const std::string path = file("a", "reviewed");
    const TrashRequest reviewed = request(path);
    if (!test::makeAnewUnderTheSameNumber(path, "saved anew")) {
        GTEST_SKIP() << "this file system gives no number twice";
    }
    EXPECT_EQ(refusal(reviewed), Reason::itemChangedSinceReview);
    EXPECT_EQ(house.home().read("realm/a"), "saved anew");
}

TEST_F(TrashServiceLive, aStrayItemIsToldWithItsPlace)
{
    const std::string path = file("a", "reviewed");
    const std::string other = file("b", "another");
    const TrashRequest reviewed = request(path);
    MoveCalls calls;
    calls.moveWithoutReplacing = [&, isFirst = true, live = calls.moveWithoutReplacing](
                                     int fromDirectory, const char* from, int toDirectory,
                                     const char* to) mutable {
        const bool isSwapping = std::exchange(isFirst, false);
        if (isSwapping) {
            fs::rename(other, path);
        }
        const int result = live(fromDirectory, from, toDirectory, to);
        if (isSwapping) {
            (void)file("a", "once more");
        }
        return result;
    };
    const TrashOperation operation = TrashService(calls).moveToTrash({reviewed}, house.realm());
    ASSERT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(operation.failures[0].reason, Reason::couldNotTrash);
    ASSERT_TRUE(operation.failures[0].strayedTo);
    EXPECT_EQ(operation.failures[0].strayedTo->path(),
              house.home().path(".local/share/Trash/files/a"));
    EXPECT_EQ(house.home().read(".local/share/Trash/files/a"), "another");
    EXPECT_EQ(house.home().read("realm/a"), "once more");
}

TEST_F(TrashServiceLive, anItemSwappedInTheMomentOfTheMoveIsPutBack)
{
    const std::string path = file("a", "reviewed");
    const std::string other = file("b", "another");
    const TrashRequest reviewed = request(path);
    // The system's call is made on another item than the one that was looked at a moment ago.
    MoveCalls calls = MoveCalls::live();
    bool isSwapped = false;
    calls.moveWithoutReplacing = [&](int fromDirectory, const char* from, int toDirectory,
                                     const char* to) {
        if (!isSwapped) {
            isSwapped = true;
            fs::rename(path, house.home().path("realm/away"));
            fs::rename(other, path);
        }
        return MoveCalls::live().moveWithoutReplacing(fromDirectory, from, toDirectory, to);
    };
    const TrashOperation operation = TrashService(calls).moveToTrash({reviewed}, house.realm());
    EXPECT_TRUE(isSwapped);
    EXPECT_THAT(operation.moved, IsEmpty());
    ASSERT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(operation.failures[0].reason, Reason::couldNotTrash);
    EXPECT_EQ(house.home().read("realm/a"), "another");
    EXPECT_EQ(house.home().read("realm/away"), "reviewed");
    EXPECT_TRUE(fs::is_empty(house.home().path(".local/share/Trash/files")));
    EXPECT_TRUE(fs::is_empty(house.home().path(".local/share/Trash/info")));
}

}  // namespace

}  // namespace gruk
