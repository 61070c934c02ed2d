#include "app/screens/realm_row.h"

#include <filesystem>

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "app/screens/sidebar.h"
#include "app/theme/button.h"
#include "tests/support/screen_house.h"

namespace gruk {

namespace {

using test::ScreenHouse;

Grant grantOf(const char* path)
{
    Grant grant;
    grant.path = path;
    return grant;
}

}  // namespace

TEST(RealmRow, tellsThatItIsDisconnectedInFullAlsoBesideAScrollBar)
{
    Theme theme;
    DisconnectedRealmRow row(theme, grantOf("/media/an old disk with a long name"),
                             RealmIdentity::derive("/media/an old disk with a long name"));
    constexpr int scrollBar = 12;
    row.resize(Measure::sidebarWidth - 2 * Measure::small - 2 * Measure::hair - scrollBar,
               row.sizeHint().height());
    row.show();
    QApplication::processEvents();
    const ElidedLabel* state = nullptr;
    for (const ElidedLabel* label : row.findChildren<ElidedLabel*>()) {
        if (label->text() == QStringLiteral("⚠︎ Disconnected")) {
            state = label;
        }
    }
    ASSERT_NE(state, nullptr);
    EXPECT_GE(state->width(), state->sizeHint().width());
    EXPECT_LE(row.sizeHint().height(), Measure::realmRowHeight);
}

TEST(RealmRow, ofARealmThatIsNotThereIsAsHighAsTheOthersWhateverItsPlaceGives)
{
    Theme theme;
    QWidget place;
    auto* column = new QVBoxLayout(&place);
    auto* row = new DisconnectedRealmRow(theme, grantOf("/media/disk"),
                                         RealmIdentity::derive("/media/disk"));
    column->addWidget(row);
    place.resize(Measure::sidebarWidth, 4 * Measure::realmRowHeight);
    place.show();
    QApplication::processEvents();
    EXPECT_EQ(row->height(), Measure::realmRowHeight);
    for (const QWidget* each : row->findChildren<QWidget*>()) {
        EXPECT_TRUE(row->rect().contains(QRect(each->mapTo(row, QPoint()), each->size())));
        EXPECT_GE(each->height(), each->minimumSizeHint().height());
    }
}

TEST(RealmRow, tellsWhatItIsCalledNowInOneLineOfItsHeight)
{
    Theme theme;
    const std::string name(200, 'n');
    DisconnectedRealmRow row(theme, grantOf("/media/old"), RealmIdentity::derive("/media/old"),
                             FileURL::directory("/media/" + name));
    row.resize(Measure::sidebarWidth - 2 * Measure::small - 2 * Measure::hair,
               row.sizeHint().height());
    row.show();
    QApplication::processEvents();
    const auto* link = row.findChild<ElidedLink*>();
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link->accessibleName(),
              QStringLiteral("It is now called %1…").arg(QString::fromStdString(name)));
    EXPECT_LE(link->geometry().right(), row.width());
    EXPECT_LE(link->fontMetrics().horizontalAdvance(link->text()), link->width());
    EXPECT_LE(row.minimumSizeHint().width(), row.width());
    EXPECT_LE(row.sizeHint().height(), Measure::realmRowHeight);
}

TEST(RealmRow, manyOfThemFitTheSidebarBesideItsScrollBar)
{
    ScreenHouse house;
    constexpr int many = 20;
    for (int number = 0; number < many; ++number) {
        house.makeRealm("realm " + std::to_string(number));
    }
    house.settle();
    house.window->resize(Measure::smallestWindowWidth, Measure::smallestWindowHeight);
    house.settle();
    const auto* scroll = house.window->findChild<SidebarView*>()->findChild<QScrollArea*>();
    ASSERT_TRUE(scroll->verticalScrollBar()->isVisible());
    EXPECT_LE(scroll->widget()->width(), scroll->viewport()->width());
    for (const RealmRow* row : scroll->findChildren<RealmRow*>()) {
        EXPECT_LE(row->geometry().right(), scroll->viewport()->width() - Measure::hair);
    }
}

}  // namespace gruk
