#include <algorithm>
#include <chrono>
#include <filesystem>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/heavy_section.h"
#include "app/screens/metric_card.h"
#include "app/screens/selection_box.h"
#include "app/screens/selection_card.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::isTicked;
using test::PatrolPageHouse;
using test::textIn;

constexpr const char* undone = "Put everything back";

/// All three findings of the realm, ticked before Trash actions were taken back.
void makeSelectionInReviewOnly(PatrolPageHouse& house)
{
    house.makeFindings();
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.model->setReviewOnly(true);
    house.settle();
}

/// How many rows of the heavy list begin with that name.
qsizetype heavyRows(const PatrolPageHouse& house, const char* name)
{
    return std::ranges::count_if(
        house.window->findChildren<HeavySection*>().constFirst()->findChildren<QLabel*>(),
        [&](const QLabel* label) {
            return label->isVisible() && label->text() == QString::fromUtf8(name);
        });
}

QString figure(const PatrolPageHouse& house, qsizetype index)
{
    return house.window->findChildren<MetricCard*>().at(index)->valueText();
}

}  // namespace

TEST(PatrolPageActions, inReviewOnlyARowHasNoBoxAndNothingCanBeMoved)
{
    PatrolPageHouse house;
    house.makeFindings();
    for (const FindingRow* row : house.rows()) {
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
    PatrolPageHouse house;
    house.makeFindings();
    house.button(QStringLiteral("Enable Trash actions…"))->click();
    house.repaint();
    QWidget* asked = house.question("trashUnlockDialog");
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(textIn(asked),
              QStringLiteral("Enable Trash actions?|Only use this in a disposable test realm for "
                             "now. Gruk will still ask before each item and will only use the "
                             "system Trash."));
    house.answer("trashUnlockDialog", "Keep Review Only");
    EXPECT_TRUE(house.model->reviewOnlyMode());
    house.button(QStringLiteral("Enable Trash actions…"))->click();
    house.repaint();
    house.answer("trashUnlockDialog", "Enable Trash Actions");
    EXPECT_FALSE(house.model->reviewOnlyMode());
    EXPECT_TRUE(house.shows(QStringLiteral("Trash actions enabled")));
    EXPECT_NE(house.button(QStringLiteral("Return to Review Only")), nullptr);
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(PatrolPageActions, theQuestionNamesWhatStandsThereNow)
{
    PatrolPageHouse house;
    const FileURL home = house.makeFindings();
    house.allowTrash();
    house.settle();
    buttonIn(house.rows().front(), "Move to Trash")->click();
    house.repaint();
    QWidget* asked = house.question("trashQuestion");
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(
        textIn(asked),
        QStringLiteral("Move node_modules to Trash?|Folder · 82 KB\n%1/p/node_modules\n\nGruk "
                       "will use the system Trash. It will stop if this item changed after "
                       "you opened this confirmation.")
            .arg(QString::fromStdString(home.path())));
    house.answer("trashQuestion", "Cancel");
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules")));
    EXPECT_FALSE(house.model->lastTrashOperation());
}

TEST(PatrolPageActions, theQuestionsSayWhereItemsWillLieWhoseTrashTheDesktopDoesNotShow)
{
    PatrolPageHouse house([](ModelCollaborators& all) {
        TrashCalls calls;
        calls.fileExists = [](const FileURL& url) { return std::filesystem::exists(url.path()); };
        calls.hiddenTrash = [](const FileURL& url) {
            // The disk of the realm; what is told of the item itself is its folder's.
            return url.path().find("/Home/") == std::string::npos
                       ? std::nullopt
                       : std::optional(FileURL::directory("/disk/.Trash-1/files"));
        };
        all.trashService = std::make_shared<TrashService>(calls);
    });
    house.makeFindings();
    house.allowTrash();
    house.settle();
    buttonIn(house.rows().front(), "Move to Trash")->click();
    house.repaint();
    EXPECT_TRUE(textIn(house.question("trashQuestion"))
                    .endsWith(QStringLiteral(
                        "after you opened this confirmation.\n\nYour file manager may not show the "
                        "Trash of this disk. The item will lie in /disk/.Trash-1/files.")));
    house.answer("trashQuestion", "Cancel");
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    house.button(QStringLiteral("Move 3 to Trash…"))->click();
    house.repaint();
    EXPECT_TRUE(textIn(house.question("batchTrashQuestion"))
                    .endsWith(QStringLiteral(
                        "anything it had to skip.\n\nYour file manager may not show the Trash of "
                        "this disk. The items will lie in /disk/.Trash-1/files.")));
}

TEST(PatrolPageActions, anItemThatWasSwappedWhileTheQuestionWasOpenStays)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    buttonIn(house.rows().front(), "Move to Trash")->click();
    house.repaint();
    std::filesystem::rename(house.directory.path("Home/p/node_modules"),
                            house.directory.path("Home/p/kept"));
    std::filesystem::create_directory(house.directory.path("Home/p/node_modules"));
    house.answer("trashQuestion", "Move to Trash");
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules")));
    EXPECT_TRUE(house.shows(QStringLiteral(
        "Gruk stopped because that item changed after you reviewed it. Patrol again before "
        "deciding. Nothing was changed.")));
}

TEST(PatrolPageActions, anItemMovedToTheTrashLeavesTheFindingsAndTheHeavyListAtOnce)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    EXPECT_EQ(figure(house, 0), QStringLiteral("188 KB"));
    EXPECT_EQ(figure(house, 2), QStringLiteral("3"));
    ASSERT_EQ(heavyRows(house, "report (1).pdf"), 1);
    buttonIn(house.rows()[1], "Move to Trash")->click();
    house.repaint();
    house.answer("trashQuestion", "Move to Trash");
    EXPECT_FALSE(std::filesystem::exists(house.directory.path("Home/report (1).pdf")));
    EXPECT_EQ(house.rows().size(), 2U);
    EXPECT_EQ(figure(house, 2), QStringLiteral("2"));
    EXPECT_EQ(figure(house, 0), QStringLiteral("147 KB"));
    EXPECT_EQ(heavyRows(house, "report (1).pdf"), 0);
    EXPECT_TRUE(house.shows(QStringLiteral("Moved report (1).pdf to Trash.")));
}

