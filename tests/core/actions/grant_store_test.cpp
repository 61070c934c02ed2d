#include "core/actions/grant_store.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/foundation/errors.h"
#include "tests/core/actions/fake_bookmarks.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::FakeBookmarks;
using Record = std::vector<std::string>;

class GrantStoreTest : public testing::Test {
protected:
    /// A store as a fresh start of the program has it.
    GrantStore store() { return GrantStore(file(), bookmarks.calls()); }
    [[nodiscard]] FileURL file() const { return FileURL(folder.path("state/grants.json")); }
    [[nodiscard]] std::string stored() const { return folder.read("state/grants.json"); }
    [[nodiscard]] bool isStored() const { return std::filesystem::exists(file().path()); }
    /// Puts a folder in the place of the file, so that no save succeeds.
    void makeSavingFail() const { static_cast<void>(folder.folder("state/grants.json/x")); }

    /// The path that an access to `path` would be opened on; "none" without one.
    static std::string covering(const GrantStore& grants, const std::string& path)
    {
        const auto access = grants.startAccess(FileURL(path));
        return access == nullptr ? "none" : access->url().path();
    }

    test::TemporaryDirectory folder;
    FakeBookmarks bookmarks;
};

}  // namespace

TEST_F(GrantStoreTest, addingTheSamePlaceAgainReturnsTheFirstGrantAndWritesNothing)
{
    GrantStore grants = store();
    const Grant first = grants.addGrant(FileURL("/Users/a/Desktop"));
    std::filesystem::remove(file().path());
    EXPECT_EQ(grants.addGrant(FileURL("/Users/a/Desktop/../Desktop")), first);
    EXPECT_EQ(grants.addGrant(FileURL::directory("/Users/a/Desktop/")), first);
    EXPECT_EQ(grants.grants(), std::vector<Grant>{first});
    EXPECT_EQ(bookmarks.record, Record{"make /Users/a/Desktop"});
    EXPECT_FALSE(isStored());
}

TEST_F(GrantStoreTest, thePathIsKeptAsItWasHandedIn)
{
    GrantStore grants = store();
    EXPECT_EQ(grants.addGrant(FileURL("/a/./b/../c")).path, "/a/./b/../c");
    EXPECT_EQ(grants.addGrant(FileURL("/a/c")).path, "/a/./b/../c");
}

TEST_F(GrantStoreTest, theMostSpecificGrantIsUsed)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/Users/a"));
    grants.addGrant(FileURL("/Users/a/Music"));
    EXPECT_EQ(covering(grants, "/Users/a/Music/x"), "/Users/a/Music");
    EXPECT_EQ(covering(grants, "/Users/a/Music"), "/Users/a/Music");
    EXPECT_EQ(covering(grants, "/Users/a/Musician"), "/Users/a");
    EXPECT_EQ(covering(grants, "/Users/ab"), "none");
    EXPECT_EQ(covering(grants, "/Users"), "none");
}

TEST_F(GrantStoreTest, ofTwoCoveringGrantsOfEqualLengthTheEarlierIsUsed)
{
    folder.fileWith("state/grants.json", R"([
        {"id":"00000000-0000-0000-0000-000000000001","path":"/a","bookmark":"Ojph","dateGranted":0},
        {"id":"00000000-0000-0000-0000-000000000002","path":"/a","bookmark":"Ojpi","dateGranted":0}
    ])");
    const GrantStore grants = store();
    ASSERT_EQ(grants.grants().size(), 2U);
    EXPECT_EQ(covering(grants, "/a/x"), "/:a");
}

TEST_F(GrantStoreTest, aGrantAtTheRootCoversEveryPathWithTheLowestPriority)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/"));
    grants.addGrant(FileURL("/a"));
    EXPECT_EQ(covering(grants, "/"), "/");
    EXPECT_EQ(covering(grants, "/b/c"), "/");
    EXPECT_EQ(covering(grants, "/ab"), "/");
    EXPECT_EQ(covering(grants, "/a/c"), "/a");
}

