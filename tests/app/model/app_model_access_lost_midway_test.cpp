#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/model/app_model.h"
#include "tests/support/lost_access.h"
#include "tests/support/move_faults.h"

/// The realm goes away while an operation is at work on it, at one of its calls on the disk after
/// the other. What was done until then is told by the sentence for it, and no file is lost.

namespace gruk {

namespace {

namespace fs = std::filesystem;
using test::LostAccess;

constexpr const char* noAccessToDesktop =
    "Gruk no longer has access to the Desktop. Grant access again to tidy it.";
constexpr const char* noAccessToOrganise =
    "Gruk no longer has access to this realm. Grant access again to organise it.";
constexpr const char* notRestored =
    "Some items could not be restored because their original path is occupied or the Trash item is "
    "gone.";
constexpr const char* notPutBack =
    "Some items could not be put back because their original path is occupied again.";

/// A house in which something happens at the n-th call of the services from a certain moment on.
class Midway {
public:
    Midway()
        : lost([this](ModelCollaborators& all) {
              test::MoveFaults counted;
              counted.before = [this](std::size_t, std::string_view) { enter(); };
              const MoveCalls calls = counted.calls(test::withoutWaiting());
              all.trashService = std::make_shared<TrashService>(calls);
              all.stashService = std::make_shared<StashService>(calls);
              all.organiseService = std::make_shared<OrganiseService>(calls);
          })
    {
        lost.house.directory.file("Desktop/older.dmg", 12'288);
        fs::last_write_time(lost.path("Desktop/older.dmg"),
                            fs::file_time_type::clock::now() - std::chrono::days(900));
        lost.house.patrol();
        lost.house.allowTrash();
        EXPECT_EQ(lost.model().findings().size(), 2U);
    }

    /// Lets `happens` run at that call of `operation`; whether it had so many.
    bool run(std::size_t call, const std::function<void(Midway&)>& operation,
             const std::function<void(LostAccess&)>& happens)
    {
        happens_ = happens;
        left_ = call;
        isArmed_ = true;
        operation(*this);
        return !std::exchange(isArmed_, false);
    }

    [[nodiscard]] AppModel& model() { return lost.model(); }
    [[nodiscard]] std::string complaint() { return model().errorMessage().value_or(""); }
    [[nodiscard]] std::string message() { return model().lastActionMessage().value_or(""); }

private:
    void enter()
    {
        if (isArmed_ && left_-- == 0) {
            isArmed_ = false;
            happens_(lost);
        }
    }

    std::function<void(LostAccess&)> happens_;
    std::size_t left_ = 0;
    bool isArmed_ = false;
    /// In memory, where there is room: hundreds of houses are set up and taken down.
    test::EnvironmentVariable temporary_{"TMPDIR",
                                         fs::is_directory("/dev/shm") ? "/dev/shm" : "/tmp"};

public:
    LostAccess lost;
};

struct Operation {
    std::string name;
    /// Done while all is well.
    std::function<void(Midway&)> before;
    /// During which the realm goes.
    std::function<void(Midway&)> run;
    /// Looks at what is told.
    std::function<void(Midway&)> check;
};

/// The size of what an undo would put back; 0 without one.
template <typename Slot>
std::size_t movedBy(const Slot& slot)
{
    return slot ? slot->moved.size() : 0;
}

bool endsWithCount(const std::string& complaint)
{
    return complaint.ends_with(" item(s) could not be moved. Nothing else was changed.");
}

void trashAll(Midway& midway)
{
    midway.model().moveFindingsToTrash(std::vector<ReviewFinding>(midway.model().findings()));
}

void checkTrash(Midway& midway)
{
    const std::size_t moved = movedBy(midway.model().lastTrashOperation());
    EXPECT_EQ(midway.complaint(), "") << "a batch tells of its failures in the status line";
    EXPECT_TRUE(midway.message().starts_with("Moved " + std::to_string(moved)
                                             + " of 2 to the Trash \xE2\x80\x94 "))
        << midway.message();
    const std::size_t left = 2 - moved;
    EXPECT_EQ(midway.message().ends_with(" taken back."), left == 0) << midway.message();
    EXPECT_EQ(midway.message().ends_with(" " + std::to_string(left)
                                         + " couldn't move; nothing was forced."),
              left != 0)
        << midway.message();
    EXPECT_EQ(midway.model().findings().size(), left);
}

void checkUndoOfTrash(Midway& midway)
{
    const std::size_t left = movedBy(midway.model().lastTrashOperation());
    EXPECT_EQ(midway.complaint(), left == 0 ? "" : notRestored);
    EXPECT_EQ(midway.message(),
              left == 2 ? "" : "Restored " + std::to_string(2 - left) + " item from Trash.");
}

void checkTidy(Midway& midway)
{
    const std::size_t moved = movedBy(midway.model().lastStashOperation());
    if (moved > 0) {
        const std::string count = std::to_string(moved);
        const bool isAll = midway.complaint().empty();
        EXPECT_TRUE(isAll || endsWithCount(midway.complaint())) << midway.complaint();
        EXPECT_EQ(midway.message(),
                  (isAll ? "Done. " + count + " items stashed." : "Stashed " + count + " items.")
                      + " Your Desktop is yours again.");
        return;
    }
    const std::set<std::string> sentences{noAccessToDesktop,
                                          "Gruk could not tidy the Desktop. Nothing was changed."};
    // The other folder that stands there now may have nothing in it.
    const bool isClear =
        midway.message() == "There was nothing to tidy \xE2\x80\x94 your Desktop is already clear.";
    EXPECT_TRUE(sentences.contains(midway.complaint()) || (isClear && midway.complaint().empty()))
        << midway.complaint() << " / " << midway.message();
}

/// All five files of the realm had moved.
void checkUndoOf(Midway& midway, std::size_t left)
{
    constexpr std::size_t all = 5;
    EXPECT_EQ(midway.complaint(), left == 0 ? "" : notPutBack);
    EXPECT_EQ(midway.message(), left == 0 ? "Put everything back."
                                : left == all
                                    ? ""
                                    : "Put " + std::to_string(all - left) + " items back.");
}

void organiseAll(Midway& midway)
{
    if (const auto plan = midway.model().organisePlanForActiveRealm()) {
        midway.model().organise(*plan);
    }
}

void checkOrganise(Midway& midway)
{
    const std::size_t moved = movedBy(midway.model().lastOrganiseOperation());
    if (moved > 0) {
        const bool isAll = midway.complaint().empty();
        EXPECT_TRUE(isAll || endsWithCount(midway.complaint())) << midway.complaint();
        EXPECT_TRUE(midway.message().starts_with((isAll ? "Done. " : "Filed ")
                                                 + std::to_string(moved) + " files "))
            << midway.message();
        return;
    }
    const std::set<std::string> sentences{
        noAccessToOrganise, "Gruk could not organise this realm. Nothing was changed."};
    EXPECT_TRUE(sentences.contains(midway.complaint())) << midway.complaint();
}

std::vector<Operation> operations()
{
    const auto nothing = [](Midway&) {};
    const auto plan = std::make_shared<OrganisePlan>();
    const auto takePlan = [plan](Midway& midway) {
        *plan = midway.model().organisePlanForActiveRealm().value();
    };
    const auto tidy = [](Midway& midway) { midway.model().tidyDesktop(); };
    const auto clearSentences = [](Midway& midway) {
        midway.model().selectRealm(midway.lost.desktop);
    };
    return {
        {"trash of a batch", nothing, trashAll, checkTrash},
        {"undo of trash", trashAll, [](Midway& midway) { midway.model().undoLastTrash(); },
         checkUndoOfTrash},
        {"tidy", nothing, tidy, checkTidy},
        {"undo of tidy", tidy, [](Midway& midway) { midway.model().undoLastStash(); },
         [](Midway& midway) { checkUndoOf(midway, movedBy(midway.model().lastStashOperation())); }},
        {"organise", takePlan, [plan](Midway& midway) { midway.model().organise(*plan); },
         checkOrganise},
        {"undo of organise", organiseAll, [](Midway& midway) { midway.model().undoLastOrganise(); },
         [](Midway& midway) {
             checkUndoOf(midway, movedBy(midway.model().lastOrganiseOperation()));
         }},
        {"filing", clearSentences, [](Midway& midway) { midway.model().filePendingRuleMatches(); },
         checkOrganise},
    };
}

/// Takes the realm away at every third call of each operation.
void playAll(const std::function<void(LostAccess&)>& takeAway,
             const std::function<void(LostAccess&)>& giveBack)
{
    constexpr std::size_t stride = 3;
    for (const Operation& operation : operations()) {
        bool isReached = true;
        std::size_t times = 0;
        for (std::size_t call = 0; isReached; call += stride) {
            SCOPED_TRACE(operation.name + ", call " + std::to_string(call));
            Midway midway;
            operation.before(midway);
            const std::multiset<std::string> files = midway.lost.files();
            isReached = midway.run(call, operation.run, takeAway);
            operation.check(midway);
            if (isReached) {
                giveBack(midway.lost);
                ++times;
            }
            ASSERT_EQ(midway.lost.files(), files);
            if (testing::Test::HasFailure()) {
                return;
            }
        }
        EXPECT_GT(times, 3U) << operation.name;
    }
}

TEST(AppModelAccessLostMidway, aRealmThatIsRenamedDuringAnOperationLosesNothingAndIsTold)
{
    playAll([](LostAccess& lost) { fs::rename(lost.path("Desktop"), lost.path("renamed")); },
            [](LostAccess&) {});
}

TEST(AppModelAccessLostMidway, anotherFolderInTheRealmsPlaceDuringAnOperationLosesNothing)
{
    playAll(
        [](LostAccess& lost) {
            fs::rename(lost.path("Desktop"), lost.path("renamed"));
            fs::create_directory(lost.path("Desktop"));
        },
        [](LostAccess&) {});
}

bool losesNothingOfAClosedRealm(const test::TemporaryDirectory&)
{
    playAll([](LostAccess& lost) { fs::permissions(lost.path("Desktop"), fs::perms::none); },
            [](LostAccess& lost) { fs::permissions(lost.path("Desktop"), fs::perms::owner_all); });
    return !testing::Test::HasFailure();
}

TEST(AppModelAccessLostMidway, aRealmWhosePermissionGoesDuringAnOperationLosesNothingAndIsTold)
{
    const test::TemporaryDirectory directory;
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(losesNothingOfAClosedRealm, directory));
}

}  // namespace

}  // namespace gruk
