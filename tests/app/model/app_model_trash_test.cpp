#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/model_house.h"

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::ModelHouse;
using testing::IsEmpty;

/// A house with a patrolled realm in which three old installers were found, "a.dmg" to "c.dmg".
class AppModelTrash : public testing::Test {
protected:
    explicit AppModelTrash(const std::function<void(ModelCollaborators&)>& change = [](auto&) {})
        : house(change)
    {
        for (const char* name : {"a.dmg", "b.dmg", "c.dmg"}) {
            const std::string path = house.directory.file("realm/" + std::string(name), 12'288);
            fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::days(900));
        }
        house.loop->setNow(Date::now());
        realm = house.makePatrolledRealm("realm");
        EXPECT_EQ(model().findings().size(), 3U);
    }

    [[nodiscard]] AppModel& model() { return *house.model; }

    [[nodiscard]] ReviewFinding finding(const std::string& name)
    {
        for (const ReviewFinding& one : model().findings()) {
            if (one.url.lastPathComponent() == name) {
                return one;
            }
        }
        throw std::runtime_error("no finding " + name);
    }

    void trash(const ReviewFinding& one)
    {
        model().moveFindingToTrash(one,
                                   TrashService::currentIdentity(one.url).value_or(FileIdentity()));
    }

    [[nodiscard]] bool stands(const std::string& name)
    {
        return fs::exists(house.directory.path("realm/" + name));
    }

    ModelHouse house;
    FileURL realm;
};

TEST_F(AppModelTrash, aFirstRunIsReviewOnlyAndNothingMoves)
{
    EXPECT_TRUE(model().reviewOnlyMode());
    trash(finding("a.dmg"));
    EXPECT_EQ(model().errorMessage(),
              "Review Only stopped that Trash action. Nothing was changed.");
    EXPECT_EQ(model().lastActionMessage(), "First patrol of realm complete.");
    model().moveFindingsToTrash(model().findings());
    EXPECT_EQ(model().errorMessage(),
              "Review Only stopped that Trash action. Nothing was changed.");
    EXPECT_TRUE(stands("a.dmg"));
    EXPECT_EQ(model().findings().size(), 3U);
}

TEST_F(AppModelTrash, switchingReviewOnlySaysSoAndIsKept)
{
    model().setReviewOnly(false);
    EXPECT_EQ(model().lastActionMessage(),
              "Trash actions are enabled. Every item still requires a separate confirmation.");
    house.restart();
    EXPECT_FALSE(model().reviewOnlyMode());
    model().setReviewOnly(true);
    EXPECT_EQ(model().lastActionMessage(),
              "Review Only is on. Gruk cannot move anything to Trash.");
    house.restart();
    EXPECT_TRUE(model().reviewOnlyMode());
}