TEST_F(GrantStoreTest, aStoredPathThatEndsInASlashBehavesAsIfItDidNot)
{
    folder.fileWith("state/grants.json", R"([
        {"id":"00000000-0000-0000-0000-000000000001","path":"/a/","bookmark":"Oi9h","dateGranted":0}
    ])");
    GrantStore grants = store();
    ASSERT_EQ(grants.grants().size(), 1U);
    EXPECT_EQ(covering(grants, "/a"), "/a");
    EXPECT_EQ(covering(grants, "/a/b"), "/a");
    EXPECT_EQ(covering(grants, "/ab"), "none");
    EXPECT_EQ(grants.addGrant(FileURL("/a")), grants.grants().front());
    EXPECT_EQ(grants.grants().size(), 1U);
}

TEST_F(GrantStoreTest, anAccessToASubPathHasTheGrantsRootAsItsURL)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/realm"));
    const auto access = grants.startAccess(FileURL("/realm/deep/down"));
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->url(), FileURL::directory("/realm"));
    EXPECT_TRUE(access->didStartAccessing());
}

TEST_F(GrantStoreTest, anAccessIsOpenedWhereTheDirectoryIsNow)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/realm"));
    bookmarks.movedTo["/realm"] = "/renamed";
    bookmarks.record.clear();
    auto access = grants.startAccess(FileURL("/realm/x"));
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->url().path(), "/renamed");
    EXPECT_EQ(bookmarks.record, (Record{"resolve /realm", "start /renamed"}));
    access.reset();
    EXPECT_EQ(bookmarks.record.back(), "stop /renamed");
}

TEST(GrantStoreAccess, standsUntilItsDirectoryIsAnotherOneOrElsewhereOrGone)
{
    namespace fs = std::filesystem;
    const test::TemporaryDirectory disk;
    const std::string realm = disk.folder("realm");
    GrantStore grants(FileURL(disk.path("grants.json")));
    grants.addGrant(FileURL::directory(realm));
    const auto stands = grants.startAccess(FileURL(realm))->stands();
    EXPECT_TRUE(stands());
    fs::rename(realm, disk.path("renamed"));
    EXPECT_FALSE(stands());
    fs::create_directory(realm);
    EXPECT_FALSE(stands());
    fs::remove(realm);
    fs::rename(disk.path("renamed"), realm);
    EXPECT_TRUE(stands()) << "it is back";
}

TEST_F(GrantStoreTest, withoutACoveringGrantOrItsDirectoryThereIsNoAccess)
{
    GrantStore grants = store();
    EXPECT_EQ(grants.startAccess(FileURL("/realm")), nullptr);
    grants.addGrant(FileURL("/realm"));
    bookmarks.resolvingFails = true;
    EXPECT_EQ(grants.startAccess(FileURL("/realm")), nullptr);
}

TEST_F(GrantStoreTest, aRefusedStartStillGivesAnAccessThatIsNeverStopped)
{
    GrantStore grants = store();
    grants.addGrant(FileURL("/realm"));
    bookmarks.startingIsRefused = true;
    auto access = grants.startAccess(FileURL("/realm"));
    ASSERT_NE(access, nullptr);
    EXPECT_FALSE(access->didStartAccessing());
    access.reset();
    EXPECT_EQ(bookmarks.record.back(), "start /realm");
}

TEST_F(GrantStoreTest, invalidJSONGivesAnEmptyListAndTheFirstAddOverwritesIt)
{
    folder.fileWith("state/grants.json", "[{");
    GrantStore grants = store();
    EXPECT_TRUE(grants.grants().empty());
    EXPECT_EQ(stored(), "[{");
    const Grant grant = grants.addGrant(FileURL("/realm"));
    EXPECT_EQ(store().grants(), std::vector<Grant>{grant});
}

