#include "app/theme/house_style.h"

#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleOptionMenuItem>
#include <gtest/gtest.h>

#include "tests/support/theme_window.h"

namespace gruk {

namespace {

/// The picture of a menu that an item of is chosen in.
QImage pictureOf(QMenu& menu)
{
    menu.ensurePolished();
    menu.resize(menu.sizeHint());
    return menu.grab().toImage();
}

}  // namespace

TEST(HouseStyle, drawsMenusOnTheCardOfTheThemeWhateverTheirPalette)
{
    Theme theme;
    HouseStyle style(theme);
    for (const AppTheme appTheme : {AppTheme::light, AppTheme::dark}) {
        theme.setAppTheme(appTheme);
        QMenu menu;
        menu.setStyle(&style);
        menu.setPalette(QPalette(Qt::magenta));
        menu.addAction(QStringLiteral("One"));
        menu.addAction(QStringLiteral("Two"));
        const QImage image = pictureOf(menu);
        EXPECT_EQ(image.pixelColor(image.width() - 12, 8), theme.colour(Role::paperCard));
        EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << "a corner that is cut";
        EXPECT_GE(menu.actionGeometry(menu.actions().constFirst()).height(), 28);
    }
}

TEST(HouseStyle, ticksWhatIsChosenAndMakesRoomForIt)
{
    Theme theme;
    HouseStyle style(theme);
    QMenu menu;
    menu.setStyle(&style);
    QAction* action = menu.addAction(QStringLiteral("Any kind"));
    const int plain = menu.sizeHint().width();
    action->setCheckable(true);
    const QImage off = pictureOf(menu);
    action->setChecked(true);
    EXPECT_NE(pictureOf(menu), off);
    EXPECT_GT(menu.sizeHint().width(), plain);
}

TEST(HouseStyle, keepsAKeyClearOfTheWords)
{
    Theme theme;
    HouseStyle style(theme);
    QMenu menu;
    menu.setStyle(&style);
    QAction* action = menu.addAction(QStringLiteral("Settings"));
    const int plain = menu.sizeHint().width();
    action->setText(QStringLiteral("Settings\tCtrl+,"));
    EXPECT_GE(menu.sizeHint().width(),
              plain + Measure::wide
                  + menu.fontMetrics().horizontalAdvance(QStringLiteral("Ctrl+,")));
}

TEST(HouseStyle, letsWhatLiesUnderAScrollBarShow)
{
    test::ThemeWindow window;
    HouseStyle style(window.theme);
    QPalette colours = window.palette();
    colours.setColor(QPalette::Window, Qt::magenta);
    window.setPalette(colours);
    auto* bar = new QScrollBar(Qt::Vertical, &window);
    bar->setStyle(&style);
    bar->setPalette(QPalette(Qt::cyan));
    bar->setMaximum(0);
    bar->setGeometry(0, 0, 12, 200);
    window.begin();
    EXPECT_EQ(window.grab().toImage().pixelColor(6, 100), QColor(Qt::magenta));
    bar->setStyle(nullptr);
}

TEST(HouseStyle, givesEachLineThatAPickerOffersTheHeightOfAMenuItem)
{
    Theme theme;
    const HouseStyle style(theme);
    const QComboBox picker;
    QStyleOptionMenuItem item;
    item.text = QStringLiteral("Stand Guard");
    // The toolkit tells the size of the whole list.
    const QSize size = style.sizeFromContents(QStyle::CT_MenuItem, &item, QSize(120, 500), &picker);
    EXPECT_GE(size.height(), 28);
    EXPECT_LE(size.height(), 32);
    EXPECT_GE(size.width(), QFontMetrics(item.font).horizontalAdvance(item.text));
}

TEST(HouseStyle, cutsAMenuOutSoThatNoCornerIsBlackWithoutACompositor)
{
    Theme theme;
    HouseStyle style(theme);
    QMenu menu;
    menu.setStyle(&style);
    menu.addAction(QStringLiteral("One"));
    menu.addAction(QStringLiteral("Two"));
    menu.popup(QPoint(10, 10));
    QApplication::processEvents();
    const QRegion mask = menu.mask();
    const QRect all = menu.rect();
    for (const QPoint& corner :
         {all.topLeft(), all.topRight(), all.bottomLeft(), all.bottomRight()}) {
        EXPECT_FALSE(mask.contains(corner));
    }
    EXPECT_TRUE(mask.contains(all.center()));
    // Nothing that is left is see-through, in the curves of the corners neither.
    const QImage image = menu.grab().toImage();
    for (const QRect& rows : mask) {
        for (int y = rows.top(); y <= rows.bottom(); ++y) {
            for (int x = rows.left(); x <= rows.right(); ++x) {
                ASSERT_EQ(image.pixelColor(x, y).alpha(), 255) << x << ", " << y;
            }
        }
    }
    menu.close();
}

}  // namespace gruk
