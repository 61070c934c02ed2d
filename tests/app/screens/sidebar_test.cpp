#include "app/screens/sidebar.h"

#include <filesystem>
#include <map>

#include <QRegularExpression>
#include <gtest/gtest.h>

#include "app/screens/realm_row.h"
#include "app/screens/sidebar_link.h"
#include "core/actions/grant_store.h"
#include "platform/files/known_folders.h"
#include "tests/support/screen_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::words;

/// The texts of labels and buttons, realms by their names, from the top; of those side by side the
/// last.
QStringList linesOf(const QWidget& sidebar)
{
    std::map<int, QString> byPlace;
    const auto add = [&](const QWidget* widget, const QString& text) {
        if (widget->isVisible() && !text.isEmpty()) {
            byPlace[widget->mapTo(&sidebar, QPoint()).y()] = text;
        }
    };
    for (const QLabel* label : sidebar.findChildren<QLabel*>()) {
        add(label, label->text());
    }
    for (const QAbstractButton* button : sidebar.findChildren<QAbstractButton*>()) {
        add(button, button->text().isEmpty() ? button->accessibleName() : button->text());
    }
    QStringList texts;
    for (const auto& [place, text] : byPlace) {
        texts.append(text);
    }
    return texts;
}

/// The sidebar of a window.
class Sidebar : public testing::Test {
protected:
    [[nodiscard]] QStringList lines() const
    {
        return linesOf(*house.window->findChild<SidebarView*>());
    }

    test::ScreenHouse house;
};

}  // namespace

TEST_F(Sidebar, itsSectionsStandInTheirOrder)
{
    house.directory.folder("home/Desktop");
    house.directory.folder("home/Downloads");
    house.makeRealm("letters");
    house.makeRealm("home");
    house.settle();
    EXPECT_EQ(lines(),
              words({"GRUK", "Local storage patrol", "Back to your Territories", "Realms",
                     "letters", "home", "Desktop", "Downloads", "Grant another realm…",
                     "The Gruk can only tidy what you've let it see. One grant, and the panic "
                     "button is yours.",
                     "Let the Gruk at the Desktop…", "Patrol all realms"}));
}

TEST_F(Sidebar, theDesktopsTwoWaysOfTidyingStandUnderTheGrants)
{
    house.directory.folder("Desktop");
    house.makeRealm("Desktop");
    house.settle();
    const QStringList shown = lines();
    EXPECT_EQ(shown.mid(shown.indexOf(QStringLiteral("Grant another realm…"))),
              words({"Grant another realm…", "Tidy my Desktop", "Stash it all", "Sort into folders",
                     "Needs Trash actions enabled first — it's a bulk move, so it gets the same "
                     "trust bar.",
                     "Patrol all realms"}));
}

