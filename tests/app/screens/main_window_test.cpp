#include "app/screens/main_window.h"

#include <filesystem>
#include <set>
#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QDropEvent>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "app/model/setting_keys.h"
#include "app/screens/confirmation_dialog.h"
#include "app/screens/file_table_view.h"
#include "app/screens/realm_row.h"
#include "app/screens/review_only_panel.h"
#include "app/theme/card.h"
#include "app/theme/overlay.h"
#include "app/theme/text_field.h"
#include "tests/support/screen_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::ScreenHouse;

QWidget* rowOf(const ScreenHouse& house, const char* name)
{
    for (RealmRow* row : house.window->findChildren<RealmRow*>()) {
        if (row->accessibleName().startsWith(QLatin1String(name))) {
            return row;
        }
    }
    return nullptr;
}

ConfirmationDialog* askForRemoval(ScreenHouse& house, QWidget* row)
{
    Q_EMIT row->customContextMenuRequested(QPoint());
    auto* menu = row->findChild<QMenu*>();
    EXPECT_EQ(menu->actions().constFirst()->text(), QStringLiteral("Remove Realm…"));
    menu->actions().constFirst()->trigger();
    menu->close();
    house.repaint();
    return house.window->findChild<ConfirmationDialog*>(QStringLiteral("removalDialog"));
}

QAbstractButton* named(const ScreenHouse& house, const char* name)
{
    for (QAbstractButton* button : house.window->findChildren<QAbstractButton*>()) {
        if (button->isVisible() && button->accessibleName() == QString::fromUtf8(name)) {
            return button;
        }
    }
    return nullptr;
}

}  // namespace

TEST(MainWindow, withNoGrantsItWelcomes)
{
    const ScreenHouse house;
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("welcomePage"));
    for (const char* text :
         {"GRUK", "Local storage patrol", "KNOW WHAT GREW.", "RECLAIM YOUR REALM.",
          ("Gruk maps a folder, remembers it, then shows you what changed. It never deletes on its "
           "own."),
          "Local metadata only", "Review before Trash", "No subscriptions",
          "Choose a realm to patrol", "Grant another realm…"}) {
        EXPECT_TRUE(house.shows(QString::fromUtf8(text))) << text;
    }
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(MainWindow, choosingARealmOpensItsPage)
{
    ScreenHouse house;
    house.panel->answers.push_back(FileURL::directory(house.directory.folder("Home")));
    house.button(QStringLiteral("Choose a realm to patrol"))->click();
    house.settle();
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("patrolPage"));
    EXPECT_TRUE(house.shows(QStringLiteral("Home")));
    EXPECT_NE(rowOf(house, "Home"), nullptr);
    EXPECT_TRUE(
        rowOf(house, "Home")->accessibleDescription().startsWith(QStringLiteral("Selected, ")));
}

TEST(MainWindow, aRealmIsOpenedByItsRow)
{
    ScreenHouse house;
    const FileURL first = house.makeRealm("first");
    house.makeRealm("second");
    house.settle();
    qobject_cast<QAbstractButton*>(rowOf(house, "first"))->click();
    house.settle();
    EXPECT_EQ(house.model->activeRootURL(), first);
    EXPECT_FALSE(
        rowOf(house, "second")->accessibleDescription().contains(QStringLiteral("Selected")));
}

TEST(MainWindow, aRealmThatIsNotThereIsDisconnectedAndCanBeGrantedAgain)
{
    ScreenHouse house;
    const FileURL realm = house.makeRealm("disk");
    house.settle();
    std::filesystem::remove_all(realm.path());
    house.patrol();
    EXPECT_TRUE(house.shows(QStringLiteral("⚠︎ Disconnected")));
    EXPECT_TRUE(house.shows(
        QStringLiteral("Gruk no longer has access to this location. Grant access again to patrol "
                       "it.")));
    EXPECT_EQ(rowOf(house, "disk"), nullptr);
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());

    const FileURL found = FileURL::directory(house.directory.folder("found"));
    house.panel->answers.push_back(found);
    house.button(QStringLiteral("Grant again…"))->click();
    house.settle();
    EXPECT_FALSE(house.shows(QStringLiteral("⚠︎ Disconnected")));
    EXPECT_NE(rowOf(house, "found"), nullptr);
}

