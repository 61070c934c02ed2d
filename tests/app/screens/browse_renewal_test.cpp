#include <QApplication>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/browse_empty_note.h"
#include "app/theme/text_field.h"
#include "tests/support/browse_house.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::BrowseHouse;
constexpr std::size_t block = BrowseHouse::block;

Button* clearFilter(const BrowseHouse& house)
{
    return &house.page->findChild<BrowseEmptyNote*>()->clearFilter();
}

void filter(BrowseHouse& house, const char* text)
{
    house.page->findChild<TextField*>()->setText(QString::fromLatin1(text));
    house.rest();
}

}  // namespace

TEST(BrowseRenewal, aFilterThatHidesEverythingOffersToBeCleared)
{
    BrowseHouse house;
    EXPECT_FALSE(clearFilter(house)->isVisible());
    filter(house, "no such name");
    ASSERT_TRUE(clearFilter(house)->isVisible());
    EXPECT_EQ(clearFilter(house)->text(), QStringLiteral("Clear filter"));
    QTest::mouseClick(clearFilter(house), Qt::LeftButton);
    house.rest();
    EXPECT_EQ(house.model->session().filterText(), "");
    EXPECT_EQ(house.page->findChild<TextField*>()->text(), QString());
    EXPECT_EQ(house.names().size(), 4);
    EXPECT_FALSE(clearFilter(house)->isVisible());
}

TEST(BrowseRenewal, theOfferTakesTheKeyboardAndGivesItToTheRows)
{
    BrowseHouse house;
    house.page->activateWindow();
    filter(house, "no such name");
    house.table().setFocus();
    QTest::keyClick(&house.table(), Qt::Key_Tab);
    ASSERT_EQ(house.page->focusWidget(), clearFilter(house));
    QTest::keyClick(clearFilter(house), Qt::Key_Space);
    house.rest();
    EXPECT_EQ(house.names().size(), 4);
    EXPECT_EQ(house.page->focusWidget(), &house.table());
}

TEST(BrowseRenewal, anEmptyFolderOffersNoFilterToClear)
{
    BrowseHouse house;
    house.model->session().open(house.place("empty"));
    house.rest();
    EXPECT_TRUE(house.page->findChild<BrowseEmptyNote*>()->isVisible());
    EXPECT_FALSE(clearFilter(house)->isVisible());
}

TEST(BrowseRenewal, leavingAFolderClearsItsFilterInTheFieldToo)
{
    BrowseHouse house;
    filter(house, "large");
    house.doubleClick("large");
    EXPECT_EQ(house.folder(), house.place("large"));
    EXPECT_EQ(house.page->findChild<TextField*>()->text(), QString());
    EXPECT_EQ(house.names(), QStringList(QStringLiteral("inner")));
}

TEST(BrowseRenewal, theBackButtonIsHeardThroughTheNoteOfAnEmptyFolder)
{
    BrowseHouse house;
    house.doubleClick("empty");
    ASSERT_EQ(house.folder(), house.place("empty"));
    auto* note = house.page->findChild<BrowseEmptyNote*>();
    QTest::mouseClick(note, Qt::BackButton, Qt::NoModifier, note->rect().center());
    house.rest();
    EXPECT_EQ(house.folder(), house.root());
}

TEST(BrowseRenewal, aFolderThatIsMeasuredAgainKeepsTheSelectionAndItsPlace)
{
    BrowseHouse house;
    for (int i = 0; i < 60; ++i) {
        house.directory.file("Forest/file " + std::to_string(i), block);
    }
    house.page->measureAgain();
    house.rest();
    ASSERT_EQ(house.names().size(), 64);
    house.choose("file 30");
    house.table().verticalScrollBar()->setValue(700);
    const int value = house.table().verticalScrollBar()->value();
    ASSERT_GT(value, 0);
    house.directory.file("Forest/empty/now not", 3 * block);
    house.page->measureAgain();
    house.rest();
    EXPECT_EQ(house.page->selection(),
              std::vector<FileURL>{FileURL(house.directory.path("Forest/file 30"))});
    EXPECT_EQ(house.table().verticalScrollBar()->value(), value);
    EXPECT_EQ(house.label("browseFooter"),
              QStringLiteral("64 items · 307 KB scanned · 0 restricted"));
}

TEST(BrowseRenewal, aCrumbKeepsTheKeyboardWhenTheFolderIsMeasuredAgain)
{
    BrowseHouse house;
    house.doubleClick("large");
    house.page->activateWindow();
    const auto& crumbs = house.page->findChild<BreadcrumbBar*>()->crumbs();
    ASSERT_EQ(crumbs.size(), 2U);
    crumbs.front()->setFocus();
    house.page->measureAgain();
    house.rest();
    EXPECT_EQ(house.page->focusWidget(), house.page->findChild<BreadcrumbBar*>()->crumbs().front());
}

TEST(BrowseRenewal, f5MeasuresTheFolderThatIsShownAndPatrolsOnTheOtherPage)
{
    test::ScreenHouse house;
    const FileURL realm = house.makePatrolledRealm("Forest");
    QApplication::setActiveWindow(house.window.get());
    QTest::keyClick(house.window.get(), Qt::Key_2, Qt::ControlModifier);
    house.settle();
    const std::size_t before = house.model->session().nodes().size();
    const std::size_t patrols = house.stored(realm).size();
    house.directory.file("Forest/more", block);
    QTest::keyClick(house.window.get(), Qt::Key_F5);
    house.settle();
    EXPECT_EQ(house.model->session().nodes().size(), before + 1);
    EXPECT_EQ(house.stored(realm).size(), patrols);
    QTest::keyClick(house.window.get(), Qt::Key_1, Qt::ControlModifier);
    QTest::keyClick(house.window.get(), Qt::Key_F5);
    house.settle();
    EXPECT_EQ(house.stored(realm).size(), patrols + 1);
}

}  // namespace gruk
