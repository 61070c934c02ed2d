#include "core/actions/own_items.h"

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "core/actions/stash_service.h"
#include "core/actions/trash_service.h"
#include "tests/support/fake_disk.h"
#include "tests/support/moves_house.h"
#include "tests/support/private_mounts.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;

using test::FakeDisk;
using test::MovesHouse;
using testing::ElementsAre;
using testing::IsEmpty;

const OwnFolders own({FileURL::directory("/home/a/.local/share/Gruk"),
                      FileURL::directory("/home/a/.config/Gruk")});

TEST(OwnItems, areTheFoldersWhatIsInThemAndForAMoveWhatHoldsThem)
{
    const OwnItems items(own);
    for (const char* path : {"/home/a/.local/share/Gruk", "/home/a/.config/Gruk/settings.json",
                             "/home/a/x/../.local/share/Gruk/snapshots.json"}) {
        EXPECT_TRUE(items.contain(FileURL(path))) << path;
        EXPECT_TRUE(items.moveWith(FileURL(path))) << path;
    }
    for (const char* path : {"/home/a/.local/share", "/home/a/.local", "/home/a", "/"}) {
        EXPECT_FALSE(items.contain(FileURL(path))) << path;
        EXPECT_TRUE(items.moveWith(FileURL(path))) << path;
    }
    for (const char* path :
         {"/home/a/.local/share/Gruk2", "/home/a/.local/share/Gru", "/home/a/Desktop", "/home/b"}) {
        EXPECT_FALSE(items.contain(FileURL(path))) << path;
        EXPECT_FALSE(items.moveWith(FileURL(path))) << path;
    }
    EXPECT_FALSE(OwnItems().moveWith(FileURL("/")));
}

TrashRequest requestFor(const FakeDisk& disk, const std::string& path)
{
    return {FileURL(path), 1, disk.identity(path)};
}

TEST(OwnItems, areRefusedByTheTrashAsAProtectedLocation)
{
    FakeDisk disk;
    const std::string memory = "/home/a/.local/share/Gruk/snapshots.json";
    disk.addFolder("/home/a/.local");
    disk.add(memory);
    disk.add("/home/a/run.log");
    TrashCalls calls = disk.trashCalls();
    calls.own = OwnItems(own);
    const TrashOperation operation = TrashService(calls).moveToTrash(
        {requestFor(disk, memory), requestFor(disk, "/home/a/.local"),
         requestFor(disk, "/home/a/run.log")},
        FileURL::directory("/home/a"));
    ASSERT_EQ(operation.moved.size(), 1U);
    EXPECT_EQ(operation.moved[0].originalURL, FileURL("/home/a/run.log"));
    EXPECT_THAT(
        operation.failures,
        ElementsAre(
            TrashFailure{FileURL(memory), TrashFailure::Reason::protectedLocation, {}},
            TrashFailure{FileURL("/home/a/.local"), TrashFailure::Reason::protectedLocation, {}}));
    EXPECT_TRUE(disk.has(memory));
}

TEST(OwnItems, thatAreInTheTrashAlreadyGoBackAllTheSame)
{
    FakeDisk disk;
    disk.addFolder("/trash/Gruk");
    TrashCalls calls = disk.trashCalls();
    calls.own = OwnItems(own);
    const TrashedItem item{FileURL("/home/a/.local/share/Gruk"), FileURL("/trash/Gruk"), 1};
    EXPECT_THAT(TrashService(calls).restore({item}).restored, ElementsAre(item));
    EXPECT_TRUE(disk.has("/home/a/.local/share/Gruk"));

    disk.add("/home/a/Hoard/settings.json");
    StashCalls back = disk.stashCalls();
    back.own = OwnItems(own);
    const StashedItem stashed{FileURL("/home/a/.config/Gruk/settings.json"),
                              FileURL("/home/a/Hoard/settings.json")};
    EXPECT_THAT(StashService(back).restore({stashed}).restored, ElementsAre(stashed));
}

