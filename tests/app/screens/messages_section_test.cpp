#include "app/screens/messages_section.h"

#include <filesystem>
#include <fstream>

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/confirmation_dialog.h"
#include "tests/support/screen_house.h"
#include "tests/support/territory_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::ScreenHouse;

const QString putBack = QStringLiteral("Put everything back");
const QString isBack = QStringLiteral("Put everything back.");

/// The window with a Desktop that may be tidied and no realm open.
class Messages : public testing::Test {
protected:
    void grantDesktop()
    {
        house.directory.file("Desktop/photo.png", 10);
        house.panel->answers.push_back(desktop());
        house.model->grantDesktop();
        house.settle();
        house.model->setReviewOnly(false);
        showTerritories();
    }
    void showTerritories()
    {
        house.model->showTerritories();
        house.settle();
        ASSERT_EQ(page(), QStringLiteral("territoriesPage"));
    }
    void press(const QString& text)
    {
        QAbstractButton* button = house.button(text);
        ASSERT_NE(button, nullptr) << text.toStdString();
        button->click();
        house.settle();
    }
    void stash()
    {
        press(QStringLiteral("Stash it all"));
        auto* question = house.window->findChild<ConfirmationDialog*>();
        ASSERT_NE(question, nullptr);
        test::buttonIn(*question, QStringLiteral("Stash it all"))->click();
        house.settle();
    }
    /// How many labels that can be seen read so.
    [[nodiscard]] qsizetype count(const QString& text) const { return house.texts().count(text); }
    [[nodiscard]] bool isOnTheDesktop(const char* name) const
    {
        return std::filesystem::exists(house.directory.path(std::string("Desktop/") + name));
    }
    [[nodiscard]] FileURL desktop() const
    {
        return FileURL::directory(house.directory.path("Desktop"));
    }
    [[nodiscard]] QString page() const { return house.window->page()->objectName(); }
    void pressKeys(int key, Qt::KeyboardModifiers modifiers)
    {
        QApplication::setActiveWindow(house.window.get());
        QTest::keyClick(house.window.get(), static_cast<Qt::Key>(key), modifiers);
        house.settle();
    }

    ScreenHouse house;
};

}  // namespace

TEST_F(Messages, aDesktopThatIsTidiedFromTheTerritoriesIsPutBackByOneClick)
{
    grantDesktop();
    stash();
    ASSERT_EQ(page(), QStringLiteral("territoriesPage"));
    EXPECT_FALSE(isOnTheDesktop("photo.png"));
    EXPECT_EQ(count(QStringLiteral("Done. 1 items stashed. Your Desktop is yours again.")), 1);
    press(putBack);
    EXPECT_TRUE(isOnTheDesktop("photo.png"));
    EXPECT_TRUE(house.shows(isBack));
    EXPECT_EQ(house.button(putBack), nullptr);
}

TEST_F(Messages, aDesktopThatIsSortedWithNoRealmOpenIsPutBackByOneClick)
{
    grantDesktop();
    press(QStringLiteral("Sort into folders"));
    press(QStringLiteral("Organise"));
    ASSERT_EQ(page(), QStringLiteral("territoriesPage"));
    ASSERT_FALSE(isOnTheDesktop("photo.png"));
    press(putBack);
    EXPECT_TRUE(isOnTheDesktop("photo.png"));
    // What was sorted has to be open for that, and says so itself.
    EXPECT_EQ(house.model->activeRootURL(), desktop());
    EXPECT_TRUE(house.shows(isBack));
    EXPECT_EQ(house.button(putBack), nullptr);
}