TEST_F(AppModelTrash, aFindingThatMovedIsGoneFromTheListAndItsBytesAreRemembered)
{
    house.allowTrash();
    const ReviewFinding one = finding("a.dmg");
    trash(one);
    EXPECT_EQ(model().lastActionMessage(), "Moved a.dmg to Trash.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_FALSE(stands("a.dmg"));
    EXPECT_EQ(model().findings().size(), 2U);
    ASSERT_TRUE(model().lastTrashOperation());
    EXPECT_EQ(model().lastTrashOperation()->moved.size(), 1U);
    EXPECT_EQ(model().liveRemovedBytesByPath(), (RemovedBytesByPath{{"a.dmg", one.allocatedSize}}));
}

TEST_F(AppModelTrash, aSecondTimeTheFindingIsUnknown)
{
    house.allowTrash();
    const ReviewFinding one = finding("a.dmg");
    trash(one);
    trash(one);
    EXPECT_EQ(model().errorMessage(),
              "Gruk stopped because that item is outside the active realm. Nothing was changed.");
    EXPECT_EQ(model().lastActionMessage(), "Moved a.dmg to Trash.");
}

TEST_F(AppModelTrash, withoutAnActiveRealmNothingMoves)
{
    house.allowTrash();
    const ReviewFinding one = finding("a.dmg");
    model().showTerritories();
    house.settle();
    trash(one);
    EXPECT_EQ(model().errorMessage(),
              "Gruk stopped because that item is outside the active realm. Nothing was changed.");
    model().moveFindingsToTrash({one});
    EXPECT_EQ(model().errorMessage(),
              "Gruk stopped because that item is outside the active realm. Nothing was changed.");
    EXPECT_TRUE(stands("a.dmg"));
}

TEST_F(AppModelTrash, anItemThatChangedOrWentAfterTheReviewIsLeft)
{
    constexpr const char* changed =
        "Gruk stopped because that item changed after you reviewed it. Patrol again before "
        "deciding. Nothing was changed.";
    house.allowTrash();
    const ReviewFinding one = finding("a.dmg");
    FileIdentity other = TrashService::currentIdentity(one.url).value();
    ++other.inode;
    model().moveFindingToTrash(one, other);
    EXPECT_EQ(model().errorMessage(), changed);
    const FileIdentity gone = TrashService::currentIdentity(finding("b.dmg").url).value();
    const ReviewFinding second = finding("b.dmg");
    fs::remove(house.directory.path("realm/b.dmg"));
    model().moveFindingToTrash(second, gone);
    EXPECT_EQ(model().errorMessage(), changed);
    EXPECT_FALSE(model().lastTrashOperation());
    EXPECT_EQ(model().findings().size(), 3U);
}

TEST_F(AppModelTrash, aBatchTellsWhatMovedAndWhatItTookBack)
{
    house.allowTrash();
    model().moveFindingsToTrash(model().findings());
    EXPECT_EQ(model().lastActionMessage(),
              "Moved 3 of 3 to the Trash \xE2\x80\x94 37 KB taken back.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_THAT(model().findings(), IsEmpty());
    EXPECT_EQ(model().lastTrashOperation()->moved.size(), 3U);
    EXPECT_EQ(model().liveRemovedBytesByPath().size(), 3U);
    EXPECT_EQ(model().topLevelChanges().size(), 3U);
}

TEST_F(AppModelTrash, aBatchInWhichNothingMovesStillHasTheFormAndNoErrorMessage)
{
    house.allowTrash();
    const std::vector<ReviewFinding> all = model().findings();
    for (const char* name : {"a.dmg", "b.dmg", "c.dmg"}) {
        fs::remove(house.directory.path("realm/" + std::string(name)));
    }
    model().moveFindingsToTrash(all);
    EXPECT_EQ(
        model().lastActionMessage(),
        "Moved 0 of 3 to the Trash \xE2\x80\x94 0 KB taken back. 3 couldn't move; nothing was "
        "forced.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_FALSE(model().lastTrashOperation());
}

TEST_F(AppModelTrash, undoPutsEverythingBackButTheFindingsStayAway)
{
    house.allowTrash();
    model().moveFindingsToTrash(model().findings());
    model().undoLastTrash();
    EXPECT_EQ(model().lastActionMessage(), "Restored 3 item from Trash.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_FALSE(model().lastTrashOperation());
    EXPECT_THAT(model().liveRemovedBytesByPath(), IsEmpty());
    EXPECT_THAT(model().findings(), IsEmpty());
    EXPECT_TRUE(stands("a.dmg"));
}

TEST_F(AppModelTrash, aSecondUndoOfAPartlyFailedOneRetriesOnlyWhatIsLeft)
{
    house.allowTrash();
    model().moveFindingsToTrash(model().findings());
    house.directory.file("realm/b.dmg", 1);
    model().undoLastTrash();
    EXPECT_EQ(model().lastActionMessage(), "Restored 2 item from Trash.");
    EXPECT_EQ(model().errorMessage(),
              "Some items could not be restored because their original path is occupied or the "
              "Trash item is gone.");
    ASSERT_TRUE(model().lastTrashOperation());
    EXPECT_EQ(model().lastTrashOperation()->moved.size(), 1U);
    EXPECT_THAT(model().lastTrashOperation()->failures, IsEmpty());
    EXPECT_EQ(model().liveRemovedBytesByPath().size(), 1U);

    model().undoLastTrash();
    EXPECT_FALSE(model().lastActionMessage()) << "nothing came back this time";
    fs::remove(house.directory.path("realm/b.dmg"));
    model().undoLastTrash();
    EXPECT_EQ(model().lastActionMessage(), "Restored 1 item from Trash.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_FALSE(model().lastTrashOperation());
}

TEST_F(AppModelTrash, undoWithNothingToUndoSaysNothing)
{
    model().undoLastTrash();
    EXPECT_EQ(model().lastActionMessage(), "First patrol of realm complete.");
}

TEST_F(AppModelTrash, aFailedActionLeavesAnEarlierUndoPossible)
{
    house.allowTrash();
    trash(finding("a.dmg"));
    const ReviewFinding second = finding("b.dmg");
    FileIdentity other = TrashService::currentIdentity(second.url).value();
    ++other.inode;
    model().moveFindingToTrash(second, other);
    ASSERT_TRUE(model().lastTrashOperation());
    model().undoLastTrash();
    EXPECT_TRUE(stands("a.dmg"));
}

TEST_F(AppModelTrash, aFindingInAFolderThatWentGoesWithIt)
{
    house.directory.file("realm/p/node_modules/x", 20'480);
    house.directory.file("realm/p/node_modules/x (1)", 20'480);
    house.patrol();
    ASSERT_NO_THROW(static_cast<void>(finding("x (1)")));
    house.allowTrash();
    trash(finding("node_modules"));
    EXPECT_EQ(model().findings().size(), 3U);
    EXPECT_THROW(static_cast<void>(finding("x (1)")), std::runtime_error);
}

TEST_F(AppModelTrash, aFinishedPatrolForgetsWhatWasRemoved)
{
    house.allowTrash();
    trash(finding("a.dmg"));
    house.patrol();
    EXPECT_THAT(model().liveRemovedBytesByPath(), IsEmpty());
    EXPECT_TRUE(model().lastTrashOperation()) << "the undo lasts";
}

TEST_F(AppModelTrash, whatGrukKeepsForItselfStaysAlsoInARealmThatHoldsIt)
{
    house.allowTrash();
    std::vector<ReviewFinding> own(2, finding("a.dmg"));
    const FileURL all = house.directory.url();
    model().grantRealm(all);
    house.settle();
    house.select(all);
    own[0].url = FileURL(house.directory.path("app/snapshots.json"));
    own[1].url = FileURL(house.directory.path("app"));
    model().moveFindingsToTrash(own);
    EXPECT_EQ(
        model().lastActionMessage(),
        "Moved 0 of 2 to the Trash \xE2\x80\x94 0 KB taken back. 2 couldn't move; nothing was "
        "forced.");
    EXPECT_TRUE(fs::exists(own[0].url.path()));

    house.directory.file("app/a.png", 1);
    const FileURL place(own[1].url);
    model().organise({place, {{FileKind::image, "Images", {place.appending("a.png")}, 1}}});
    EXPECT_EQ(model().errorMessage(), "Gruk could not organise this realm. Nothing was changed.");
    EXPECT_TRUE(fs::exists(house.directory.path("app/a.png")));
}

/// The same with another program that puts "other" in the place of an item in the moment of its
/// move, and then a third one at its old place, so that the other one cannot go back.
class AppModelStrayingTrash : public AppModelTrash {
protected:
    AppModelStrayingTrash()
        : AppModelTrash([this](ModelCollaborators& all) {
              MoveCalls calls;
              calls.moveWithoutReplacing =
                  [this, live = calls.moveWithoutReplacing](int fromDirectory, const char* from,
                                                            int toDirectory, const char* to) {
                      const std::string place = house.directory.path("realm/a.dmg");
                      const bool isSwapping =
                          std::string(from) == "a.dmg" && !std::exchange(isSwapped, true);
                      if (isSwapping) {
                          fs::rename(house.directory.fileWith("other", "another"), place);
                      }
                      const int result = live(fromDirectory, from, toDirectory, to);
                      if (isSwapping) {
                          house.directory.fileWith("realm/a.dmg", "once more");
                      }
                      return result;
                  };
              all.trashService = std::make_shared<TrashService>(calls);
          })
    {
    }

    [[nodiscard]] std::string told() const
    {
        return "Another item took the place of a.dmg in the moment of the move, and could not go "
               "back. It is now at "
               + house.directory.path("data/Trash/files/a.dmg") + ". Nothing else was changed.";
    }

    bool isSwapped = false;
};

TEST_F(AppModelStrayingTrash, aStrayItemIsToldByNameAndPlace)
{
    house.allowTrash();
    trash(finding("a.dmg"));
    EXPECT_EQ(model().errorMessage(), told());
    EXPECT_EQ(house.directory.read("data/Trash/files/a.dmg"), "another");
    EXPECT_EQ(model().findings().size(), 3U);
    EXPECT_FALSE(model().lastTrashOperation());
}

TEST_F(AppModelStrayingTrash, aStrayItemOfABatchIsToldToo)
{
    house.allowTrash();
    model().moveFindingsToTrash(model().findings());
    EXPECT_EQ(
        model().lastActionMessage(),
        "Moved 2 of 3 to the Trash \xE2\x80\x94 25 KB taken back. 1 couldn't move; nothing was "
        "forced.");
    EXPECT_EQ(model().errorMessage(), told());
}

/// The same with a Trash that refuses one item in its own words.
class AppModelScriptedTrash : public AppModelTrash {
protected:
    AppModelScriptedTrash()
        : AppModelTrash([this](ModelCollaborators& all) {
              TrashCalls calls;
              calls.trashItem = [this](const FileURL& url) {
                  if (url.lastPathComponent() == refused) {
                      throw std::runtime_error("no");
                  }
                  const FileURL to(url.path() + ".trashed");
                  fs::rename(url.path(), to.path());
                  return to;
              };
              calls.fileExists = [](const FileURL& url) { return fs::exists(url.path()); };
              calls.moveItem = [](const FileURL& from, const FileURL& to) {
                  fs::rename(from.path(), to.path());
              };
              all.trashService = std::make_shared<TrashService>(calls);
          })
    {
    }

    std::string refused;
};

TEST_F(AppModelScriptedTrash, anItemThatTheSystemRefusesIsToldAsSuch)
{
    house.allowTrash();
    refused = "a.dmg";
    trash(finding("a.dmg"));
    EXPECT_EQ(model().errorMessage(),
              "Gruk could not move that item to Trash. Nothing was changed.");
    EXPECT_EQ(model().findings().size(), 3U);
}

TEST_F(AppModelScriptedTrash, aBatchOfThreeWithOneUnreadableAndOneRefused)
{
    house.allowTrash();
    refused = "b.dmg";
    const std::vector<ReviewFinding> all = model().findings();
    fs::remove(house.directory.path("realm/c.dmg"));
    model().moveFindingsToTrash(all);
    EXPECT_EQ(
        model().lastActionMessage(),
        "Moved 1 of 3 to the Trash \xE2\x80\x94 12 KB taken back. 2 couldn't move; nothing was "
        "forced.");
    EXPECT_FALSE(model().errorMessage());
    EXPECT_EQ(model().findings().size(), 2U);
}

}  // namespace

}  // namespace gruk