TEST(PatrolPageActions, undoAfterATrashMovePutsTheBytesBackButNotTheFinding)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    const QString mapped = figure(house, 0);
    buttonIn(house.rows().front(), "Move to Trash")->click();
    house.repaint();
    house.answer("trashQuestion", "Move to Trash");
    house.button(QStringLiteral("Undo"))->click();
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules/x.js")));
    EXPECT_EQ(figure(house, 0), mapped);
    EXPECT_EQ(house.rows().size(), 2U);
    EXPECT_EQ(house.button(QStringLiteral("Undo")), nullptr);
}

TEST(PatrolPageActions, undoIsOnItsKeysToo)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    buttonIn(house.rows().front(), "Move to Trash")->click();
    house.repaint();
    house.answer("trashQuestion", "Move to Trash");
    QApplication::setActiveWindow(house.window.get());
    QTest::keyClick(house.window.get(), Qt::Key_Z, Qt::ControlModifier);
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/p/node_modules/x.js")));
}

TEST(PatrolPageActions, aClickTicksARowAndWithShiftAllUpToIt)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    const std::vector<FindingRow*> all = house.rows();
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
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    auto* box = house.rows()[1]->findChild<SelectionBox*>();
    QTest::keyClick(box, Qt::Key_Space);
    house.repaint();
    EXPECT_TRUE(box->isChecked());
    QTest::keyClick(house.rows()[0]->findChild<SelectionBox*>(), Qt::Key_Space, Qt::ShiftModifier);
    house.repaint();
    EXPECT_TRUE(isTicked(house.rows()[0]));
    QTest::keyClick(box, Qt::Key_Space);
    house.repaint();
    EXPECT_FALSE(box->isChecked());
}

