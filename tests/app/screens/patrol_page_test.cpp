#include "app/screens/patrol_page.h"

#include <QAbstractButton>
#include <QMenu>
#include <gtest/gtest.h>

#include "app/screens/finding_row.h"
#include "app/screens/metric_card.h"
#include "core/patrol/metadata_reader.h"
#include "platform/foundation/errors.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::ScreenHouse;

void makeDuplicate(const ScreenHouse& house, const std::string& folder, std::size_t size)
{
    house.directory.file(folder + "/report.pdf", size);
    house.directory.file(folder + "/report (1).pdf", size);
}

QStringList figures(const ScreenHouse& house)
{
    QStringList values;
    for (const MetricCard* card : house.window->findChildren<MetricCard*>()) {
        values.append(card->valueText());
    }
    return values;
}

QStringList findingNames(const ScreenHouse& house)
{
    std::map<int, QString> byPlace;
    for (const FindingRow* row : house.window->findChildren<FindingRow*>()) {
        if (row->isVisible()) {
            byPlace[row->y()] = row->accessibleName();
        }
    }
    QStringList names;
    for (const auto& [place, name] : byPlace) {
        names.append(name);
    }
    return names;
}

}  // namespace

TEST(PatrolPage, aRealmWithoutASnapshotAsksForAMap)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.settle();
    for (const char* text :
         {"THE REALM OF", "Home", "No baseline yet", "Map this realm", "First, Gruk needs a map",
          ("The first patrol looks for what it can already tell you about — duplicate downloads, "
           "installers you're finished with, caches you don't need — and starts a private baseline "
           "so next time it can show you what changed."),
          ("Large disks can take a while. An interrupted patrol is discarded, never saved as a "
           "misleading snapshot."),
          "MAPPED", "0 KB", "allocated in this realm", "SINCE LAST PATROL", "Baseline",
          "comparison starts next time", "TO REVIEW", "0", "evidence-backed findings",
          ("Review Only is on until you say otherwise. Nothing is ever deleted — the most the Gruk "
           "can do is move things to the system Trash, one confirmation at a time.")}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_FALSE(house.shows(QStringLiteral("Worth a look")));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(PatrolPage, aFirstPatrolSumsUpAndSaysThatTheBaselineIsThere)
{
    ScreenHouse house;
    makeDuplicate(house, "Home", 40'960);
    house.makePatrolledRealm("Home");
    for (const char* text :
         {"Patrol again", "First patrol of Home complete.", "First patrol complete.",
          "The Gruk found 41 KB you can take back today. You don't need to organise anything.",
          ("Also: baseline recorded. From now on the Gruk knows what your territory looks like, so "
           "next patrol it can tell you what changed — not just what's big."),
          "Worth a look", "Suggestions, not verdicts. Gruk shows its evidence and waits for you.",
          "The big stuff", "first look — no comparison yet"}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_FALSE(house.shows(QStringLiteral("What changed at the top level")));
    EXPECT_FALSE(house.shows(QStringLiteral("First, Gruk needs a map")));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(PatrolPage, aSecondPatrolShowsWhatChanged)
{
    ScreenHouse house;
    house.directory.file("Home/grows/file", 8'192);
    house.directory.file("Home/goes", 8'192);
    house.makePatrolledRealm("Home");
    house.directory.file("Home/grows/file", 40'960);
    std::remove(house.directory.path("Home/goes").c_str());
    house.patrol();
    EXPECT_EQ(figures(house), (QStringList{QStringLiteral("49 KB"), QStringLiteral("+25 KB"),
                                           QStringLiteral("1")}));
    for (const char* text : {"What changed at the top level", "net allocated change", "grows",
                             "+33 KB", "goes", "−8 KB"}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_FALSE(house.shows(QStringLiteral("First patrol complete.")));
}

TEST(PatrolPage, aSecondPatrolWithoutChangesSaysSo)
{
    ScreenHouse house;
    house.makePatrolledRealm("Home");
    house.patrol();
    for (const char* text :
         {"No allocated-size changes since the previous patrol.",
          "Nothing meets the current review rules.", "no change since last patrol"}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
}

TEST(PatrolPage, whileTheHistoryLoadsEachFigureIsLoading)
{
    ScreenHouse house;
    const FileURL home = house.makePatrolledRealm("Home");
    house.makeRealm("Other");
    house.settle();
    house.model->selectRealm(home);
    house.repaint();
    EXPECT_EQ(figures(house), (QStringList{QStringLiteral("Loading"), QStringLiteral("Loading"),
                                           QStringLiteral("Loading")}));
    EXPECT_FALSE(house.shows(QStringLiteral("First, Gruk needs a map")));
    house.settle();
    EXPECT_EQ(figures(house).first(), QStringLiteral("8 KB"));
}

TEST(PatrolPage, whileTheHistoryOfAMappedRealmLoadsNothingSaysThatThereIsNone)
{
    ScreenHouse house;
    const FileURL home = house.makePatrolledRealm("Home");
    const FileURL other = house.makeRealm("Other");
    house.settle();
    house.model->showTerritories();
    house.settle();
    house.model->selectRealm(home);
    house.repaint();
    ASSERT_TRUE(house.model->isLoadingRealmHistory());
    EXPECT_TRUE(house.shows(QStringLiteral("Loading…")));
    EXPECT_NE(house.button(QStringLiteral("Patrol again")), nullptr);
    EXPECT_FALSE(house.shows(QStringLiteral("No baseline yet")));
    EXPECT_FALSE(house.shows(QStringLiteral("Map this realm")));
    EXPECT_FALSE(house.shows(QStringLiteral("comparison starts next time")));
    house.settle();
    EXPECT_FALSE(house.shows(QStringLiteral("Loading…")));
    EXPECT_NE(house.button(QStringLiteral("Patrol again")), nullptr);
    // Of one that was never mapped that is said at once.
    house.model->selectRealm(other);
    house.repaint();
    ASSERT_TRUE(house.model->isLoadingRealmHistory());
    EXPECT_FALSE(house.shows(QStringLiteral("Loading…")));
    EXPECT_TRUE(house.shows(QStringLiteral("No baseline yet")));
    EXPECT_NE(house.button(QStringLiteral("Map this realm")), nullptr);
}

TEST(PatrolPage, whatWasTakenForMappedSaysSoWhenItIsNot)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.repaint();
    house.settle();
    EXPECT_FALSE(house.shows(QStringLiteral("Loading…")));
    EXPECT_TRUE(house.shows(QStringLiteral("No baseline yet")));
    EXPECT_NE(house.button(QStringLiteral("Map this realm")), nullptr);
}

TEST(PatrolPage, aRunningPatrolShowsItsProgressAndCanBeStopped)
{
    ScreenHouse* watched = nullptr;
    QStringList seen;
    ScreenHouse house(std::make_shared<SnapshotScanner>([&](const FileURL& folder) {
        if (watched != nullptr) {
            watched->loop->run();
            watched->repaint();
            seen = watched->texts();
            watched->button(QStringLiteral("Stop patrol"))->click();
        }
        return MetadataReader::entries(folder);
    }));
    house.directory.file("Home/folder/file", 10);
    house.makeRealm("Home");
    house.settle();
    watched = &house;
    house.model->patrolActiveRealm();
    house.settle();
    EXPECT_TRUE(seen.contains(QStringLiteral("Patrolling…")));
    EXPECT_TRUE(seen.contains(QStringLiteral("0 paths checked so far")));
    EXPECT_FALSE(seen.contains(QStringLiteral("Map this realm")));
    EXPECT_TRUE(house.shows(QStringLiteral("Patrol stopped. No partial snapshot was saved.")));
    EXPECT_TRUE(house.shows(QStringLiteral("Map this realm")));
}

TEST(PatrolPage, whileAnotherRealmIsPatrolledItsButtonIsReplaced)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.makeRealm("Other");
    house.settle();
    house.model->patrolActiveRealm();
    house.model->selectRealm(FileURL::directory(house.directory.path("Home")));
    house.repaint();
    EXPECT_EQ(house.button(QStringLiteral("Map this realm")), nullptr);
    EXPECT_TRUE(house.shows(QStringLiteral("The Gruk is off patrolling Other — 0 paths so far.")));
    EXPECT_TRUE(
        house.shows(QStringLiteral("One patrol at a time — the Gruk finishes Other first.")));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
    house.settle();
    EXPECT_NE(house.button(QStringLiteral("Map this realm")), nullptr);
}

TEST(PatrolPage, aPatrolIsStoppedFromAnotherRealmsPage)
{
    ScreenHouse house;
    house.makeRealm("Home");
    const FileURL other = house.makeRealm("Other");
    house.settle();
    house.model->patrolActiveRealm();
    house.model->selectRealm(FileURL::directory(house.directory.path("Home")));
    house.repaint();
    QAbstractButton* stop = house.button(QStringLiteral("Stop patrol"));
    ASSERT_NE(stop, nullptr);
    EXPECT_EQ(stop->accessibleDescription(), QStringLiteral("Other"));
    stop->setFocus();
    stop->click();
    house.settle();
    EXPECT_FALSE(house.model->isPatrolling());
    EXPECT_TRUE(house.stored(other).empty());
    EXPECT_TRUE(house.shows(QStringLiteral("Patrol stopped. No partial snapshot was saved.")));
    QAbstractButton* start = house.button(QStringLiteral("Map this realm"));
    ASSERT_NE(start, nullptr);
    EXPECT_EQ(house.window->focusWidget(), start);
}

TEST(PatrolPage, tellsWhatAPatrolCouldNotSee)
{
    ScreenHouse house(std::make_shared<SnapshotScanner>([](const FileURL& folder) {
        if (folder.lastPathComponent() == "closed") {
            throw FileError(std::make_error_code(std::errc::permission_denied), "list",
                            folder.path());
        }
        return MetadataReader::entries(folder);
    }));
    house.directory.folder("Home/closed");
    house.makePatrolledRealm("Home");
    EXPECT_TRUE(house.shows(
        QStringLiteral("The Gruk couldn't see everything: 1 area was off-limits. What's shown "
                       "covers only the parts it could reach.")));
}

TEST(PatrolPage, aFindingTellsOnRequestWhyItWasFlagged)
{
    ScreenHouse house;
    makeDuplicate(house, "Home", 40'960);
    house.makePatrolledRealm("Home");
    ASSERT_EQ(findingNames(house),
              QStringList{QStringLiteral("report (1).pdf, 41 KB, Likely duplicate")});
    QAbstractButton* why = house.button(QStringLiteral("Why the Gruk flagged this"));
    ASSERT_NE(why, nullptr);
    why->click();
    house.settle();
    for (const char* text :
         {"Hide why",
          ("Two files in the same folder, matching in size down to the byte, with near-identical "
           "names. That's what a duplicate download looks like."),
          "A same-size sibling named report.pdf exists beside this numbered duplicate.",
          "The facts here are solid. The decision is still yours."}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
    house.button(QStringLiteral("Hide why"))->click();
    house.settle();
    EXPECT_FALSE(house.shows(QStringLiteral("The facts here are solid. The decision is still "
                                            "yours.")));
}

TEST(PatrolPage, findingsAreSortedAndFilteredAsPicked)
{
    ScreenHouse house;
    makeDuplicate(house, "Home", 8'192);
    house.directory.file("Home/p/node_modules/x.js", 40'960);
    house.makePatrolledRealm("Home");
    const QString cache = QStringLiteral("node_modules, 41 KB, Known cache");
    const QString duplicate = QStringLiteral("report (1).pdf, 8 KB, Likely duplicate");
    EXPECT_EQ(findingNames(house), (QStringList{cache, duplicate}));

    house.button(QStringLiteral("Reason"))->click();
    house.settle();
    EXPECT_EQ(findingNames(house), (QStringList{duplicate, cache}));
    house.button(QStringLiteral("Name"))->click();
    house.settle();
    EXPECT_EQ(findingNames(house), (QStringList{cache, duplicate}));

    QStringList kinds;
    QAction* caches = nullptr;
    QAction* growth = nullptr;
    for (QAction* action : house.window->findChildren<QAction*>()) {
        if (action->isCheckable()) {
            kinds.append(action->text());
            caches = action->text() == QStringLiteral("Known cache") ? action : caches;
            growth = action->text() == QStringLiteral("Grew quickly") ? action : growth;
        }
    }
    EXPECT_EQ(kinds, (QStringList{QStringLiteral("All kinds"), QStringLiteral("Grew quickly"),
                                  QStringLiteral("Likely duplicate"),
                                  QStringLiteral("Old installer"), QStringLiteral("Known cache")}));
    caches->trigger();
    house.settle();
    EXPECT_EQ(findingNames(house), QStringList{cache});
    EXPECT_NE(house.button(QStringLiteral("Known cache")), nullptr);
    growth->trigger();
    house.settle();
    EXPECT_TRUE(findingNames(house).isEmpty());
    EXPECT_TRUE(house.shows(QStringLiteral("None of this kind.")));
}

TEST(PatrolPage, aFindingWhoseItemIsGoneSaysSo)
{
    ScreenHouse house;
    makeDuplicate(house, "Home", 40'960);
    house.makePatrolledRealm("Home");
    EXPECT_FALSE(house.shows(QStringLiteral("Already gone — next patrol will forget it")));
    std::remove(house.directory.path("Home/report (1).pdf").c_str());
    house.button(QStringLiteral("Name"))->click();
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("Already gone — next patrol will forget it")));
}

TEST(PatrolPage, withSevenHeavyItemsTheListShowsFiveAndShowAllSeven)
{
    ScreenHouse house;
    for (int number = 1; number < 7; ++number) {
        house.directory.file("Home/file" + std::to_string(number),
                             static_cast<std::size_t>(number) * 8'192);
    }
    house.makePatrolledRealm("Home");
    const auto notes = [&] {
        return house.texts().count(QStringLiteral("first look — no comparison yet"));
    };
    EXPECT_EQ(notes(), 5);
    QAbstractButton* showAll = house.button(QStringLiteral("Show all 7"));
    ASSERT_NE(showAll, nullptr);
    showAll->click();
    house.settle();
    EXPECT_EQ(notes(), 7);
    EXPECT_EQ(house.button(QStringLiteral("Show all 7")), nullptr);
}

TEST(PatrolPage, anotherRealmsPageStartsAfresh)
{
    test::PatrolPageHouse house;
    const FileURL home = house.makeManyFindings(6);
    house.allowTrash();
    house.settle();
    for (const char* text : {"Name", "Show all 7", "Automations", "Select all"}) {
        house.button(QString::fromUtf8(text))->click();
        house.settle();
    }
    for (FindingRow* row : house.rows()) {
        row->disclosure()->click();
    }
    house.filterBy("Likely duplicate");
    ASSERT_TRUE(house.shows(QStringLiteral("Hide why")));
    ASSERT_NE(house.button(QStringLiteral("Clear selection")), nullptr);
    house.makeRealm("Other");
    house.settle();
    house.select(home);
    house.settle();
    EXPECT_TRUE(house.button(QStringLiteral("Size"))->isChecked());
    EXPECT_NE(house.button(QStringLiteral("All kinds")), nullptr);
    EXPECT_NE(house.button(QStringLiteral("Show all 7")), nullptr);
    EXPECT_EQ(house.button(QStringLiteral("Hide why")), nullptr);
    EXPECT_FALSE(house.shows(QStringLiteral("Cadence")));
    EXPECT_EQ(house.button(QStringLiteral("Clear selection")), nullptr);
    for (const FindingRow* row : house.rows()) {
        EXPECT_FALSE(test::isTicked(row));
    }
}

TEST(PatrolPage, namesThatAreNotTextShowReplacements)
{
    ScreenHouse house;
    house.directory.file("b\xff"
                         "d/caf\xe9.txt",
                         8'192);
    house.makePatrolledRealm("b\xff"
                             "d");
    EXPECT_TRUE(house.shows(QStringLiteral("b\uFFFDd")));
    EXPECT_TRUE(house.shows(QStringLiteral("caf\uFFFD.txt")));
}

}  // namespace gruk
