#include <algorithm>
#include <filesystem>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/finding_row.h"
#include "app/screens/heavy_section.h"
#include "app/screens/metric_card.h"
#include "app/screens/selection_box.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::ScreenHouse;

constexpr const char* undone = "Put everything back";

void makeDuplicate(const ScreenHouse& house, const std::string& folder, std::size_t size)
{
    house.directory.file(folder + "/report.pdf", size);
    house.directory.file(folder + "/report (1).pdf", size);
}

/// A realm with three findings, the largest first: a cache and two duplicates.
FileURL makeFindings(ScreenHouse& house)
{
    house.directory.file("Home/p/node_modules/x.js", 81'920);
    makeDuplicate(house, "Home", 40'960);
    makeDuplicate(house, "Home/b", 8'192);
    return house.makePatrolledRealm("Home");
}

std::vector<FindingRow*> rows(const ScreenHouse& house)
{
    std::map<int, FindingRow*> byPlace;
    for (FindingRow* row : house.window->findChildren<FindingRow*>()) {
        if (row->isVisible()) {
            byPlace[row->y()] = row;
        }
    }
    std::vector<FindingRow*> sorted;
    for (const auto& [place, row] : byPlace) {
        sorted.push_back(row);
    }
    return sorted;
}

bool isTicked(const FindingRow* row)
{
    return row->findChild<SelectionBox*>()->isChecked();
}

QAbstractButton* buttonIn(const QWidget* widget, const char* text)
{
    for (QAbstractButton* button : widget->findChildren<QAbstractButton*>()) {
        if (button->text() == QString::fromUtf8(text)) {
            return button;
        }
    }
    return nullptr;
}

QString textIn(const QWidget* widget)
{
    QStringList texts;
    for (const QLabel* label : widget->findChildren<QLabel*>()) {
        texts.append(label->text());
    }
    return texts.join(QLatin1Char('|'));
}

QWidget* question(const ScreenHouse& house, const char* name)
{
    auto* found = house.window->findChild<QWidget*>(QString::fromLatin1(name));
    return found != nullptr && found->isVisible() ? found : nullptr;
}

void answer(ScreenHouse& house, const char* name, const char* text)
{
    QWidget* asked = question(house, name);
    ASSERT_NE(asked, nullptr) << name;
    buttonIn(asked, text)->click();
    house.settle();
}

/// How many rows of the heavy list begin with that name.
qsizetype heavyRows(const ScreenHouse& house, const char* name)
{
    return std::ranges::count_if(
        house.window->findChildren<HeavySection*>().constFirst()->findChildren<QLabel*>(),
        [&](const QLabel* label) {
            return label->isVisible() && label->text() == QString::fromUtf8(name);
        });
}

QString figure(const ScreenHouse& house, qsizetype index)
{
    return house.window->findChildren<MetricCard*>().at(index)->valueText();
}

}  // namespace

TEST(PatrolPageActions, inReviewOnlyARowHasNoBoxAndNothingCanBeMoved)
{
    ScreenHouse house;
    makeFindings(house);
    for (const FindingRow* row : rows(house)) {
        EXPECT_FALSE(row->findChild<SelectionBox*>()->isVisible());
        QAbstractButton* trash = buttonIn(row, "Review Only");
        ASSERT_NE(trash, nullptr);
        EXPECT_FALSE(trash->isEnabled());
    }
    EXPECT_EQ(house.button(QStringLiteral("Select all")), nullptr);
    EXPECT_TRUE(house.shows(QStringLiteral("Review Only is on")));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(PatrolPageActions, trashActionsAreEnabledOnlyAfterTheQuestion)
{
    ScreenHouse house;
    makeFindings(house);
    house.button(QStringLiteral("Enable Trash actions…"))->click();
    house.repaint();
    QWidget* asked = question(house, "trashUnlockDialog");
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(textIn(asked),
              QStringLiteral("Enable Trash actions?|Only use this in a disposable test realm for "
                             "now. Gruk will still ask before each item and will only use the "
                             "system Trash."));
    answer(house, "trashUnlockDialog", "Keep Review Only");
    EXPECT_TRUE(house.model->reviewOnlyMode());
    house.button(QStringLiteral("Enable Trash actions…"))->click();
    house.repaint();
    answer(house, "trashUnlockDialog", "Enable Trash Actions");
    EXPECT_FALSE(house.model->reviewOnlyMode());
    EXPECT_TRUE(house.shows(QStringLiteral("Trash actions enabled")));
    EXPECT_NE(house.button(QStringLiteral("Return to Review Only")), nullptr);
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(PatrolPageActions, theQuestionNamesWhatStandsThereNow)
{
    ScreenHouse house;
    const FileURL home = makeFindings(house);
    house.allowTrash();
    house.settle();
    buttonIn(rows(house).front(), "Move to Trash")->click();
    house.repaint();
    QWidget* asked = question(house, "trashQuestion");
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(
        textIn(asked),
        QStringLiteral("Move node_modules to Trash?|Folder · 82 KB\n%1/p/node_modules\n\nGruk "
                       "will use the system Trash. It will stop if this item changed after "
                       "you opened this confirmation.")
            .arg(QString::fromStdString(home.path())));
    answer(house, "trashQuestion", "Cancel");
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules")));
    EXPECT_FALSE(house.model->lastTrashOperation());
}

TEST(PatrolPageActions, anItemThatWasSwappedWhileTheQuestionWasOpenStays)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    buttonIn(rows(house).front(), "Move to Trash")->click();
    house.repaint();
    std::filesystem::rename(house.directory.path("Home/p/node_modules"),
                            house.directory.path("Home/p/kept"));
    std::filesystem::create_directory(house.directory.path("Home/p/node_modules"));
    answer(house, "trashQuestion", "Move to Trash");
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules")));
    EXPECT_TRUE(house.shows(QStringLiteral(
        "Gruk stopped because that item changed after you reviewed it. Patrol again before "
        "deciding. Nothing was changed.")));
}

TEST(PatrolPageActions, anItemMovedToTheTrashLeavesTheFindingsAndTheHeavyListAtOnce)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    EXPECT_EQ(figure(house, 0), QStringLiteral("188 KB"));
    EXPECT_EQ(figure(house, 2), QStringLiteral("3"));
    ASSERT_EQ(heavyRows(house, "report (1).pdf"), 1);
    buttonIn(rows(house)[1], "Move to Trash")->click();
    house.repaint();
    answer(house, "trashQuestion", "Move to Trash");
    EXPECT_FALSE(std::filesystem::exists(house.directory.path("Home/report (1).pdf")));
    EXPECT_EQ(rows(house).size(), 2U);
    EXPECT_EQ(figure(house, 2), QStringLiteral("2"));
    EXPECT_EQ(figure(house, 0), QStringLiteral("147 KB"));
    EXPECT_EQ(heavyRows(house, "report (1).pdf"), 0);
    EXPECT_TRUE(house.shows(QStringLiteral("Moved report (1).pdf to Trash.")));
}

TEST(PatrolPageActions, undoAfterATrashMovePutsTheBytesBackButNotTheFinding)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    const QString mapped = figure(house, 0);
    buttonIn(rows(house).front(), "Move to Trash")->click();
    house.repaint();
    answer(house, "trashQuestion", "Move to Trash");
    house.button(QStringLiteral("Undo"))->click();
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules/x.js")));
    EXPECT_EQ(figure(house, 0), mapped);
    EXPECT_EQ(rows(house).size(), 2U);
    EXPECT_EQ(house.button(QStringLiteral("Undo")), nullptr);
}

TEST(PatrolPageActions, undoIsOnItsKeysToo)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    buttonIn(rows(house).front(), "Move to Trash")->click();
    house.repaint();
    answer(house, "trashQuestion", "Move to Trash");
    QApplication::setActiveWindow(house.window.get());
    QTest::keyClick(house.window.get(), Qt::Key_Z, Qt::ControlModifier);
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules/x.js")));
}

