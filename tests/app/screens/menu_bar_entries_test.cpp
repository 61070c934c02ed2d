#include "app/screens/menu_bar_entries.h"

#include <gtest/gtest.h>

#include "tests/support/model_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::ModelHouse;
using test::words;

const FileURL home = FileURL::directory("/home/gruk");
const FileURL disk = FileURL::directory("/media/Old disk");

MenuBarState mappedRealm()
{
    MenuBarState state;
    state.activeRootURL = home;
    state.hasLatestSnapshot = true;
    state.hasPreviousSnapshot = true;
    state.grants = 1;
    return state;
}

/// One line an entry, "-" before those that can't be chosen.
QStringList lines(const MenuBarState& state)
{
    QStringList lines;
    for (const MenuBarEntry& entry : menuBarEntries(state)) {
        lines.append((entry.isEnabled ? QString() : QStringLiteral("-")) + entry.text);
    }
    return lines;
}

}  // namespace

TEST(MenuBarEntries, theStatusLineIsTheFirstOneThatHolds)
{
    MenuBarState state;
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("Choose a realm in the app"));
    state.activeRootURL = home;
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("Ready for a first patrol"));
    state.isLoadingHistory = true;
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("Loading…"));
    state.isLoadingHistory = false;
    state.hasLatestSnapshot = true;
    state.issueCount = 2;
    EXPECT_EQ(menuBarStatus(state),
              QStringLiteral("The Gruk couldn't see everything: 2 areas were off-limits. What's "
                             "shown covers only the parts it could reach."));
    state.issueCount = 0;
    state.isComplete = false;
    EXPECT_EQ(menuBarStatus(state),
              QStringLiteral("The Gruk couldn't see everything this time. What's shown covers only "
                             "the parts it could reach."));
    state.isComplete = true;
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("Baseline mapped"));
    state.hasPreviousSnapshot = true;
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("No change on the last patrol"));
    state.changes = 1'234;
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("1,234 changes last patrol"));
}

TEST(MenuBarEntries, withoutARealmThereIsNothingToPatrol)
{
    EXPECT_EQ(lines({}), words({"-Choose a realm in the app", "Tidy my Desktop", "Settings…",
                                "Open Gruk", "-", "Quit Gruk"}));
}

TEST(MenuBarEntries, withExactlyOneGrantThereIsNoPatrolAllRealms)
{
    MenuBarState state = mappedRealm();
    const QStringList one = words({"-No change on the last patrol", "Patrol now", "Tidy my Desktop",
                                   "Settings…", "Open Gruk", "-", "Quit Gruk"});
    EXPECT_EQ(lines(state), one);
    state.grants = 2;
    EXPECT_EQ(lines(state),
              words({"-No change on the last patrol", "Patrol all realms", "Patrol now",
                     "Tidy my Desktop", "Settings…", "Open Gruk", "-", "Quit Gruk"}));
}

TEST(MenuBarEntries, aPatrolOfTheOpenRealmTellsHowFarItIs)
{
    MenuBarState state = mappedRealm();
    state.grants = 2;
    state.isPatrolling = true;
    state.patrollingRootURL = home;
    EXPECT_EQ(lines(state), words({"-No change on the last patrol", "-Patrol all realms",
                                   "-Patrolling…", "-0 paths checked so far", "Stop patrol",
                                   "Tidy my Desktop", "Settings…", "Open Gruk", "-", "Quit Gruk"}));
    state.progress = PatrolProgress{12'345, ""};
    EXPECT_EQ(lines(state)[3], QStringLiteral("-12,345 paths checked so far"));
    state.progress = PatrolProgress{12'345, "Pictures/2026"};
    EXPECT_EQ(lines(state)[3], QStringLiteral("-12,345 paths checked so far · Pictures/2026"));
}

TEST(MenuBarEntries, aPatrolOfAnotherRealmIsToldByItsName)
{
    MenuBarState state = mappedRealm();
    state.isPatrolling = true;
    state.patrollingRootURL = disk;
    EXPECT_EQ(lines(state)[2],
              QStringLiteral("-The Gruk is off patrolling Old disk — 0 paths so far."));
    state.progress = PatrolProgress{4'321, "letters"};
    EXPECT_EQ(lines(state)[2],
              QStringLiteral("-The Gruk is off patrolling Old disk — 4,321 paths so far."));
    state.activeRootURL.reset();
    EXPECT_EQ(lines(state),
              words({"-Choose a realm in the app",
                     "-The Gruk is off patrolling Old disk — 4,321 paths so far.", "Stop patrol",
                     "Tidy my Desktop", "Settings…", "Open Gruk", "-", "Quit Gruk"}));
}

TEST(MenuBarEntries, noEntryStandsThereTwice)
{
    MenuBarState state = mappedRealm();
    state.grants = 3;
    state.isPatrolling = true;
    state.patrollingRootURL = home;
    std::vector<MenuBarItem> items;
    for (const MenuBarEntry& entry : menuBarEntries(state)) {
        items.push_back(entry.item);
    }
    EXPECT_TRUE(std::ranges::is_sorted(items, std::less_equal<>()));
    EXPECT_EQ(items.size(), 10U);
}

TEST(MenuBarEntries, whileTheHistoryOfAMappedRealmLoadsTheStatusLineDoesNotSayThatThereIsNone)
{
    ModelHouse house;
    const FileURL first = house.makePatrolledRealm("Home");
    EXPECT_EQ(menuBarStatus(MenuBarState::of(*house.model)), QStringLiteral("Baseline mapped"));
    house.makePatrolledRealm("Letters");
    house.model->selectRealm(first);
    EXPECT_EQ(menuBarStatus(MenuBarState::of(*house.model)), QStringLiteral("Loading…"));
    house.settle();
    EXPECT_EQ(menuBarStatus(MenuBarState::of(*house.model)), QStringLiteral("Baseline mapped"));
    EXPECT_EQ(MenuBarState::of(*house.model).grants, 2U);
    house.makeRealm("Fresh");
    house.settle();
    EXPECT_EQ(menuBarStatus(MenuBarState::of(*house.model)),
              QStringLiteral("Ready for a first patrol"));
}

TEST(MenuBarEntries, theModelsStateIsWhatIsShown)
{
    ModelHouse house;
    EXPECT_EQ(MenuBarState::of(*house.model).activeRootURL, std::nullopt);
    house.makePatrolledRealm("Home");
    house.directory.file("Home/more", 8'192);
    house.patrol();
    const MenuBarState state = MenuBarState::of(*house.model);
    EXPECT_TRUE(state.hasPreviousSnapshot);
    EXPECT_EQ(menuBarStatus(state), QStringLiteral("1 changes last patrol"));
    house.model->patrolActiveRealm();
    EXPECT_TRUE(MenuBarState::of(*house.model).isPatrolling);
    EXPECT_EQ(MenuBarState::of(*house.model).patrollingRootURL, state.activeRootURL);
    house.settle();
}

}  // namespace gruk
