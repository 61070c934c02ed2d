#include <QTabBar>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/screens/filing_rule_row.h"
#include "app/screens/organise_row.h"
#include "app/screens/settings_view.h"
#include "tests/support/painted_icons.h"
#include "tests/support/screen_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::paintedIcons;
using test::ScreenHouse;
using testing::ElementsAre;
using testing::IsSupersetOf;

/// Lays out and shows a row by itself.
template <typename Row>
std::vector<Icon> iconsOf(Row& row)
{
    row.resize(500, row.sizeHint().height());
    row.show();
    return paintedIcons(row);
}

}  // namespace

TEST(Symbols, ofTheWelcomePageStandForItsPromisesInTheirOrder)
{
    ScreenHouse house;
    house.settle();
    std::vector<Icon> promises;
    for (const Icon icon : paintedIcons(*house.window->page())) {
        if (icon == Icon::lock || icon == Icon::shieldCheck || icon == Icon::noSubscription) {
            promises.push_back(icon);
        }
    }
    EXPECT_THAT(promises, ElementsAre(Icon::lock, Icon::shieldCheck, Icon::noSubscription));
    QAbstractButton* choose = house.button(QStringLiteral("Choose a realm to patrol"));
    ASSERT_NE(choose, nullptr);
    EXPECT_THAT(paintedIcons(*choose), ElementsAre(Icon::folderAdd));
}

TEST(Symbols, ofTheDesktopEntriesAreATrayAndTrays)
{
    ScreenHouse house;
    house.makeRealm("Desktop");
    house.settle();
    house.allowTrash();
    house.settle();
    QAbstractButton* stash = house.button(QStringLiteral("Stash it all"));
    QAbstractButton* sort = house.button(QStringLiteral("Sort into folders"));
    ASSERT_TRUE(stash != nullptr && sort != nullptr);
    EXPECT_THAT(paintedIcons(*stash), ElementsAre(Icon::trayDown));
    EXPECT_THAT(paintedIcons(*sort), ElementsAre(Icon::trays));
}

TEST(Symbols, ofTheTabsOfTheSettingsAreAGearAndAClock)
{
    test::ModelHouse house;
    Theme theme;
    SettingsView settings(*house.model, theme);
    settings.show();
    EXPECT_THAT(paintedIcons(*settings.findChild<QTabBar*>()),
                ElementsAre(Icon::gear, Icon::history));
}

TEST(Symbols, ofAFilingRuleAreItsKindAnArrowAndAfterAPatrolAWalker)
{
    Theme theme;
    FilingRuleRow plain(theme, {UUID::random(), FileKind::pdf, "Papers", false});
    EXPECT_THAT(iconsOf(plain), ElementsAre(Icon::pdf, Icon::arrowRight, Icon::trash));
    FilingRuleRow patrolled(theme, {UUID::random(), FileKind::image, "Pictures", true});
    EXPECT_THAT(iconsOf(patrolled),
                ElementsAre(Icon::image, Icon::arrowRight, Icon::hiking, Icon::trash));
}

TEST(Symbols, ofAnOrganiseRowAreItsKindAndAPencil)
{
    Theme theme;
    for (const FileKind kind : allFileKinds) {
        OrganisePlan::CategoryMove move;
        move.kind = kind;
        move.destinationFolderName = "Folder";
        OrganiseRow row(theme, move);
        EXPECT_THAT(iconsOf(row), IsSupersetOf({iconFor(kind), Icon::pencil}));
        EXPECT_THAT(paintedIcons(*row.pencil()), ElementsAre(Icon::pencil));
    }
}

}  // namespace gruk