TEST(MainWindow, removingARealmIsAskedForAndRefusedByDefault)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.settle();
    ConfirmationDialog* dialog = askForRemoval(house, rowOf(house, "Home"));
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->accessibleName(), QStringLiteral("Remove Home?"));
    EXPECT_EQ(dialog->accessibleDescription(),
              QStringLiteral("The Gruk stops watching this realm. Nothing here is deleted — your "
                             "files stay exactly where they are. You can grant it again any "
                             "time."));
    auto* refusal = qobject_cast<QPushButton*>(buttonIn(*dialog, QStringLiteral("Cancel")));
    ASSERT_NE(refusal, nullptr);
    EXPECT_TRUE(refusal->isDefault());
    refusal->click();
    house.settle();
    EXPECT_EQ(house.model->grants().size(), 1U);
}

TEST(MainWindow, aRealmThatIsRemovedLeavesTheSidebarAndItsPage)
{
    ScreenHouse house;
    house.makeRealm("Other");
    house.makeRealm("Home");
    house.settle();
    ConfirmationDialog* dialog = askForRemoval(house, rowOf(house, "Home"));
    buttonIn(*dialog, QStringLiteral("Remove Realm"))->click();
    house.settle();
    EXPECT_EQ(rowOf(house, "Home"), nullptr);
    EXPECT_NE(rowOf(house, "Other"), nullptr);
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("territoriesPage"));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(MainWindow, removingTheLastRealmWelcomesAgain)
{
    ScreenHouse house;
    const FileURL realm = house.makeRealm("Home");
    house.settle();
    house.model->removeRealm(house.grantOf(realm));
    house.settle();
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("welcomePage"));
}

TEST(MainWindow, aFolderDroppedOnItIsGrantedWithoutAPanel)
{
    ScreenHouse house;
    const FileURL folder = FileURL::directory(house.directory.folder("dropped \xff"));
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"),
                 QByteArray::fromStdString(folder.fileURLText() + "\r\n"));
    QDragEnterEvent enter(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(house.window.get(), &enter);
    QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(house.window.get(), &drop);
    house.settle();
    EXPECT_EQ(house.model->activeRootURL(), folder);
    EXPECT_TRUE(house.panel->requests.empty());
}

