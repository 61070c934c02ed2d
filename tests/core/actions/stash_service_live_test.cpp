#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "core/actions/stash_journal.h"
#include "core/actions/stash_service.h"
#include "platform/files/known_folders.h"
#include "tests/support/moves_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using Reason = StashFailure::Reason;
using test::MovesHouse;
using testing::IsEmpty;

class StashServiceLive : public testing::Test {
protected:
    [[nodiscard]] StashOperation stash() const
    {
        return service.stashDesktop(house.realm(), house.realm());
    }

    MovesHouse house;
    StashService service;
};

TEST_F(StashServiceLive, aHoardHoldsEverythingVisibleAndGivesItBack)
{
    house.home().fileWith("realm/a.txt", "one");
    house.home().fileWith("realm/folder/deep.txt", "two");
    house.home().fileWith("realm/\xFF\xFE bytes", "three");
    house.home().fileWith("realm/.hidden", "four");
    house.home().symbolicLink("realm/link", "nowhere");
    const auto before = house.census();

    EXPECT_EQ(service.stashableCount(house.realm()), 4U);
    const std::string name = service.proposedHoardName(house.realm());
    EXPECT_EQ(name, "realm Hoard \xE2\x80\x94 " + dayMonthYear(Date::now()));
    const StashOperation operation = stash();
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_EQ(operation.moved.size(), 4U);
    EXPECT_EQ(house.home().read("realm/" + name + "/folder/deep.txt"), "two");
    EXPECT_TRUE(fs::exists(house.home().path("realm/.hidden")));
    EXPECT_EQ(house.census(), before);

    const auto journal =
        decodedStashJournal(house.home().read("realm/" + name + "/.gruk-stash.json"));
    ASSERT_TRUE(journal);
    EXPECT_EQ(journal->items, operation.moved);
    EXPECT_EQ(journal->hoardFolder, operation.hoardFolder);

    EXPECT_EQ(service.restore(operation.moved, house.realm()).restored, operation.moved);
    EXPECT_EQ(house.census(), before);
    EXPECT_TRUE(fs::exists(house.home().path("realm/" + name + "/.gruk-stash.json")));
}

TEST_F(StashServiceLive, aFolderThatIsNotTheGrantedOneIsLeftAsItIs)
{
    house.home().fileWith("realm/a.txt", "one");
    house.home().fileWith("realm/b.txt", "two");
    const auto before = MovesHouse::censusWithPaths(house.realm().path());
    const auto isAnother = [] { return false; };
    const StashOperation refused = service.stashDesktop(house.realm(), house.realm(), isAnother);
    EXPECT_THAT(refused.moved, IsEmpty());
    EXPECT_EQ(refused.failures.size(), 1U);
    EXPECT_EQ(MovesHouse::censusWithPaths(house.realm().path()), before);

    const StashOperation operation = stash();
    const auto stashed = MovesHouse::censusWithPaths(house.realm().path());
    EXPECT_EQ(service.restore(operation.moved, house.realm(), isAnother).failures.size(), 2U);
    EXPECT_EQ(MovesHouse::censusWithPaths(house.realm().path()), stashed);
}

TEST_F(StashServiceLive, aSecondHoardOfTheDayIsNumberedAndTheFirstStays)
{
    house.home().fileWith("realm/a", "one");
    const StashOperation first = stash();
    house.home().fileWith("realm/b", "two");
    const StashOperation second = stash();
    EXPECT_EQ(second.hoardFolder->path(), first.hoardFolder->path() + " (2)");
    EXPECT_TRUE(fs::exists(first.hoardFolder->path() + "/a"));
    EXPECT_EQ(service.stashableCount(house.realm()), 0U);
}

TEST_F(StashServiceLive, aPipeByTheJournalsNameIsNotWaitedFor)
{
    house.home().folder("realm/folder");
    ASSERT_EQ(::mkfifo(house.home().path("realm/folder/.gruk-stash.json").c_str(), 0600), 0);
    EXPECT_EQ(stash().moved.size(), 1U);
}

TEST_F(StashServiceLive, aDesktopThatIsTheHomeFolderIsRefused)
{
    house.home().fileWith("a", "x");
    house.home().fileWith("config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/\"\n");
    const test::EnvironmentVariable config("XDG_CONFIG_HOME", house.home().path("config"));
    const FileURL desktop = desktopDirectory();
    ASSERT_EQ(desktop.path(), house.home().path());
    const StashOperation stashed = service.stashDesktop(desktop, desktop);
    ASSERT_EQ(stashed.failures.size(), 1U);
    EXPECT_EQ(stashed.failures[0].reason, Reason::protectedLocation);
    EXPECT_THAT(OrganiseService().planOrganise(desktop, desktop, {}).moves, IsEmpty());
    EXPECT_EQ(house.home().read("a"), "x");
}

