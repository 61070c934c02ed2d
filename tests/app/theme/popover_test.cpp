#include "app/theme/popover.h"

#include <QPushButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "app/theme/sheet.h"
#include "tests/support/theme_window.h"

namespace gruk {

namespace {

constexpr QRect area(0, 0, 640, 480);
constexpr QSize size(200, 120);

}  // namespace

TEST(PlaceBeside, liesUnderTheControlWhereThereIsRoom)
{
    EXPECT_EQ(placeBeside(QRect(50, 40, 80, 30), size, area), QRect(QPoint(50, 74), size));
}

TEST(PlaceBeside, liesOverItWhereThereIsNoRoomUnder)
{
    EXPECT_EQ(placeBeside(QRect(50, 440, 80, 30), size, area), QRect(QPoint(50, 316), size));
}

TEST(PlaceBeside, staysInTheWindowAtItsRightAndWhereNeitherHasRoom)
{
    EXPECT_EQ(placeBeside(QRect(600, 40, 30, 30), size, area), QRect(QPoint(436, 74), size));
    const QRect low(0, 0, 640, 140);
    EXPECT_EQ(placeBeside(QRect(50, 60, 80, 30), size, low), QRect(QPoint(50, 16), size));
}

TEST(Popover, standsBesideItsControlAndFollowsTheWindow)
{
    test::ThemeWindow window;
    auto* anchor = new QPushButton(QStringLiteral("Rename"), &window);
    anchor->move(40, 30);
    window.begin();
    auto* popover = new Popover(window.theme, QStringLiteral("A name"), *anchor);
    auto* save = new QPushButton(QStringLiteral("Save"));
    popover->column()->addWidget(save);
    popover->open();
    test::ThemeWindow::rest();
    const QWidget* card = save->parentWidget();
    EXPECT_EQ(card->x(), 40);
    EXPECT_EQ(card->y(), anchor->geometry().bottom() + 1 + Measure::hair);
    window.resize(120, 100);
    test::ThemeWindow::rest();
    EXPECT_LE(card->geometry().right(), 120);
}

TEST(Popover, aPressBesideItRejectsItAndOneInItDoesNot)
{
    test::ThemeWindow window;
    auto* anchor = new QPushButton(QStringLiteral("Rename"), &window);
    window.begin();
    QPointer<Popover> popover = new Popover(window.theme, QStringLiteral("A name"), *anchor);
    auto* save = new QPushButton(QStringLiteral("Save"));
    popover->column()->addWidget(save);
    int rejected = 0;
    QObject::connect(popover, &Popover::rejected, &window, [&] { ++rejected; });
    popover->open();
    test::ThemeWindow::rest();
    window.click(save->parentWidget()->geometry().topLeft() + QPoint(20, 8));
    EXPECT_EQ(rejected, 0);
    window.click(QPoint(600, 460));
    EXPECT_EQ(rejected, 1);
    EXPECT_EQ(popover, nullptr);
}

TEST(Popover, endsWithItsControl)
{
    test::ThemeWindow window;
    auto* anchor = new QPushButton(QStringLiteral("Rename"), &window);
    window.begin();
    QPointer<Popover> popover = new Popover(window.theme, QStringLiteral("A name"), *anchor);
    popover->open();
    delete anchor;
    test::ThemeWindow::rest();
    EXPECT_EQ(popover, nullptr);
}

TEST(Popover, overASheetGivesTheFocusBackToIt)
{
    test::ThemeWindow window;
    window.begin();
    QPointer<Sheet> sheet = new Sheet(window.theme, QStringLiteral("A sheet"), &window);
    auto* edit = new QPushButton(QStringLiteral("Edit"));
    sheet->column()->addWidget(edit);
    sheet->open();
    auto* popover = new Popover(window.theme, QStringLiteral("A name"), *edit);
    auto* save = new QPushButton(QStringLiteral("Save"));
    popover->column()->addWidget(save);
    popover->open();
    test::ThemeWindow::rest();
    EXPECT_EQ(window.focusWidget(), save);
    window.key(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), save);
    window.key(Qt::Key_Escape);
    EXPECT_EQ(window.focusWidget(), edit);
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->isOpen());
    window.key(Qt::Key_Escape);
    EXPECT_EQ(sheet, nullptr);
}

}  // namespace gruk
