#include "tests/support/lost_operations.h"

#include <memory>
#include <optional>

#include "core/actions/trash_service.h"

namespace gruk::test {

namespace {

constexpr const char* noAccessToDesktop =
    "Gruk no longer has access to the Desktop. Grant access again to tidy it.";
constexpr const char* noAccessToOrganise =
    "Gruk no longer has access to this realm. Grant access again to organise it.";
constexpr const char* changedSinceReview =
    "Gruk stopped because that item changed after you reviewed it. Patrol again before deciding. "
    "Nothing was changed.";
constexpr const char* couldNotTrash =
    "Gruk could not move that item to Trash. Nothing was changed.";
constexpr const char* notRestored =
    "Some items could not be restored because their original path is occupied or the Trash item is "
    "gone.";
constexpr const char* notPutBack =
    "Some items could not be put back because their original path is occupied again.";

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

void trashAll(LostMidway& midway)
{
    midway.model().moveFindingsToTrash(std::vector<ReviewFinding>(midway.model().findings()));
}

void checkTrashOfOne(LostMidway& midway)
{
    const auto& slot = midway.model().lastTrashOperation();
    if (movedBy(slot) == 1) {
        const std::string name(slot->moved.front().originalURL.lastPathComponent());
        EXPECT_EQ(midway.message(), "Moved " + name + " to Trash.");
        EXPECT_EQ(midway.complaint(), "");
        EXPECT_EQ(midway.model().findings().size(), 1U);
        return;
    }
    EXPECT_EQ(midway.message(), midway.formerMessage());
    EXPECT_TRUE(midway.complaint() == changedSinceReview || midway.complaint() == couldNotTrash)
        << midway.complaint();
    EXPECT_EQ(midway.model().findings().size(), 2U);
}

void checkTrash(LostMidway& midway)
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

void checkUndoOfTrash(LostMidway& midway)
{
    const std::size_t left = movedBy(midway.model().lastTrashOperation());
    EXPECT_EQ(midway.complaint(), left == 0 ? "" : notRestored);
    EXPECT_EQ(midway.message(),
              left == 2 ? "" : "Restored " + std::to_string(2 - left) + " item from Trash.");
}

void checkTidy(LostMidway& midway)
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
    EXPECT_TRUE(sentences.contains(midway.complaint())) << midway.complaint();
    EXPECT_EQ(midway.message(), midway.formerMessage());
}

void checkNothingSaid(LostMidway& midway)
{
    EXPECT_EQ(midway.complaint(), "");
    EXPECT_EQ(midway.message(), midway.formerMessage());
}

/// All five files of the realm had moved.
void checkUndoOf(LostMidway& midway, std::size_t left)
{
    constexpr std::size_t all = 5;
    if (left == all && midway.complaint().empty()) {
        // Without access nothing is said, and it can be tried again.
        checkNothingSaid(midway);
        return;
    }
    EXPECT_EQ(midway.complaint(), left == 0 ? "" : notPutBack);
    EXPECT_EQ(midway.message(), left == 0 ? "Put everything back."
                                : left == all
                                    ? ""
                                    : "Put " + std::to_string(all - left) + " items back.");
}

void organiseAll(LostMidway& midway)
{
    if (const auto plan = midway.model().organisePlanForActiveRealm()) {
        midway.model().organise(*plan);
    }
}

void checkOrganise(LostMidway& midway)
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
    EXPECT_EQ(midway.message(), midway.formerMessage());
}

LostOperation trashOfOne()
{
    const auto identity = std::make_shared<FileIdentity>();
    const auto finding = [](LostMidway& midway) { return midway.model().findings().front(); };
    return {
        "trash of one",
        [=](LostMidway& midway) {
            *identity = TrashService::currentIdentity(finding(midway).url).value();
        },
        [=](LostMidway& midway) { midway.model().moveFindingToTrash(finding(midway), *identity); },
        checkTrashOfOne, changedSinceReview};
}

LostOperation organiseOfAPlan()
{
    const auto plan = std::make_shared<OrganisePlan>();
    return {
        "organise",
        [plan](LostMidway& midway) { *plan = midway.model().organisePlanForActiveRealm().value(); },
        [plan](LostMidway& midway) { midway.model().organise(*plan); }, checkOrganise,
        noAccessToOrganise};
}

LostOperation filing()
{
    return {"filing", [](LostMidway&) {},
            [](LostMidway& midway) { midway.model().filePendingRuleMatches(); },
            [](LostMidway& midway) {
                EXPECT_FALSE(midway.model().pendingRuleFilingPlan()) << "the offer goes at once";
                checkOrganise(midway);
            },
            noAccessToOrganise};
}

LostOperation undoOfTrash()
{
    return {"undo of trash", trashAll, [](LostMidway& midway) { midway.model().undoLastTrash(); },
            checkUndoOfTrash, notRestored,
            // What comes back goes to its old path, whichever folder is there; until it has begun.
            2};
}

LostOperation undoOfTidy()
{
    return {"undo of tidy", [](LostMidway& midway) { midway.model().tidyDesktop(); },
            [](LostMidway& midway) { midway.model().undoLastStash(); },
            [](LostMidway& midway) {
                checkUndoOf(midway, movedBy(midway.model().lastStashOperation()));
            }};
}

LostOperation undoOfOrganise()
{
    return {"undo of organise", organiseAll,
            [](LostMidway& midway) { midway.model().undoLastOrganise(); },
            [](LostMidway& midway) {
                checkUndoOf(midway, movedBy(midway.model().lastOrganiseOperation()));
            }};
}

/// What is asked before a Hoard, and the plans that are shown.
LostOperation looks()
{
    return {"looks", [](LostMidway&) {},
            [](LostMidway& midway) {
                if (const auto desktop = midway.model().grantedDesktopURL()) {
                    EXPECT_LE(midway.model().stashableCount(*desktop), 5U);
                    EXPECT_NE(midway.model().proposedHoardName(*desktop), "");
                }
                static_cast<void>(midway.model().organisePlanForActiveRealm());
                static_cast<void>(midway.model().organisePlanForDesktop());
            },
            checkNothingSaid};
}

}  // namespace

std::vector<LostOperation> lostOperations()
{
    const auto nothing = [](LostMidway&) {};
    const auto tidy = [](LostMidway& midway) { midway.model().tidyDesktop(); };
    return {
        trashOfOne(),      {"trash of a batch", nothing, trashAll, checkTrash},
        undoOfTrash(),     {"tidy", nothing, tidy, checkTidy, noAccessToDesktop},
        undoOfTidy(),      looks(),
        organiseOfAPlan(), undoOfOrganise(),
        filing(),
    };
}

}  // namespace gruk::test