TEST(MainWindow, showsWhereADraggedFolderWouldDropAndSaysWhyAFileWouldNot)
{
    ScreenHouse house;
    const FileURL folder = FileURL::directory(house.directory.folder("Photos"));
    const FileURL file(house.directory.file("notes.txt", 10));
    const auto dragged = [](const FileURL& url) {
        auto data = std::make_unique<QMimeData>();
        data->setData(QStringLiteral("text/uri-list"),
                      QByteArray::fromStdString(url.fileURLText() + "\r\n"));
        return data;
    };
    const auto enter = [&](const QMimeData& data) {
        QDragEnterEvent event(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(house.window.get(), &event);
        house.repaint();
        return event.isAccepted();
    };
    const QString welcome = QStringLiteral("Drop “Photos” here to grant it as a realm.");
    const QString refusal = QStringLiteral("“notes.txt” is a file. Only a folder can be a realm.");
    const auto folderData = dragged(folder);
    ASSERT_TRUE(enter(*folderData));
    EXPECT_TRUE(house.shows(welcome));
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(house.window.get(), &leave);
    house.repaint();
    EXPECT_FALSE(house.shows(welcome));

    const auto fileData = dragged(file);
    ASSERT_TRUE(enter(*fileData)) << "else nobody is told why not";
    EXPECT_TRUE(house.shows(refusal));
    QDropEvent drop(QPointF(300, 300), Qt::CopyAction, fileData.get(), Qt::LeftButton,
                    Qt::NoModifier);
    QCoreApplication::sendEvent(house.window.get(), &drop);
    house.settle();
    EXPECT_TRUE(house.model->grants().empty());
    EXPECT_EQ(house.model->errorMessage(), refusal.toStdString());
    EXPECT_TRUE(house.shows(refusal)) << "also when the pointer has let go";

    QMimeData both;
    both.setData(QStringLiteral("text/uri-list"),
                 QByteArray::fromStdString(file.fileURLText() + "\r\n" + folder.fileURLText()));
    ASSERT_TRUE(enter(both));
    EXPECT_TRUE(house.shows(welcome));
    QDropEvent dropBoth(QPointF(300, 300), Qt::CopyAction, &both, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(house.window.get(), &dropBoth);
    house.settle();
    EXPECT_EQ(house.model->activeRootURL(), folder);
    EXPECT_TRUE(house.shows(refusal));
}

TEST(MainWindow, takesADropOfPlacesOnly)
{
    ScreenHouse house;
    QMimeData words;
    words.setText(QStringLiteral("some words"));
    QDragEnterEvent refused(QPoint(), Qt::CopyAction, &words, Qt::LeftButton, Qt::NoModifier);
    refused.ignore();
    QCoreApplication::sendEvent(house.window.get(), &refused);
    EXPECT_FALSE(refused.isAccepted());

    QMimeData place;
    place.setData(QStringLiteral("text/uri-list"), "file:///tmp\r\n");
    QDragEnterEvent taken(QPoint(), Qt::CopyAction, &place, Qt::LeftButton, Qt::NoModifier);
    taken.ignore();
    QCoreApplication::sendEvent(house.window.get(), &taken);
    EXPECT_TRUE(taken.isAccepted());
}

TEST(MainWindow, aFirstStartShowsTheWelcomeScreenUnderTheWalkthrough)
{
    ScreenHouse house;
    house.preferences->remove(SettingKeys::hasSeenWalkthrough);
    house.window->hide();
    house.window->show();
    house.settle();
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("welcomePage"));
    EXPECT_TRUE(house.shows(QStringLiteral("Choose a realm.")));
    for (const QLabel* label : house.window->findChildren<QLabel*>()) {
        if (label->text() == QStringLiteral("Choose a realm.")) {
            EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()));
        }
    }
    house.button(QStringLiteral("Skip"))->click();
    house.settle();
    EXPECT_EQ(house.preferences->boolean(SettingKeys::hasSeenWalkthrough), true);
    EXPECT_FALSE(house.shows(QStringLiteral("Choose a realm.")));
}

TEST(MainWindow, theWalkthroughIsShownAgainOnlyWhenTheWindowNextAppears)
{
    ScreenHouse house;
    house.preferences->setBoolean(SettingKeys::hasSeenWalkthrough, false);
    house.settle();
    EXPECT_FALSE(house.shows(QStringLiteral("Choose a realm.")));
    house.window->hide();
    house.window->show();
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("Choose a realm.")));
}

TEST(MainWindow, theQuestionMarkShowsHowTheGrukWorks)
{
    ScreenHouse house;
    named(house, "How the Gruk works")->click();
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("Choose a realm.")));
}

TEST(MainWindow, overARealmStandsThePickerOfItsPages)
{
    ScreenHouse house;
    EXPECT_EQ(house.button(QStringLiteral("Browse")), nullptr);
    EXPECT_TRUE(house.shows(QStringLiteral("Carry on being you. The Gruk has your back.")));
    house.makeRealm("Home");
    house.settle();
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("patrolPage"));
    house.button(QStringLiteral("Browse"))->click();
    house.settle();
    EXPECT_NE(qobject_cast<FileTableView*>(house.window->page()), nullptr);
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(MainWindow, removingTheActiveRealmWhileBrowsingReturnsToTheTerritoriesAndKeepsThePage)
{
    ScreenHouse house;
    const FileURL other = house.makeRealm("Other");
    const FileURL home = house.makeRealm("Home");
    house.settle();
    house.button(QStringLiteral("Browse"))->click();
    house.settle();
    house.model->removeRealm(house.grantOf(home));
    house.settle();
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("territoriesPage"));
    EXPECT_EQ(house.window->detailPage(), DetailPage::browse);
    house.select(other);
    house.settle();
    EXPECT_NE(qobject_cast<FileTableView*>(house.window->page()), nullptr);
}

