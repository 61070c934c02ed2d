#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/actions/organise_service.h"
#include "core/actions/stash_journal.h"
#include "core/actions/stash_service.h"
#include "platform/files/known_folders.h"
#include "tests/support/moves_house.h"
#include "tests/support/private_mounts.h"

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

TEST_F(StashServiceLive, aLinkIsNoHoardWhateverItLeadsToAndIsNotFollowed)
{
    house.home().fileWith("realm/a", "one");
    const StashOperation first = stash();
    fs::rename(first.hoardFolder->path(), house.home().path("outside/hoard"));
    house.home().symbolicLink("realm/link", house.home().path("outside/hoard"));
    // As a share behind it would that never answers.
    bool isFollowed = false;
    MoveCalls calls;
    calls.openDirectory = [&, live = calls.openDirectory](int folder, const char* name,
                                                          LastLink link) {
        const bool isLink = std::string_view(name).find("link") != std::string_view::npos;
        isFollowed = isFollowed || (isLink && link == LastLink::followed);
        return live(folder, name, link);
    };
    EXPECT_EQ(StashService(calls).stashableCount(house.realm()), 1U);
    EXPECT_EQ(StashService(calls).stashDesktop(house.realm(), house.realm()).moved.size(), 1U);
    EXPECT_FALSE(isFollowed);
    EXPECT_TRUE(fs::exists(house.home().path("outside/hoard/a")));
}

TEST_F(StashServiceLive, whatIsMountedOnTheDesktopIsNeitherTouchedNorCountedAndStays)
{
    house.home().fileWith("realm/a", "one");
    const std::string share = house.home().folder("realm/share");
    const auto run = test::runWithPrivateMounts([&]() -> std::string {
        test::mountMemory(share);
        bool isTouched = false;
        const auto look = [&](const char* name) {
            isTouched = isTouched || std::string_view(name).find("share") != std::string_view::npos;
        };
        MoveCalls calls;
        calls.openDirectory = [&, live = calls.openDirectory](int folder, const char* name,
                                                              LastLink link) {
            look(name);
            return live(folder, name, link);
        };
        calls.facts = [&, live = calls.facts](int folder, const char* name, LastLink link,
                                              PlaceFacts& facts) {
            look(name);
            return live(folder, name, link, facts);
        };
        const StashService careful(calls);
        const std::size_t count = careful.stashableCount(house.realm());
        const StashOperation operation = careful.stashDesktop(house.realm(), house.realm());
        test::unmount(share);
        if (count != 1 || operation.moved.size() != 1) {
            return "counted " + std::to_string(count) + ", moved "
                   + std::to_string(operation.moved.size());
        }
        if (operation.failures.size() != 1 || operation.failures[0].url.path() != share
            || operation.failures[0].reason != Reason::protectedLocation) {
            return "it was not told that the share stays";
        }
        return isTouched ? "the share was touched" : "";
    });
    if (!run.isPermitted) {
        GTEST_SKIP() << "may not mount here";
    }
    EXPECT_EQ(run.complaint, "");
}

TEST_F(StashServiceLive, withoutATableOfMountsNothingIsCountedAndNothingMoves)
{
    house.home().fileWith("realm/a", "one");
    MoveCalls calls;
    calls.mounts = [](MoveCalls::MountVisitor) { return -EIO; };
    const StashService careful(calls);
    EXPECT_EQ(careful.stashableCount(house.realm()), 0U);
    EXPECT_THAT(careful.stashDesktop(house.realm(), house.realm()).moved, IsEmpty());
    EXPECT_EQ(house.home().read("realm/a"), "one");
}

TEST_F(StashServiceLive, aJournalOfTheGreatestLengthMakesAHoardAndALongerOneDoesNot)
{
    house.home().fileWith("realm/a", "one");
    const std::string journal = stash().hoardFolder->path() + "/.gruk-stash.json";
    const auto lengthen = [&](std::size_t length) {
        std::ofstream(journal, std::ios::app) << std::string(length - fs::file_size(journal), ' ');
    };
    lengthen(longestStashJournal);
    EXPECT_EQ(service.stashableCount(house.realm()), 0U);
    lengthen(longestStashJournal + 1);
    EXPECT_EQ(service.stashableCount(house.realm()), 1U);
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

TEST_F(OrganiseServiceLive, aUsersOwnFileOfTheJournalsNameIsLeftAndThatIsTold)
{
    for (const char* text : {"my own notes", "{}", ""}) {
        house.home().fileWith("realm/a.png", "12345");
        house.home().fileWith("realm/.gruk-organise.json", text);
        const StashOperation operation = service.applyPlan(plan(), house.realm());
        EXPECT_EQ(operation.moved.size(), 1U);
        ASSERT_EQ(operation.failures.size(), 1U);
        EXPECT_EQ(operation.failures[0].reason, Reason::couldNotWriteJournal);
        EXPECT_THAT(operation.failures[0].message, testing::HasSubstr("not Gruk's"));
        EXPECT_EQ(house.home().read("realm/.gruk-organise.json"), text);
        fs::remove(house.home().path("realm/Images/a.png"));
    }
}

TEST_F(OrganiseServiceLive, aJournalOfAnEarlierOrganiseIsReplaced)
{
    house.home().fileWith("realm/a.png", "12345");
    EXPECT_THAT(service.applyPlan(plan(), house.realm()).failures, IsEmpty());
    house.home().fileWith("realm/b.png", "12345");
    const StashOperation second = service.applyPlan(plan(), house.realm());
    EXPECT_THAT(second.failures, IsEmpty());
    EXPECT_EQ(decodedStashJournal(house.home().read("realm/.gruk-organise.json"))->items,
              second.moved);
}

TEST_F(OrganiseServiceLive, aFileOutsideTheRealmIsNotFiledWhateverThePlanSays)
{
    house.home().fileWith("outside/a.png", "not ours");
    house.home().fileWith("realm/b.png", "12345");
    OrganisePlan made = plan();
    ASSERT_EQ(made.moves.size(), 1U);
    made.moves[0].files.push_back(house.outside().appending("a.png"));
    const StashOperation operation = service.applyPlan(made, house.realm());
    EXPECT_EQ(operation.moved.size(), 1U);
    ASSERT_EQ(operation.failures.size(), 1U);
    EXPECT_EQ(operation.failures[0].reason, Reason::couldNotStash);
    EXPECT_THAT(operation.failures[0].message, testing::Not(IsEmpty()));
    EXPECT_EQ(house.home().read("outside/a.png"), "not ours");
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
