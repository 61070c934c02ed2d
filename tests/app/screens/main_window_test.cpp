#include "app/screens/main_window.h"

#include <filesystem>

#include <QAbstractButton>
#include <QDialog>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <gtest/gtest.h>

#include "app/screens/realm_row.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

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

QDialog* askForRemoval(ScreenHouse& house, QWidget* row)
{
    Q_EMIT row->customContextMenuRequested(QPoint());
    auto* menu = row->findChild<QMenu*>();
    EXPECT_EQ(menu->actions().constFirst()->text(), QStringLiteral("Remove Realm…"));
    menu->actions().constFirst()->trigger();
    menu->close();
    house.repaint();
    return house.window->findChild<QDialog*>(QStringLiteral("removalDialog"));
}

QAbstractButton* buttonIn(const QWidget& widget, const QString& text)
{
    for (QAbstractButton* button : widget.findChildren<QAbstractButton*>()) {
        if (button->text() == text) {
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
    EXPECT_EQ(rowOf(house, "Home")->accessibleDescription(), QStringLiteral("Selected"));
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
    EXPECT_EQ(rowOf(house, "second")->accessibleDescription(), QString());
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
    QDialog* dialog = askForRemoval(house, rowOf(house, "Home"));
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
    QDialog* dialog = askForRemoval(house, rowOf(house, "Home"));
    buttonIn(*dialog, QStringLiteral("Remove Realm"))->click();
    house.settle();
    EXPECT_EQ(rowOf(house, "Home"), nullptr);
    EXPECT_NE(rowOf(house, "Other"), nullptr);
    EXPECT_EQ(house.window->page()->objectName(), QStringLiteral("noRealmPage"));
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

}  // namespace gruk
