#include <filesystem>

#include <QAbstractItemModelTester>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/unseen_places_list.h"
#include "app/screens/unseen_places_section.h"
#include "tests/support/patrol_page_house.h"
#include "tests/support/territory_house.h"

namespace gruk {

namespace {

using test::PatrolPageHouse;

/// The page of a realm whose last patrol had these issues.
class UnseenPlaces : public testing::Test {
protected:
    void show(std::vector<ScanIssue> issues)
    {
        realm_ = FileURL::directory(house.directory.path("Home"));
        ScanSnapshot partly = test::TerritoryHouse::snapshot(realm_, 5'000);
        partly.issues = std::move(issues);
        house.store->save(partly);
        house.makeRealm("Home");
        house.settle();
    }
    void open()
    {
        auto* disclosure =
            house.window->findChild<DisclosureButton*>(QStringLiteral("unseenPlaces"));
        ASSERT_NE(disclosure, nullptr);
        ASSERT_TRUE(disclosure->isVisible());
        disclosure->click();
        house.repaint();
    }
    [[nodiscard]] UnseenPlacesList* list() const
    {
        return house.window->findChild<UnseenPlacesList*>();
    }
    /// What a row reads, and what it offers.
    [[nodiscard]] QString row(int at) const
    {
        return list()->model()->index(at, 0).data(Qt::AccessibleTextRole).toString();
    }
    [[nodiscard]] QRect offer(int at) const
    {
        return list()->offerRect(list()->model()->index(at, 0));
    }

    PatrolPageHouse house;
    FileURL realm_;
};

}  // namespace

TEST_F(UnseenPlaces, areListedOnRequestEachWithItsReason)
{
    show({{"closed", ScanIssue::Reason::permissionDenied},
          {"gone", ScanIssue::Reason::disappeared},
          {"media/disk", ScanIssue::Reason::differentFilesystem},
          {"torn\xFF\n", ScanIssue::Reason::unreadable}});
    ASSERT_NE(list(), nullptr);
    EXPECT_FALSE(list()->isVisible());
    open();
    EXPECT_TRUE(list()->isVisible());
    EXPECT_EQ(row(0), QStringLiteral("closed, No permission to look inside"));
    EXPECT_EQ(row(1), QStringLiteral("gone, Gone before the Gruk got there"));
    EXPECT_EQ(row(2), QStringLiteral("media/disk, On another disk"));
    EXPECT_EQ(row(3), QStringLiteral("torn\uFFFD\u240A, Could not be read"));
    EXPECT_TRUE(offer(0).isNull());
    EXPECT_FALSE(offer(2).isNull());
    const QAbstractItemModelTester tester(list()->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(test::namelessControls(*house.window), QStringList());
}

TEST_F(UnseenPlaces, areNotThereWhenEverythingWasSeen)
{
    house.makePatrolledRealm("Home");
    auto* section = house.window->findChild<UnseenPlacesSection*>();
    ASSERT_NE(section, nullptr);
    EXPECT_FALSE(section->isVisible());
}

TEST_F(UnseenPlaces, aFolderOnAnotherDiskIsGrantedAsItsOwnRealmByAClick)
{
    house.directory.folder("Home/disk");
    show({{"closed", ScanIssue::Reason::permissionDenied},
          {"disk", ScanIssue::Reason::differentFilesystem}});
    open();
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, QPoint(20, offer(1).center().y()));
    house.settle();
    EXPECT_EQ(house.model->grants().size(), 1U) << "only the words offer it";
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, offer(1).center());
    house.settle();
    ASSERT_EQ(house.model->grants().size(), 2U);
    EXPECT_EQ(house.model->grants()[1].path, realm_.path() + "/disk");
    EXPECT_EQ(house.model->activeRootURL(), FileURL::directory(realm_.path() + "/disk"));
    // Back at the first realm it is not offered once more.
    house.select(realm_);
    house.settle();
    open();
    EXPECT_EQ(row(1), QStringLiteral("disk, On another disk, a realm of its own"));
    EXPECT_TRUE(offer(1).isNull());
}

TEST_F(UnseenPlaces, aFolderOnAnotherDiskIsGrantedAsItsOwnRealmByTheKeyboard)
{
    house.directory.folder("Home/disk");
    show({{"closed", ScanIssue::Reason::permissionDenied},
          {"disk", ScanIssue::Reason::differentFilesystem}});
    open();
    house.activate();
    list()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(list(), Qt::Key_Return);
    house.settle();
    EXPECT_EQ(house.model->grants().size(), 1U) << "nothing is offered of the first row";
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Return);
    house.settle();
    EXPECT_EQ(house.model->grants().size(), 2U);
}

TEST_F(UnseenPlaces, thousandsOfThemMakeNoMoreWidgetsThanOne)
{
    const auto widgets = [this](std::size_t count) {
        std::vector<ScanIssue> issues;
        for (std::size_t i = 0; i < count; ++i) {
            issues.push_back({"disk" + std::to_string(i), ScanIssue::Reason::differentFilesystem});
        }
        show(std::move(issues));
        open();
        EXPECT_EQ(list()->model()->rowCount(), static_cast<int>(count));
        EXPECT_LT(list()->height(), 1'000);
        const auto all = list()->findChildren<QWidget*>().size();
        house.model->removeRealm(house.model->grants().front());
        house.settle();
        return all;
    };
    const auto one = widgets(1);
    EXPECT_EQ(widgets(5'000), one);
}

}  // namespace gruk