TEST(MainWindow, theWayBackToTheTerritoriesIsThereWhileARealmIsOpen)
{
    ScreenHouse house;
    EXPECT_EQ(house.button(QStringLiteral("Back to your Territories")), nullptr);
    house.makeRealm("Home");
    house.settle();
    house.button(QStringLiteral("Back to your Territories"))->click();
    house.settle();
    EXPECT_FALSE(house.model->activeRootURL());
    EXPECT_TRUE(house.shows(QStringLiteral("YOUR TERRITORIES")));
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST(MainWindow, aWellKnownPlaceIsAShortcutOnceSomeRealmEnclosesIt)
{
    ScreenHouse house;
    house.directory.folder("home/Desktop");
    house.directory.folder("home/Downloads");
    EXPECT_EQ(house.button(QStringLiteral("Downloads")), nullptr);
    const FileURL home = house.makeRealm("home");
    house.settle();
    EXPECT_EQ(house.button(QStringLiteral("Home")), nullptr);
    EXPECT_NE(house.button(QStringLiteral("Desktop")), nullptr);
    house.button(QStringLiteral("Downloads"))->click();
    house.settle();
    EXPECT_EQ(house.model->activeRootURL()->path(), home.path() + "/Downloads");
}

TEST(MainWindow, patrolsAllRealmsUnlessOneIsRunning)
{
    ScreenHouse house;
    house.makeRealm("first");
    house.makeRealm("second");
    house.settle();
    QAbstractButton* all = house.button(QStringLiteral("Patrol all realms"));
    ASSERT_NE(all, nullptr);
    all->click();
    EXPECT_FALSE(all->isEnabled());
    house.settle();
    EXPECT_TRUE(all->isEnabled());
    EXPECT_EQ(house.stored(FileURL::directory(house.directory.path("first"))).size(), 1U);
    EXPECT_EQ(house.stored(FileURL::directory(house.directory.path("second"))).size(), 1U);
}

TEST(MainWindow, tidyingTheDesktopAsksForItOnceAndThenForAYes)
{
    ScreenHouse house;
    house.directory.file("Desktop/note.txt", 10);
    house.directory.file("Desktop/other.txt", 10);
    house.panel->answers.push_back(FileURL::directory(house.directory.path("Desktop")));
    named(house, "Tidy my Desktop")->click();
    house.settle();
    ASSERT_EQ(house.panel->requests.size(), 1U);
    ASSERT_TRUE(house.model->grantedDesktopURL());
    named(house, "Tidy my Desktop")->click();
    house.settle();
    auto* question = house.window->findChild<ConfirmationDialog*>(QStringLiteral("hoardQuestion"));
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->accessibleName(), QStringLiteral("Desktop Hoard"));
    EXPECT_TRUE(question->accessibleDescription().startsWith(
        QStringLiteral("The Gruk will move all 2 items into one folder:\n🗂 ")));
    buttonIn(*question, QStringLiteral("Stash it all"))->click();
    house.settle();
    EXPECT_FALSE(std::filesystem::exists(house.directory.path("Desktop/note.txt")));
}

