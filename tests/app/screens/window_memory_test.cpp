#include "app/screens/window_memory.h"

#include <QScrollBar>
#include <gtest/gtest.h>

#include "app/model/setting_keys.h"
#include "app/screens/file_table_view.h"
#include "app/theme/segmented_control.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::PatrolPageHouse;

constexpr QSize usual(1120, 760);

QRect middle(const QWidget& window)
{
    QRect place(QPoint(), window.minimumSize() + QSize(0, 60));
    place.moveTopLeft(window.screen()->availableGeometry().topLeft() + QPoint(0, 40));
    return place;
}

}  // namespace

TEST(WindowMemory, aWindowWithItsFrameFitsTheScreen)
{
    const QSize small = sizeWithin(usual, QSize(1366, 728));
    EXPECT_EQ(small.width(), usual.width());
    EXPECT_LE(small.height(), 728 - 30) << "there is a title bar too";
    EXPECT_GT(small.height(), 640);
    EXPECT_EQ(sizeWithin(usual, QSize(1920, 1040)), usual);
}

TEST(WindowMemory, theMainWindowOpensNoLargerThanItsScreen)
{
    PatrolPageHouse house;
    SweepView window(*house.model, house.theme);
    const QSize room = window.screen()->availableSize();
    ASSERT_LT(room.height(), usual.height() + 44) << "the screen of the tests is a small one";
    EXPECT_LE(window.height() + 30, room.height());
}

TEST(WindowMemory, theWindowComesBackAsItWas)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.window->setGeometry(middle(*house.window));
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    const QRect place = house.window->geometry();
    const auto realm = house.model->activeRootURL();
    ASSERT_TRUE(realm);
    house.window->hide();
    house.window.reset();

    house.restart();
    house.window = std::make_unique<SweepView>(*house.model, house.theme);
    EXPECT_EQ(house.window->height(), place.height());
    EXPECT_EQ(house.window->y(), place.y());
    house.window->show();
    house.settle();
    EXPECT_EQ(house.model->activeRootURL(), realm);
    EXPECT_EQ(house.window->detailPage(), DetailPage::browse);
    EXPECT_NE(qobject_cast<FileTableView*>(house.window->page()), nullptr);
    EXPECT_EQ(house.window->findChildren<SegmentedControl*>().constFirst()->current(), 1);
}

TEST(WindowMemory, aRealmThatIsNoneAnyMoreIsNotOpened)
{
    PatrolPageHouse house;
    const FileURL realm = house.makeFindings();
    house.window->hide();
    house.window.reset();
    house.model->removeRealm(house.grantOf(realm));
    house.restart();
    house.window = std::make_unique<SweepView>(*house.model, house.theme);
    house.settle();
    EXPECT_EQ(house.model->activeRootURL(), std::nullopt);
}

TEST(WindowMemory, whatIsKeptAlreadyIsNotWrittenAgain)
{
    PatrolPageHouse house;
    house.window->hide();
    house.settle();
    house.preferences->setText("mark", "x");
    const auto written = house.preferences->data(SettingKeys::windowGeometry);
    ASSERT_TRUE(written);
    // A file that is written is another one.
    const auto file = [&house] {
        return TrashService::currentIdentity(FileURL(house.directory.path("app/settings.json")));
    };
    const auto before = file();
    ASSERT_TRUE(before);
    house.window->show();
    house.window->hide();
    EXPECT_EQ(file(), before);
}

TEST(WindowMemory, goingToBrowseAndBackKeepsTicksSortFilterOpenRowsAndPlace)
{
    PatrolPageHouse house;
    house.makeManyFindings(8);
    house.allowTrash();
    house.settle();
    house.shrink();
    house.filterBy("Likely duplicate");
    auto* sort = house.page()->findChild<SegmentedControl*>();
    sort->setCurrent(1);
    house.settle();
    house.scrollBar()->setValue(house.scrollBar()->maximum() / 2);
    house.settle();
    FindingRow* row = house.rows().at(0);
    Q_EMIT row->selectionToggled(Qt::NoModifier);
    static_cast<QAbstractButton*>(row->disclosure())->click();
    house.settle();
    const int place = house.scrollBar()->value();
    ASSERT_GT(place, 0);
    ASSERT_TRUE(house.shows(QStringLiteral("1 selected · 33 KB"))
                || test::isTicked(house.rows().at(0)));

    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    ASSERT_NE(qobject_cast<FileTableView*>(house.window->page()), nullptr);
    house.window->setDetailPage(DetailPage::patrol);
    house.settle();
    EXPECT_EQ(house.scrollBar()->value(), place);
    EXPECT_EQ(house.page()->findChild<SegmentedControl*>()->current(), 1);
    EXPECT_TRUE(house.shows(QStringLiteral("Likely duplicate")));
    EXPECT_TRUE(test::isTicked(house.rows().at(0)));
    EXPECT_TRUE(house.rows().at(0)->disclosure()->isOpen());
    EXPECT_TRUE(house.shows(QStringLiteral("Move 1 to Trash…")));
}

TEST(WindowMemory, anotherRealmBeginsWithAPageOfItsOwn)
{
    PatrolPageHouse house;
    const FileURL other = house.makePatrolledRealm("Other");
    house.makeManyFindings(8);
    house.shrink();
    house.page()->findChild<SegmentedControl*>()->setCurrent(1);
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    house.select(other);
    house.settle();
    house.window->setDetailPage(DetailPage::patrol);
    house.settle();
    EXPECT_EQ(house.window->findChildren<GrukPatrolView*>().size(), 1);
    EXPECT_EQ(house.page()->findChild<SegmentedControl*>()->current(), 0);
    EXPECT_TRUE(house.shows(QStringLiteral("Other")));
}

}  // namespace gruk