class OrganiseServiceLive : public testing::Test {
protected:
    [[nodiscard]] OrganisePlan plan(const FolderOverrides& overrides = {}) const
    {
        return service.planOrganise(house.realm(), house.realm(), overrides);
    }

    MovesHouse house;
    OrganiseService service;
};

TEST_F(OrganiseServiceLive, findsKindsAndSizesOnTheDisk)
{
    house.home().fileWith("realm/a.png", "12345");
    house.home().fileWith("realm/noextension", "123");
    house.home().fileWith("realm/Screenshot 2026.png", "1");
    house.home().fileWith("realm/My.app/inside", "123456789");
    house.home().folder("realm/Plain");
    house.home().fileWith("realm/.hidden.png", "1");
    const OrganisePlan found = plan();
    ASSERT_EQ(found.moves.size(), 4U);
    EXPECT_EQ(found.moves[0].kind, FileKind::screenshot);
    EXPECT_EQ(found.moves[1].kind, FileKind::image);
    EXPECT_EQ(found.moves[1].totalBytes, 5);
    EXPECT_EQ(found.moves[2].kind, FileKind::application);
    EXPECT_EQ(found.moves[2].totalBytes, 0) << "a bundle has no length of its own";
    EXPECT_EQ(found.moves[3].kind, FileKind::other);
    EXPECT_EQ(found.moves[3].destinationFolderName, "Bits and Bobs");
}

TEST_F(OrganiseServiceLive, aFolderThatIsNotTheGrantedOneHasNoPlanAndTakesNone)
{
    house.home().fileWith("realm/a.png", "12345");
    const auto isAnother = [] { return false; };
    const auto before = MovesHouse::censusWithPaths(house.realm().path());
    EXPECT_THAT(service.planOrganise(house.realm(), house.realm(), {}, isAnother).moves, IsEmpty());
    const StashOperation operation = service.applyPlan(plan(), house.realm(), isAnother);
    EXPECT_THAT(operation.moved, IsEmpty());
    EXPECT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(MovesHouse::censusWithPaths(house.realm().path()), before);
}

TEST_F(OrganiseServiceLive, movesAndIsUndone)
{
    house.home().fileWith("realm/a.png", "12345");
    house.home().fileWith("realm/b.txt", "1");
    house.home().fileWith("realm/My.app/inside", "1");
    const auto before = house.census();
    const StashOperation operation = service.applyPlan(plan(), house.realm());
    EXPECT_THAT(operation.failures, IsEmpty());
    EXPECT_TRUE(fs::exists(house.home().path("realm/Apps/My.app/inside")));
    EXPECT_EQ(house.census(), before);
    EXPECT_EQ(decodedStashJournal(house.home().read("realm/.gruk-organise.json"))->items,
              operation.moved);
    EXPECT_THAT(plan().moves, IsEmpty());
    EXPECT_EQ(StashService().restore(operation.moved, house.realm()).restored, operation.moved);
    EXPECT_EQ(house.census(), before);
}

TEST_F(OrganiseServiceLive, aDestinationThatIsALinkIsNotFollowedOutOfTheRealm)
{
    house.home().fileWith("realm/a.png", "12345");
    house.home().symbolicLink("realm/Images", house.outside().path());
    const StashOperation operation = service.applyPlan(plan(), house.realm());
    ASSERT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(operation.failures[0].reason, Reason::couldNotStash);
    EXPECT_TRUE(fs::is_empty(house.outside().path()));
    EXPECT_EQ(house.home().read("realm/a.png"), "12345");
}

TEST_F(OrganiseServiceLive, aFileAtTheFoldersNameMakesEachMoveFailWithWords)
{
    house.home().fileWith("realm/a.png", "12345");
    OrganisePlan made = plan();
    house.home().fileWith("realm/Images", "a file");
    const StashOperation operation = service.applyPlan(made, house.realm());
    ASSERT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(operation.failures[0].reason, Reason::couldNotStash);
    EXPECT_THAT(operation.failures[0].message, testing::Not(IsEmpty()));
    EXPECT_EQ(house.home().read("realm/Images"), "a file");
}

}  // namespace

}  // namespace gruk