TEST(MainWindow, keysPatrolFilterAndChangeThePage)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.settle();
    QApplication::setActiveWindow(house.window.get());
    QTest::keyClick(house.window.get(), Qt::Key_F5);
    house.settle();
    EXPECT_TRUE(house.model->latestSnapshot());
    QTest::keyClick(house.window.get(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(house.window->detailPage(), DetailPage::browse);
    QTest::keyClick(house.window.get(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(house.window->detailPage(), DetailPage::patrol);
    QTest::keyClick(house.window.get(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(house.window->detailPage(), DetailPage::browse);
    house.settle();
    EXPECT_NE(qobject_cast<TextField*>(house.window->focusWidget()), nullptr);
    QSignalSpy settings(house.window.get(), &SweepView::settingsRequested);
    QSignalSpy quits(house.window.get(), &SweepView::quitRequested);
    QTest::keyClick(house.window.get(), Qt::Key_Comma, Qt::ControlModifier);
    QTest::keyClick(house.window.get(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(settings.count(), 1);
    EXPECT_EQ(quits.count(), 1);
}

TEST(MainWindow, noKeyActsBehindAQuestion)
{
    ScreenHouse house;
    house.makeRealm("Home");
    house.settle();
    QApplication::setActiveWindow(house.window.get());
    askForRemoval(house, rowOf(house, "Home"));
    QTest::keyClick(house.window->focusWidget(), Qt::Key_F5);
    house.settle();
    EXPECT_FALSE(house.model->latestSnapshot());
}

TEST(MainWindow, itsQuitKeysEndTheProgramAlsoWhileAQuestionIsOpen)
{
    ScreenHouse house;
    QApplication::setActiveWindow(house.window.get());
    house.window->showWalkthrough();
    house.settle();
    QSignalSpy quits(house.window.get(), &SweepView::quitRequested);
    QTest::keyClick(house.window->focusWidget(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits.count(), 1);
}

TEST(MainWindow, nothingIsDroppedThroughAQuestion)
{
    ScreenHouse house;
    const FileURL folder = FileURL::directory(house.directory.folder("dropped"));
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"),
                 QByteArray::fromStdString(folder.fileURLText() + "\r\n"));
    QDragEnterEvent early(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    early.ignore();
    QCoreApplication::sendEvent(house.window.get(), &early);
    ASSERT_TRUE(early.isAccepted());
    house.window->showWalkthrough();
    house.settle();
    QDropEvent drop(QPointF(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(house.window.get(), &drop);
    house.settle();
    EXPECT_TRUE(house.model->grants().empty());

    QDragEnterEvent late(QPoint(300, 300), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    late.ignore();
    QCoreApplication::sendEvent(house.window.get(), &late);
    EXPECT_FALSE(late.isAccepted());
}

TEST(MainWindow, theQuestionsOfAPageEndWithItAndThoseOfTheWindowStay)
{
    ScreenHouse house;
    const FileURL other = house.makeRealm("Other");
    const auto isAsked = [&](const char* name) {
        const auto* question = house.window->findChild<Overlay*>(QString::fromLatin1(name));
        return question != nullptr && question->isOpen();
    };
    house.directory.file("Home/report.pdf", 40'960);
    house.directory.file("Home/report (1).pdf", 40'960);
    const FileURL home = house.makePatrolledRealm("Home");
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Move to Trash"))->click();
    house.repaint();
    ASSERT_TRUE(isAsked("trashQuestion"));
    house.select(other);
    house.settle();
    EXPECT_FALSE(isAsked("trashQuestion"));
    house.button(QStringLiteral("Organise this realm"))->click();
    house.repaint();
    EXPECT_TRUE(house.shows(QStringLiteral("Not now")));
    house.select(home);
    house.settle();
    EXPECT_FALSE(house.shows(QStringLiteral("Not now")));

    askForRemoval(house, rowOf(house, "Other"));
    ASSERT_TRUE(isAsked("removalDialog"));
    house.model->showTerritories();
    house.settle();
    EXPECT_TRUE(isAsked("removalDialog"));
}

TEST(MainWindow, loadsTheTerritoriesWhenItAppearsWithNoRealmOpen)
{
    // With no grants there is no page of territories, which would load them itself.
    ScreenHouse house;
    house.window->hide();
    house.settle();
    const std::int64_t before = house.model->territoryLoadGeneration();
    house.window->show();
    EXPECT_EQ(house.model->territoryLoadGeneration(), before + 1);
    house.settle();
    house.makeRealm("Home");
    house.settle();
    house.window->hide();
    house.settle();
    const std::int64_t withRealm = house.model->territoryLoadGeneration();
    house.window->show();
    EXPECT_EQ(house.model->territoryLoadGeneration(), withRealm);
    house.settle();
}

TEST(MainWindow, itsPagesStandAtOnePlaceWhetherTheyScrollOrNot)
{
    ScreenHouse house;
    house.makePatrolledRealm("Home");
    house.settle();
    std::set<std::pair<int, int>> places;
    const auto lookAt = [&](const QWidget& part) {
        places.emplace(part.mapTo(house.window.get(), QPoint()).x(), part.width());
    };
    for (const int height : {Measure::smallestWindowHeight, 2'400}) {
        house.window->resize(Measure::defaultWindowWidth, height);
        house.settle();
        lookAt(*house.window->findChild<ReviewOnlyPanel*>());
    }
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    const auto* page = house.window->findChild<FileTableView*>();
    lookAt(*page->findChild<Card*>());
    EXPECT_EQ(places.size(), 1U);
}

}  // namespace gruk