TEST(PatrolPageActions, aClickTicksARowAndWithShiftAllUpToIt)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    const std::vector<FindingRow*> all = rows(house);
    ASSERT_EQ(all.size(), 3U);
    QTest::mouseClick(all[0], Qt::LeftButton, {}, QPoint(300, 10));
    house.repaint();
    EXPECT_TRUE(isTicked(all[0]));
    EXPECT_TRUE(house.shows(QStringLiteral("1 selected · 82 KB")));
    QTest::mouseClick(all[2], Qt::LeftButton, Qt::ShiftModifier, QPoint(300, 10));
    house.repaint();
    EXPECT_TRUE(isTicked(all[1]));
    EXPECT_TRUE(isTicked(all[2]));
    EXPECT_TRUE(house.shows(QStringLiteral("3 selected · 131 KB")));
    QTest::mouseClick(all[1], Qt::LeftButton, Qt::ControlModifier, QPoint(300, 10));
    house.repaint();
    EXPECT_FALSE(isTicked(all[1]));
    EXPECT_NE(house.button(QStringLiteral("Move 2 to Trash…")), nullptr);
}

TEST(PatrolPageActions, theKeyboardTicksTheBox)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    auto* box = rows(house)[1]->findChild<SelectionBox*>();
    QTest::keyClick(box, Qt::Key_Space);
    house.repaint();
    EXPECT_TRUE(box->isChecked());
    QTest::keyClick(rows(house)[0]->findChild<SelectionBox*>(), Qt::Key_Space, Qt::ShiftModifier);
    house.repaint();
    EXPECT_TRUE(isTicked(rows(house)[0]));
    QTest::keyClick(box, Qt::Key_Space);
    house.repaint();
    EXPECT_FALSE(box->isChecked());
}

