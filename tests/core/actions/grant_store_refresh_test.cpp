#include <gtest/gtest.h>

#include <filesystem>

#include "core/actions/grant_store.h"
#include "platform/foundation/errors.h"
#include "tests/core/actions/fake_bookmarks.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using Record = std::vector<std::string>;

class GrantStoreRefreshTest : public testing::Test {
protected:
    GrantStoreRefreshTest()
    {
        grants.addGrant(FileURL("/other"));
        grant = grants.addGrant(FileURL("/realm"));
        grants.addGrant(FileURL("/last"));
        bookmarks.record.clear();
    }

    void makeSavingFail() const
    {
        std::filesystem::remove(folder.path("grants.json"));
        static_cast<void>(folder.folder("grants.json/x"));
    }

    test::TemporaryDirectory folder;
    test::FakeBookmarks bookmarks;
    GrantStore grants{FileURL(folder.path("grants.json")), bookmarks.calls()};
    Grant grant;
};

}  // namespace

TEST_F(GrantStoreRefreshTest, aRefreshRenewsTheBookmarkInPlaceAndKeepsTheRest)
{
    bookmarks.movedTo["/realm"] = "/renamed";
    const Grant renewed = grants.refreshGrant(grant);
    Grant expected = grant;
    expected.bookmark = test::FakeBookmarks::bookmark("/renamed", 4);
    EXPECT_EQ(renewed, expected);
    ASSERT_EQ(grants.grants().size(), 3U);
    EXPECT_EQ(grants.grants()[1], expected);
    EXPECT_EQ(bookmarks.record,
              (Record{"resolve /realm", "start /renamed", "make /renamed", "stop /renamed"}));
    EXPECT_EQ(GrantStore(FileURL(folder.path("grants.json")), bookmarks.calls()).grants(),
              grants.grants());
}

TEST_F(GrantStoreRefreshTest, aBookmarkIsRenewedOnlyForTheVeryDirectoryItLedTo)
{
    BookmarkCalls calls = bookmarks.calls();
    std::string asked;
    bool isAnother = false;
    calls.renew = [&](std::string_view bookmark, const FileURL& url) -> std::string {
        asked = std::string(bookmark) + " at " + url.path();
        if (isAnother) {
            throw std::runtime_error("another directory");
        }
        return "renewed";
    };
    GrantStore careful(FileURL(folder.path("grants.json")), calls);
    EXPECT_EQ(careful.refreshGrant(grant).bookmark, "renewed");
    EXPECT_EQ(asked, grant.bookmark + " at /realm");
    EXPECT_EQ(bookmarks.record, (Record{"resolve /realm", "start /realm", "stop /realm"}));

    isAnother = true;
    const std::vector<Grant> before = careful.grants();
    EXPECT_THROW(careful.refreshGrant(grant), std::runtime_error);
    EXPECT_EQ(careful.grants(), before);
    EXPECT_EQ(bookmarks.record.back(), "stop /realm");
}

TEST_F(GrantStoreRefreshTest, aGrantInAnothersSteadIsMadeAnewAtTheEndOfTheList)
{
    const Grant made = grants.replaceGrant(grant.id, FileURL("/realm"));
    EXPECT_NE(made.id, grant.id);
    EXPECT_EQ(made.bookmark, test::FakeBookmarks::bookmark("/realm", 4));
    ASSERT_EQ(grants.grants().size(), 3U);
    EXPECT_EQ(grants.grants()[1].path, "/last");
    EXPECT_EQ(grants.grants()[2], made);
    EXPECT_EQ(GrantStore(FileURL(folder.path("grants.json")), bookmarks.calls()).grants(),
              grants.grants());
}

TEST_F(GrantStoreRefreshTest, aGrantWhoseSuccessorCannotBeMadeStays)
{
    const std::vector<Grant> before = grants.grants();
    bookmarks.makingFails = true;
    EXPECT_THROW(grants.replaceGrant(grant.id, FileURL("/realm")), std::runtime_error);
    EXPECT_EQ(grants.grants(), before);
}

TEST_F(GrantStoreRefreshTest, aFailureToSaveKeepsTheSuccessorUntilTheProgramEnds)
{
    makeSavingFail();
    EXPECT_THROW(grants.replaceGrant(grant.id, FileURL("/realm")), FileError);
    ASSERT_EQ(grants.grants().size(), 3U);
    EXPECT_NE(grants.grants()[2].id, grant.id);
    EXPECT_EQ(grants.grants()[2].path, "/realm");
}

TEST_F(GrantStoreRefreshTest, aGrantThatIsNotInTheListIsAppended)
{
    grants.removeGrant(grant.id);
    const Grant renewed = grants.refreshGrant(grant);
    ASSERT_EQ(grants.grants().size(), 3U);
    EXPECT_EQ(grants.grants().back(), renewed);
    EXPECT_EQ(renewed.id, grant.id);
}

TEST_F(GrantStoreRefreshTest, aFailureToResolveChangesNothing)
{
    const std::vector<Grant> before = grants.grants();
    bookmarks.resolvingFails = true;
    EXPECT_THROW(grants.refreshGrant(grant), std::runtime_error);
    EXPECT_EQ(grants.grants(), before);
    EXPECT_EQ(bookmarks.record, Record{"resolve /realm"});
}

TEST_F(GrantStoreRefreshTest, aFailureToMakeTheBookmarkChangesNothingAndBalancesTheAccess)
{
    const std::vector<Grant> before = grants.grants();
    bookmarks.makingFails = true;
    EXPECT_THROW(grants.refreshGrant(grant), std::runtime_error);
    EXPECT_EQ(grants.grants(), before);
    EXPECT_EQ(bookmarks.record,
              (Record{"resolve /realm", "start /realm", "make /realm", "stop /realm"}));
}

TEST_F(GrantStoreRefreshTest, aFailureToSaveKeepsTheRenewedGrantAndBalancesTheAccess)
{
    makeSavingFail();
    EXPECT_THROW(grants.refreshGrant(grant), FileError);
    EXPECT_EQ(grants.grants()[1].bookmark, test::FakeBookmarks::bookmark("/realm", 4));
    EXPECT_EQ(bookmarks.record.back(), "stop /realm");
}

TEST_F(GrantStoreRefreshTest, anAccessThatWasRefusedIsNotStopped)
{
    bookmarks.startingIsRefused = true;
    grants.refreshGrant(grant);
    EXPECT_EQ(bookmarks.record, (Record{"resolve /realm", "start /realm", "make /realm"}));
}

}  // namespace gruk