TEST_F(Messages, theKeysPutBackADesktopThatWasSortedWithNoRealmOpen)
{
    grantDesktop();
    press(QStringLiteral("Sort into folders"));
    press(QStringLiteral("Organise"));
    pressKeys(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(isOnTheDesktop("photo.png"));
    EXPECT_TRUE(house.shows(isBack));
}

TEST_F(Messages, whatWentWrongIsToldOverTheTerritories)
{
    house.makeRealm("Home");
    house.settle();
    showTerritories();
    house.model->tidyDesktop();
    house.settle();
    EXPECT_EQ(count(QStringLiteral("Gruk no longer has access to the Desktop. Grant access again "
                                   "to tidy it.")),
              1);
}

TEST_F(Messages, whatHappenedIsToldOverTheWelcome)
{
    house.model->patrolAllRealms();
    house.settle();
    ASSERT_EQ(page(), QStringLiteral("welcomePage"));
    EXPECT_EQ(count(QStringLiteral("Patrolled 0 realm(s).")), 1);
}

TEST_F(Messages, whatHappenedIsToldOverTheFolders)
{
    grantDesktop();
    house.makeRealm("Home");
    house.settle();
    press(QStringLiteral("Browse"));
    ASSERT_EQ(page(), QStringLiteral("browsePage"));
    stash();
    ASSERT_EQ(page(), QStringLiteral("browsePage"));
    EXPECT_EQ(count(QStringLiteral("Done. 1 items stashed. Your Desktop is yours again.")), 1);
    press(putBack);
    EXPECT_TRUE(isOnTheDesktop("photo.png"));
    EXPECT_TRUE(house.shows(isBack));
}

TEST_F(Messages, theyStandOnceOnThePageOfARealmAndGoWithItToTheNextPage)
{
    const QString on = QStringLiteral("Review Only is on. Gruk cannot move anything to Trash.");
    house.makeRealm("Home");
    house.settle();
    house.model->setReviewOnly(true);
    house.settle();
    ASSERT_EQ(page(), QStringLiteral("patrolPage"));
    EXPECT_EQ(count(on), 1);
    press(QStringLiteral("Browse"));
    EXPECT_EQ(count(on), 1);
    press(QStringLiteral("Patrol"));
    EXPECT_EQ(count(on), 1);
}

TEST_F(Messages, onlyThePageOfARealmSaysWhatItsFiguresLeaveOut)
{
    const FileURL realm = house.makeRealm("Home");
    ScanSnapshot partly = test::TerritoryHouse::snapshot(realm, 5'000);
    partly.issues = {{"locked", ScanIssue::Reason::permissionDenied},
                     {"closed", ScanIssue::Reason::permissionDenied}};
    house.store->save(partly);
    house.settle();
    const QString note = QStringLiteral("The Gruk couldn't see everything: 2 areas were "
                                        "off-limits. What's shown covers only the parts it could "
                                        "reach.");
    EXPECT_EQ(count(note), 1);
    press(QStringLiteral("Browse"));
    house.model->setReviewOnly(true);
    house.settle();
    EXPECT_EQ(count(note), 0);
}

TEST_F(Messages, theyTakeNoRoomWhileThereIsNothingToSay)
{
    house.makeRealm("Home");
    house.settle();
    showTerritories();
    const int top = house.window->page()->y();
    house.model->setReviewOnly(true);
    house.settle();
    EXPECT_GT(house.window->page()->y(), top);
    // Which says nothing yet.
    house.select(FileURL::directory(house.directory.path("Home")));
    house.settle();
    showTerritories();
    EXPECT_EQ(house.window->page()->y(), top);
}

TEST_F(Messages, theKeysTakeNothingBackOfWhichNothingIsSaid)
{
    grantDesktop();
    stash();
    ASSERT_FALSE(isOnTheDesktop("photo.png"));
    house.makeRealm("Home");
    house.settle();
    ASSERT_FALSE(house.model->lastActionMessage());
    ASSERT_TRUE(house.model->lastStashOperation());
    pressKeys(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(isOnTheDesktop("photo.png"));
    pressKeys(Qt::Key_2, Qt::ControlModifier);
    pressKeys(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(isOnTheDesktop("photo.png"));
}

TEST_F(Messages, theKeysTryOnceMoreWhatCouldNotBePutBack)
{
    grantDesktop();
    stash();
    house.directory.file("Desktop/photo.png", 20);
    press(putBack);
    ASSERT_EQ(house.model->lastActionMessage(), std::nullopt);
    ASSERT_TRUE(house.model->errorMessage());
    std::filesystem::remove(house.directory.path("Desktop/photo.png"));
    pressKeys(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(std::filesystem::file_size(house.directory.path("Desktop/photo.png")), 10U);
    EXPECT_TRUE(house.shows(isBack));
}

TEST_F(Messages, aDamagedStoreOffersToShowItAndToSetItAside)
{
    house.makePatrolledRealm("a");
    std::ofstream(house.directory.path("app/snapshots.json")) << "no store";
    house.patrol();
    press(QStringLiteral("Show it"));
    EXPECT_EQ(house.revealed.back(),
              std::vector<FileURL>{FileURL(house.directory.path("app/snapshots.json"))});
    press(QStringLiteral("Set it aside and begin anew"));
    EXPECT_EQ(house.directory.read("app/snapshots.json.damaged"), "no store");
    EXPECT_EQ(house.button(QStringLiteral("Show it")), nullptr);
    EXPECT_TRUE(house.shows(QStringLiteral("The damaged file is called snapshots.json.damaged now. "
                                           "The next patrol begins a new one.")));
    house.patrol();
    EXPECT_FALSE(house.model->errorMessage());
}

}  // namespace gruk