TEST(PatrolPageActions, theSelectionIsKeptThroughSortingAndFiltering)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    QTest::mouseClick(rows(house)[0], Qt::LeftButton, {}, QPoint(300, 10));
    house.button(QStringLiteral("Reason"))->click();
    house.settle();
    EXPECT_FALSE(isTicked(rows(house)[0]));
    EXPECT_TRUE(isTicked(rows(house)[2]));
    for (QAction* action : house.window->findChildren<QAction*>()) {
        if (action->text() == QStringLiteral("Likely duplicate")) {
            action->trigger();
        }
    }
    house.settle();
    EXPECT_EQ(rows(house).size(), 2U);
    EXPECT_TRUE(house.shows(QStringLiteral("1 selected · 82 KB")));
    EXPECT_TRUE(house.shows(QStringLiteral("1 not shown by this filter")));
    house.button(QStringLiteral("Select all of this kind"))->click();
    house.repaint();
    EXPECT_TRUE(house.shows(QStringLiteral("3 selected · 131 KB")));
    house.button(QStringLiteral("Clear selection"))->click();
    house.repaint();
    EXPECT_EQ(house.button(QStringLiteral("Clear selection")), nullptr);
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    EXPECT_TRUE(house.shows(QStringLiteral("2 selected · 49 KB")));
}

TEST(PatrolPageActions, aBatchIsAskedForOnceAndMovesTogether)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    house.button(QStringLiteral("Move 3 to Trash…"))->click();
    house.repaint();
    QWidget* asked = question(house, "batchTrashQuestion");
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(
        textIn(asked),
        QStringLiteral("Move 3 items to Trash?|Together they hold 131 KB. The Gruk will check "
                       "each item hasn't changed since you selected it, use only the system "
                       "Trash, and tell you honestly about anything it had to skip."));
    answer(house, "batchTrashQuestion", "Move to Trash");
    EXPECT_TRUE(rows(house).empty());
    EXPECT_FALSE(std::filesystem::exists(house.directory.path("Home/report (1).pdf")));
    EXPECT_EQ(house.button(QStringLiteral("Clear selection")), nullptr);
    EXPECT_NE(house.button(QStringLiteral("Undo")), nullptr);
}

TEST(PatrolPageActions, aSelectionThatIsLeftInReviewOnlyOffersToEnableTrashActions)
{
    ScreenHouse house;
    makeFindings(house);
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.model->setReviewOnly(true);
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("3 selected · 131 KB")));
    EXPECT_EQ(house.button(QStringLiteral("Move 3 to Trash…")), nullptr);
    EXPECT_EQ(house.button(QStringLiteral("Select all")), nullptr);
}

TEST(PatrolPageActions, newArrivalsAreFiledWhenTheUserSaysSo)
{
    ScreenHouse house;
    const FileURL home = house.makePatrolledRealm("Home");
    house.model->addRealmRule(FileKind::archive, "Boxes", true, home);
    house.directory.file("Home/new.zip", 8'192);
    house.patrol();
    EXPECT_TRUE(house.shows(QStringLiteral("The Gruk can file 1 new arrivals under your rules.")));
    house.button(QStringLiteral("File them"))->click();
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/Boxes/new.zip")));
    ASSERT_NE(house.button(QString::fromUtf8(undone)), nullptr);
    house.button(QString::fromUtf8(undone))->click();
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/new.zip")));
}

TEST(PatrolPageActions, organisingIsClosedInReviewOnlyAndSaysWhy)
{
    ScreenHouse house;
    house.makePatrolledRealm("Home");
    QAbstractButton* organise = house.button(QStringLiteral("Organise this realm"));
    ASSERT_NE(organise, nullptr);
    EXPECT_FALSE(organise->isEnabled());
    EXPECT_TRUE(organise->toolTip().contains(QStringLiteral("it gets the same trust bar.")));
    house.allowTrash();
    house.settle();
    EXPECT_TRUE(organise->isEnabled());
    EXPECT_TRUE(organise->toolTip().contains(QStringLiteral("one click puts it all back.")));
}

TEST(PatrolPageActions, onlyARealmOfItsOwnHasAutomations)
{
    ScreenHouse house;
    house.directory.folder("Home/inner");
    house.makePatrolledRealm("Home");
    QAbstractButton* automations = house.button(QStringLiteral("Automations"));
    ASSERT_NE(automations, nullptr);
    automations->click();
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("Cadence")));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
    house.select(FileURL::directory(house.directory.path("Home/inner")));
    house.settle();
    EXPECT_EQ(house.button(QStringLiteral("Automations")), nullptr);
}

TEST(PatrolPageActions, aNewRegionIsAnnounced)
{
    ScreenHouse house;
    house.makePatrolledRealm("Home");
    house.directory.file("Home/quarry/stone", 40'960);
    house.patrol();
    bool isAnnounced = false;
    for (const QString& text : house.texts()) {
        isAnnounced = isAnnounced || text.contains(QStringLiteral("quarry"));
    }
    EXPECT_TRUE(isAnnounced);
}

}  // namespace gruk