TEST(OwnItems, areLeftByAStashThatTellsSoAndDoesNotCountThem)
{
    FakeDisk disk;
    disk.addFolder("/home/a/.local/share");
    disk.addFolder("/home/a/.local/share/Gruk");
    disk.add("/home/a/.local/share/Gruk/snapshots.json");
    disk.add("/home/a/.local/share/b");
    StashCalls calls = disk.stashCalls();
    calls.own = OwnItems(own);
    const StashService service(calls);
    const FileURL folder = FileURL::directory("/home/a/.local/share");
    EXPECT_EQ(service.stashableCount(folder), 1U);
    const StashOperation operation = service.stashDesktop(folder, FileURL("/home/a"));
    EXPECT_EQ(operation.moved.size(), 1U);
    EXPECT_THAT(operation.failures,
                ElementsAre(StashFailure{FileURL::directory("/home/a/.local/share/Gruk"),
                                         StashFailure::Reason::protectedLocation,
                                         {}}));
    EXPECT_TRUE(disk.has("/home/a/.local/share/Gruk/snapshots.json"));

    // With nothing else there, not even a Hoard is made.
    disk.record.clear();
    const StashOperation second = service.stashDesktop(folder, FileURL("/home/a"));
    EXPECT_FALSE(second.hoardFolder);
    EXPECT_EQ(second.failures.size(), 1U);
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(OwnItems, areNoFolderToStashOrOrganise)
{
    FakeDisk disk;
    const FileURL place = FileURL::directory("/home/a/.local/share/Gruk");
    disk.addFile(place.path() + "/a.png", FileKind::image);
    StashCalls stash = disk.stashCalls();
    stash.own = OwnItems(own);
    const StashOperation stashed = StashService(stash).stashDesktop(place, FileURL("/home/a"));
    EXPECT_THAT(stashed.failures,
                ElementsAre(StashFailure{place, StashFailure::Reason::protectedLocation, {}}));

    OrganiseCalls organise = disk.organiseCalls();
    const OrganisePlan plan = OrganiseService(organise).planOrganise(place, place, {});
    ASSERT_EQ(plan.moves.size(), 1U);
    organise.own = OwnItems(own);
    const OrganiseService service(organise);
    EXPECT_THAT(service.planOrganise(place, place, {}).moves, IsEmpty());
    EXPECT_THAT(service.applyPlan(plan, place).failures,
                ElementsAre(StashFailure{place, StashFailure::Reason::protectedLocation, {}}));
    EXPECT_THAT(disk.record, IsEmpty());
}

TEST(OwnItems, areNeitherFiledNorFiledInto)
{
    FakeDisk disk;
    const FileURL realm = FileURL::directory("/home/a/.local/share");
    disk.addFile("/home/a/.local/share/a.png", FileKind::image);
    // A link on the way to a folder of the program's own reads as a file.
    disk.addFile("/home/a/.local/share/Gruk", FileKind::other);
    OrganiseCalls calls = disk.organiseCalls();
    calls.own = OwnItems(own);
    const OrganiseService service(calls);
    const OrganisePlan plan = service.planOrganise(realm, realm, {});
    ASSERT_EQ(plan.moves.size(), 1U);
    EXPECT_EQ(plan.moves[0].kind, FileKind::image);

    OrganisePlan into = plan;
    into.moves[0].destinationFolderName = "Gruk";
    OrganisePlan away = plan;
    away.moves[0].files = {FileURL("/home/a/.local/share/Gruk")};
    for (const OrganisePlan& wrong : {into, away}) {
        const StashOperation operation = service.applyPlan(wrong, realm);
        EXPECT_THAT(operation.moved, IsEmpty());
        ASSERT_EQ(operation.failures.size(), 1U);
        EXPECT_EQ(operation.failures[0].reason, StashFailure::Reason::protectedLocation);
    }
    EXPECT_TRUE(disk.has("/home/a/.local/share/Gruk"));
    EXPECT_TRUE(disk.has("/home/a/.local/share/a.png"));
}

/// A realm on the disk with the program's folder in it.
class OwnItemsLive : public testing::Test {
protected:
    [[nodiscard]] FileURL url(const std::string& relative) const
    {
        return FileURL(house.home().path(relative));
    }

    [[nodiscard]] TrashFailure::Reason refusalOf(const FileURL& item, const FileURL& root,
                                                 const MoveCalls& calls = {}) const
    {
        const TrashRequest request{item, 1, TrashService::currentIdentity(item).value()};
        const TrashOperation operation = TrashService(calls, folders).moveToTrash({request}, root);
        EXPECT_THAT(operation.moved, IsEmpty()) << item.path();
        return operation.failures.empty() ? TrashFailure::Reason::couldNotRestore
                                          : operation.failures[0].reason;
    }

    MovesHouse house;
    std::string memory = house.home().fileWith("realm/data/Gruk/snapshots.json", "memory");
    OwnFolders folders =
        OwnFolders::resolved({FileURL::directory(house.home().path("realm/data/Gruk"))});
};

TEST_F(OwnItemsLive, areKnownByWhateverPathTheyAreReached)
{
    (void)house.home().symbolicLink("alias", "realm");
    (void)house.home().symbolicLink("inner", "realm/data/Gruk");
    const auto protectedLocation = TrashFailure::Reason::protectedLocation;
    EXPECT_EQ(refusalOf(url("realm/data"), house.realm()), protectedLocation);
    EXPECT_EQ(refusalOf(FileURL(memory), house.realm()), protectedLocation);
    EXPECT_EQ(refusalOf(url("alias/data"), url("alias")), protectedLocation);
    EXPECT_EQ(refusalOf(url("alias/data/Gruk"), url("alias")), protectedLocation);
    EXPECT_EQ(refusalOf(url("alias/data/Gruk/snapshots.json"), url("alias")), protectedLocation);
    EXPECT_EQ(refusalOf(url("inner/snapshots.json"), url("inner")), protectedLocation);
    EXPECT_EQ(house.home().read("realm/data/Gruk/snapshots.json"), "memory");
}

TEST_F(OwnItemsLive, areKnownWhereTheDiskIsMountedASecondTime)
{
    const auto run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountAgain(house.realm().path(), house.home().folder("second"));
        const FileURL root = url("second");
        const bool isRefused =
            refusalOf(url("second/data/Gruk"), root) == TrashFailure::Reason::protectedLocation
            && refusalOf(url("second/data"), root) == TrashFailure::Reason::protectedLocation;
        test::unmount(house.home().path("second"));
        return isRefused ? "" : "it was not refused as protected";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(OwnItemsLive, doNotKeepALinkToThemOrAnythingBesideThemFromTheTrash)
{
    const std::string link = house.home().symbolicLink("realm/link", "data/Gruk");
    const std::string beside = house.home().fileWith("realm/data/other", "x");
    for (const std::string& path : {link, beside}) {
        const FileURL item(path);
        const TrashRequest request{item, 1, TrashService::currentIdentity(item).value()};
        EXPECT_EQ(TrashService(MoveCalls::live(), folders)
                      .moveToTrash({request}, house.realm())
                      .moved.size(),
                  1U)
            << path;
    }
    EXPECT_EQ(house.home().read("realm/data/Gruk/snapshots.json"), "memory");
}

TEST_F(OwnItemsLive, areTakenForWhatCannotBeTold)
{
    const std::string beside = house.home().fileWith("realm/data/other", "x");
    MoveCalls calls;
    calls.facts = [live = calls.facts](int folder, const char* name, LastLink link,
                                       PlaceFacts& facts) {
        const bool isAsked = std::string_view(name).ends_with("/data/Gruk/.");
        return isAsked ? -EIO : live(folder, name, link, facts);
    };
    EXPECT_EQ(refusalOf(FileURL(beside), house.realm(), calls),
              TrashFailure::Reason::protectedLocation);
}

}  // namespace

}  // namespace gruk