TEST_F(GrantStoreTest, aBookmarkThatCannotBeMadeLeavesTheListUnchanged)
{
    GrantStore grants = store();
    bookmarks.makingFails = true;
    EXPECT_THROW(grants.addGrant(FileURL("/realm")), std::runtime_error);
    EXPECT_TRUE(grants.grants().empty());
    EXPECT_FALSE(isStored());
}

TEST_F(GrantStoreTest, afterAFailedSaveTheGrantStaysAndASecondAddMakesNoNewBookmark)
{
    makeSavingFail();
    GrantStore grants = store();
    EXPECT_THROW(grants.addGrant(FileURL("/realm")), FileError);
    ASSERT_EQ(grants.grants().size(), 1U);
    const Grant kept = grants.grants().front();
    EXPECT_EQ(grants.addGrant(FileURL("/realm")), kept);
    EXPECT_EQ(bookmarks.record, Record{"make /realm"});
}

TEST_F(GrantStoreTest, aRemovedGrantIsGoneFromTheListAndTheFile)
{
    GrantStore grants = store();
    const Grant first = grants.addGrant(FileURL("/a"));
    const Grant second = grants.addGrant(FileURL("/b"));
    grants.removeGrant(first.id);
    EXPECT_EQ(grants.grants(), std::vector<Grant>{second});
    EXPECT_EQ(store().grants(), std::vector<Grant>{second});
}

TEST_F(GrantStoreTest, aFailureToSaveARemovalIsNotTold)
{
    GrantStore grants = store();
    const Grant grant = grants.addGrant(FileURL("/a"));
    std::filesystem::remove(file().path());
    makeSavingFail();
    EXPECT_NO_THROW(grants.removeGrant(grant.id));
    EXPECT_TRUE(grants.grants().empty());
}

TEST_F(GrantStoreTest, aGrantMovesToAnotherPlaceAsTheSameGrantAndTheOneThereGoes)
{
    GrantStore grants = store();
    const Grant first = grants.addGrant(FileURL("/a"));
    const Grant second = grants.addGrant(FileURL("/b"));
    const Grant third = grants.addGrant(FileURL("/x/../new"));
    bookmarks.movedTo["/a"] = "/new";
    EXPECT_EQ(grants.whereabouts(first), FileURL::directory("/new"));
    EXPECT_THROW(static_cast<void>(grants.bookmarkAt(first, FileURL("/b"))), FileError);
    const std::string bookmark = grants.bookmarkAt(first, FileURL::directory("/new"));
    grants.moveGrant(first.id, FileURL::directory("/new"), bookmark);
    const Grant moved{first.id, "/new", bookmark, first.dateGranted};
    EXPECT_EQ(grants.grants(), (std::vector<Grant>{moved, second}));
    EXPECT_EQ(store().grants(), grants.grants());
    EXPECT_NE(third.id, first.id);

    grants.moveGrant(third.id, FileURL("/c"), bookmark);
    EXPECT_EQ(grants.grants(), (std::vector<Grant>{moved, second})) << "it is gone";
    bookmarks.resolvingFails = true;
    EXPECT_EQ(grants.whereabouts(moved), std::nullopt);
}

TEST_F(GrantStoreTest, aMoveThatCannotBeSavedLeavesTheListAsItWas)
{
    GrantStore grants = store();
    const Grant first = grants.addGrant(FileURL("/a"));
    const Grant second = grants.addGrant(FileURL("/b"));
    std::filesystem::remove(file().path());
    makeSavingFail();
    EXPECT_ANY_THROW(grants.moveGrant(first.id, FileURL("/b"), first.bookmark));
    EXPECT_EQ(grants.grants(), (std::vector<Grant>{first, second}));
    EXPECT_ANY_THROW(grants.putBack({second}));
    EXPECT_EQ(grants.grants(), (std::vector<Grant>{first, second}));
}

}  // namespace gruk
