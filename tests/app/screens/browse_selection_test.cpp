#include "app/screens/browse_selection.h"

#include <gtest/gtest.h>

#include "tests/support/browse_house.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::BrowseHouse;

}  // namespace

TEST(BrowseSelection, theSelectionIsKeptThroughOrderFilterAndAFreshListing)
{
    BrowseHouse house;
    house.choose("small");
    house.model->session().setSortOrder(SortOrder::name);
    EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("small")});
    house.model->session().setFilterText("s");
    EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("small")});
    house.model->session().open(house.root());
    house.rest();
    EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("small")});
    EXPECT_EQ(house.table().currentURL(), house.place("small"));
    house.model->session().open(house.place("large"));
    EXPECT_TRUE(house.page->selection().empty());
}

TEST(BrowseSelection, whatAFilterHidesStaysSelected)
{
    BrowseHouse house;
    house.choose("small");
    house.model->session().setFilterText("large");
    EXPECT_TRUE(house.page->selection().empty()) << "what cannot be seen is not acted on";
    house.model->session().setFilterText("larg");
    house.model->session().setFilterText("");
    EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("small")});
    EXPECT_EQ(house.table().currentURL(), house.place("small"));
}

TEST(BrowseSelection, whoeverSelectsUnderAFilterSelectsWhatHeSees)
{
    BrowseHouse house;
    house.choose("small");
    house.model->session().setFilterText("large");
    house.choose("large");
    house.model->session().setFilterText("");
    EXPECT_EQ(house.page->selection(), std::vector<FileURL>{house.place("large")});
}

TEST(BrowseSelection, theSelectionOutlivesAChangeOfPage)
{
    test::ScreenHouse house;
    house.directory.file("Home/sub/inner", 10);
    const FileURL realm = house.makeRealm("Home");
    const FileURL other = house.makeRealm("Other");
    house.select(realm);
    house.settle();
    const auto page = [&house] { return qobject_cast<FileTableView*>(house.window->page()); };
    const auto show = [&house](DetailPage shown) {
        house.window->setDetailPage(shown);
        house.settle();
    };
    show(DetailPage::browse);
    page()->findChild<BrowseTable*>()->selectAll();
    const std::vector<FileURL> both = page()->selection();
    ASSERT_EQ(both.size(), 2U);
    show(DetailPage::patrol);
    show(DetailPage::browse);
    EXPECT_EQ(page()->selection(), both);

    // Not that of another realm, though.
    house.model->selectRealm(other);
    house.settle();
    EXPECT_TRUE(page()->selection().empty());
    house.model->selectRealm(realm);
    house.settle();
    EXPECT_TRUE(page()->selection().empty());
}

TEST(BrowseSelection, theSelectionEndsWithTheVisitToItsFolder)
{
    test::ScreenHouse house;
    house.directory.file("Home/sub/inner", 10);
    const FileURL realm = house.makeRealm("Home");
    house.settle();
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    house.window->page()->findChild<BrowseTable*>()->selectAll();
    house.window->setDetailPage(DetailPage::patrol);
    house.settle();
    house.model->session().open(realm.appending("sub", FileURL::Names::directory));
    house.settle();
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    EXPECT_TRUE(qobject_cast<FileTableView*>(house.window->page())->selection().empty());
}

}  // namespace gruk