TEST(SidebarShortcuts, standInTheirOrder)
{
    test::ModelHouse house;
    house.directory.folder("home/Desktop");
    house.directory.folder("home/Downloads");
    // Everything lies in it, so that all can be opened and none is a realm of its own. It is
    // granted without being opened, which would be to measure a whole disk.
    GrantStore(FileURL(house.directory.path("app/grants.json"))).addGrant(FileURL::directory("/"));
    house.restart();
    Theme theme;
    SidebarView sidebar(*house.model, theme);
    sidebar.resize(248, 2'000);
    sidebar.show();
    QStringList shown = linesOf(sidebar);
    shown = shown.mid(shown.indexOf(QStringLiteral("Home")));
    const QStringList expected = applicationsDirectory()
                                     ? words({"Home", "Desktop", "Downloads", "Applications"})
                                     : words({"Home", "Desktop", "Downloads"});
    EXPECT_EQ(shown.mid(0, expected.size()), expected);
}

TEST_F(Sidebar, aWellKnownPlaceThatIsARealmIsNoShortcut)
{
    house.directory.folder("home/Desktop");
    house.directory.folder("home/Downloads");
    const auto shortcutsShown = [this] {
        QStringList shown;
        for (const SidebarLink* link : house.window->findChildren<SidebarLink*>()) {
            if (link->isVisible()) {
                shown.append(link->text());
            }
        }
        return shown.filter(QRegularExpression(QStringLiteral("^(Home|Desktop|Downloads)$")));
    };
    house.makeRealm("home");
    house.settle();
    EXPECT_EQ(shortcutsShown(), words({"Desktop", "Downloads"}));
    house.makeRealm("home/Downloads");
    house.settle();
    EXPECT_EQ(shortcutsShown(), words({"Desktop"}));
    house.makeRealm("home/Desktop");
    house.settle();
    EXPECT_EQ(shortcutsShown(), QStringList());
    EXPECT_EQ(house.window->findChildren<RealmRow*>().size(), 3);
}

TEST_F(Sidebar, aWellKnownPlaceThatIsALinkIsAShortcutOnlyWhereItLeadsIntoARealm)
{
    house.directory.folder("home/real");
    house.directory.folder("disk/Downloads");
    house.directory.symbolicLink("home/Desktop", house.directory.path("home/real"));
    house.directory.symbolicLink("home/Downloads", house.directory.path("disk/Downloads"));
    house.makeRealm("home");
    house.settle();
    const auto link = [this](const char* text) { return house.button(QString::fromUtf8(text)); };
    EXPECT_EQ(link("Downloads"), nullptr) << "it leads out of all that was granted";
    ASSERT_NE(link("Desktop"), nullptr);
    link("Desktop")->click();
    house.settle();
    EXPECT_EQ(house.model->activeRootURL(), FileURL::directory(house.directory.path("home/real")));
    house.model->grantRealm(FileURL::directory(house.directory.path("home/Downloads")));
    house.settle();
    EXPECT_EQ(house.window->findChildren<RealmRow*>().size(), 2);
}

TEST_F(Sidebar, patrolAllRealmsIsOffWithoutOne)
{
    QAbstractButton* patrolAll = house.button(QStringLiteral("Patrol all realms"));
    ASSERT_NE(patrolAll, nullptr);
    EXPECT_FALSE(patrolAll->isEnabled());
    const FileURL realm = house.makeRealm("a");
    house.settle();
    EXPECT_TRUE(patrolAll->isEnabled());
    house.model->removeRealm(house.grantOf(realm));
    house.settle();
    EXPECT_FALSE(patrolAll->isEnabled());
}

TEST_F(Sidebar, aRealmThatIsCalledOtherwiseNowIsCarriedOverByOneConfirmation)
{
    const FileURL realm = house.makePatrolledRealm("old");
    std::filesystem::rename(realm.path(), house.directory.path("new"));
    house.window->findChild<SidebarView*>()->refresh();
    house.settle();
    const auto press = [this](const char* text) {
        for (QAbstractButton* each : house.window->findChildren<QAbstractButton*>()) {
            if (each->isVisible()
                && (each->accessibleName() == QString::fromUtf8(text)
                    || each->text() == QString::fromUtf8(text))) {
                each->click();
                house.settle();
                return;
            }
        }
        FAIL() << "no button " << text;
    };
    press("It is now called new…");
    const auto* question = house.window->findChild<QWidget*>(QStringLiteral("renamingDialog"));
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(question->accessibleName(), QStringLiteral("Is old now called new?"));
    press("Not now");
    EXPECT_EQ(house.model->grants().at(0).path, realm.path());
    press("It is now called new…");
    press("Carry it over");
    EXPECT_EQ(house.model->grants().at(0).path, house.directory.path("new"));
    EXPECT_EQ(house.stored(FileURL(house.directory.path("new"))).size(), 1U);
    EXPECT_EQ(house.window->findChildren<RealmRow*>().size(), 1);
    EXPECT_TRUE(house.shows(
        QStringLiteral("old is now called new. All that is known about it came along.")));
}

TEST_F(Sidebar, aFolderThatCannotBeGrantedIsToldAlsoOnTheWelcomePage)
{
    house.panel->answers.push_back(FileURL::directory(house.directory.path("nowhere")));
    house.model->grantRealm();
    house.settle();
    EXPECT_TRUE(house.shows(QStringLiteral("Gruk could not make a realm of that: %1: No such file "
                                           "or directory. Nothing was changed.")
                                .arg(QString::fromStdString(house.directory.path("nowhere")))));
}

TEST_F(Sidebar, aDesktopThatHasGoneIsAskedForBeforeAnythingIsStashed)
{
    house.directory.folder("Desktop");
    house.makeRealm("Desktop");
    house.settle();
    house.model->setReviewOnly(false);
    house.settle();
    QAbstractButton* stash = house.button(QStringLiteral("Stash it all"));
    ASSERT_NE(stash, nullptr);
    std::filesystem::remove_all(house.directory.path("Desktop"));
    stash->click();
    house.settle();
    ASSERT_EQ(house.panel->requests.size(), 1U);
    EXPECT_EQ(house.panel->requests[0].prompt, "Grant the Desktop");
    EXPECT_EQ(house.window->findChild<QWidget*>(QStringLiteral("hoardQuestion")), nullptr);
    EXPECT_FALSE(house.model->errorMessage());
    EXPECT_NE(house.button(QStringLiteral("Let the Gruk at the Desktop…")), nullptr);
    EXPECT_EQ(house.button(QStringLiteral("Stash it all")), nullptr);
}

}  // namespace gruk