TEST(PatrolPageActions, theSelectionIsKeptThroughSortingAndFiltering)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    QTest::mouseClick(house.rows()[0], Qt::LeftButton, {}, QPoint(300, 10));
    house.button(QStringLiteral("Reason"))->click();
    house.settle();
    EXPECT_FALSE(isTicked(house.rows()[0]));
    EXPECT_TRUE(isTicked(house.rows()[2]));
    house.filterBy("Likely duplicate");
    EXPECT_EQ(house.rows().size(), 2U);
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
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    house.button(QStringLiteral("Move 3 to Trash…"))->click();
    house.repaint();
    QWidget* asked = house.question("batchTrashQuestion");
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(
        textIn(asked),
        QStringLiteral("Move 3 items to Trash?|Together they hold 131 KB. The Gruk will check "
                       "each item hasn't changed since you selected it, use only the system "
                       "Trash, and tell you honestly about anything it had to skip."));
    house.answer("batchTrashQuestion", "Move to Trash");
    EXPECT_TRUE(house.rows().empty());
    EXPECT_FALSE(std::filesystem::exists(house.directory.path("Home/report (1).pdf")));
    EXPECT_EQ(house.button(QStringLiteral("Clear selection")), nullptr);
    EXPECT_NE(house.button(QStringLiteral("Undo")), nullptr);
}

TEST(PatrolPageActions, aSelectionThatIsLeftInReviewOnlyOffersToEnableTrashActions)
{
    PatrolPageHouse house;
    makeSelectionInReviewOnly(house);
    EXPECT_TRUE(house.shows(QStringLiteral("3 selected · 131 KB")));
    EXPECT_EQ(house.button(QStringLiteral("Move 3 to Trash…")), nullptr);
    EXPECT_EQ(house.button(QStringLiteral("Select all")), nullptr);
    QAbstractButton* enable =
        buttonIn(house.window->findChild<SelectionCard*>(), "Enable Trash actions…");
    ASSERT_TRUE(enable != nullptr && enable->isVisible());
    enable->click();
    house.repaint();
    house.answer("trashUnlockDialog", "Enable Trash Actions");
    EXPECT_FALSE(house.model->reviewOnlyMode());
    EXPECT_NE(house.button(QStringLiteral("Move 3 to Trash…")), nullptr);
}

TEST(PatrolPageActions, everyButtonThatOffersTrashActionsAsksFirst)
{
    PatrolPageHouse house;
    makeSelectionInReviewOnly(house);
    std::vector<QAbstractButton*> offers;
    for (QAbstractButton* each : house.page()->findChildren<QAbstractButton*>()) {
        if (each->isVisible() && each->text() == QStringLiteral("Enable Trash actions…")) {
            offers.push_back(each);
        }
    }
    // Beside the organising, in the panel and with the selection.
    ASSERT_EQ(offers.size(), 3U);
    for (QAbstractButton* offer : offers) {
        offer->click();
        house.repaint();
        EXPECT_NE(house.question("trashUnlockDialog"), nullptr);
        house.answer("trashUnlockDialog", "Keep Review Only");
        EXPECT_TRUE(house.model->reviewOnlyMode());
    }
}

