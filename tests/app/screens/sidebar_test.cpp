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