TEST(PatrolPageActions, newArrivalsAreFiledWhenTheUserSaysSo)
{
    PatrolPageHouse house;
    const FileURL home = house.makePatrolledRealm("Home");
    house.model->addRealmRule(FileKind::archive, "Boxes", true, home);
    house.directory.file("Home/new.zip", 8'192);
    house.allowTrash();
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

TEST(PatrolPageActions, inReviewOnlyNewArrivalsWaitAndTrashActionsAreOffered)
{
    PatrolPageHouse house;
    const FileURL home = house.makePatrolledRealm("Home");
    house.model->addRealmRule(FileKind::archive, "Boxes", true, home);
    house.directory.file("Home/new.zip", 8'192);
    house.patrol();
    auto* offer = house.page()->findChild<QWidget*>(QStringLiteral("ruleFiling"));
    EXPECT_TRUE(house.shows(QStringLiteral("The Gruk can file 1 new arrivals under your rules.")));
    EXPECT_EQ(house.button(QStringLiteral("File them")), nullptr);
    QAbstractButton* unlock = buttonIn(offer, "Enable Trash actions…");
    ASSERT_NE(unlock, nullptr);
    unlock->click();
    house.repaint();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/new.zip")));
    house.answer("trashUnlockDialog", "Enable Trash Actions");
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/new.zip"))) << "no move yet";
    ASSERT_NE(buttonIn(offer, "File them"), nullptr);
    buttonIn(offer, "File them")->click();
    house.settle();
    EXPECT_TRUE(std::filesystem::exists(house.directory.path("Home/Boxes/new.zip")));
}

TEST(PatrolPageActions, afterEverythingWentToTheTrashNothingSaysThatNothingWasFound)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    const auto nothingFound = [&house] {
        const QString said = house.texts().join(QLatin1Char('|'));
        return said.contains(QStringLiteral("didn't find anything"))
               || said.contains(QStringLiteral("not enough to judge"));
    };
    house.model->moveFindingsToTrash(house.model->findings());
    house.settle();
    ASSERT_TRUE(house.model->findings().empty());
    EXPECT_TRUE(house.shows(QStringLiteral("First patrol complete.")));
    EXPECT_FALSE(nothingFound());
    // It comes back, but to the findings only with the next patrol.
    house.model->undoLastTrash();
    house.settle();
    EXPECT_FALSE(nothingFound());
    house.window->setDetailPage(DetailPage::browse);
    house.window->setDetailPage(DetailPage::patrol);
    house.settle();
    EXPECT_FALSE(nothingFound());
}

TEST(PatrolPageActions, undoSaysWhatItPutsBackAlsoBesideAMessageOfSomethingElse)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    buttonIn(house.rows()[1], "Move to Trash")->click();
    house.repaint();
    house.answer("trashQuestion", "Move to Trash");
    const QString what = QStringLiteral("Puts report (1).pdf back from the Trash");
    const auto says = [&house] {
        const QAbstractButton* undo = house.button(QStringLiteral("Undo"));
        return std::pair(
            undo->toolTip().contains(QStringLiteral("Puts report (1).pdf back from the Trash")),
            undo->accessibleDescription());
    };
    EXPECT_EQ(says(), std::pair(true, what));
    house.patrol();
    ASSERT_TRUE(house.shows(QStringLiteral("Patrol of Home complete. Gruk found 1 changed items.")))
        << house.texts().join(QLatin1Char('|')).toStdString();
    EXPECT_EQ(says(), std::pair(true, what));
}

TEST(PatrolPageActions, organisingIsClosedInReviewOnlyAndSaysWhy)
{
    PatrolPageHouse house;
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
    PatrolPageHouse house;
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
    PatrolPageHouse house;
    house.makePatrolledRealm("Home");
    house.directory.file("Home/quarry/stone", 40'960);
    house.patrol();
    EXPECT_TRUE(house.shows(QStringLiteral("New region discovered, m'lord: quarry (41 KB).")));
}

TEST(PatrolPageActions, aFindingInAFolderThatIsOneTooCountsOnceInTheSelectionAndInTheQuestion)
{
    PatrolPageHouse house;
    house.makeDuplicate("Home/p/node_modules", 81'920);
    house.makePatrolledRealm("Home");
    EXPECT_TRUE(house.shows(QStringLiteral("The Gruk found 164 KB you can take back today. You "
                                           "don't need to organise anything.")));
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    EXPECT_TRUE(house.shows(QStringLiteral("2 selected · 164 KB")));
    house.button(QStringLiteral("Move 2 to Trash…"))->click();
    house.repaint();
    QWidget* asked = house.question("batchTrashQuestion");
    ASSERT_NE(asked, nullptr);
    const QString text = textIn(asked);
    EXPECT_TRUE(text.contains(QStringLiteral("Together they hold 164 KB."))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("both copies of 1 file"))) << text.toStdString();
    house.answer("batchTrashQuestion", "Move to Trash");
    EXPECT_EQ(house.model->lastActionMessage(), "Moved 1 of 1 to the Trash — 164 KB taken back.");
    EXPECT_TRUE(house.rows().empty());
}

TEST(PatrolPageActions, aBatchOfADuplicateAndItsOriginalSaysSo)
{
    PatrolPageHouse house;
    house.directory.file("Home/x (1).dmg", 40'960);
    // An old installer as well.
    std::filesystem::last_write_time(house.directory.file("Home/x.dmg", 40'960),
                                     std::filesystem::file_time_type::clock::now()
                                         - std::chrono::hours(24 * 40));
    house.makePatrolledRealm("Home");
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.repaint();
    house.button(QStringLiteral("Move 2 to Trash…"))->click();
    house.repaint();
    EXPECT_EQ(
        textIn(house.question("batchTrashQuestion")),
        QStringLiteral("Move 2 items to Trash?|Among them are both copies of 1 file.\n\nTogether "
                       "they hold 82 KB. The Gruk will check each item hasn't changed since you "
                       "selected it, use only the system Trash, and tell you honestly about "
                       "anything it had to skip."));
}

}  // namespace gruk
