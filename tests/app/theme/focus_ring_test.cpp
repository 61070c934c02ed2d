#include "app/theme/focus_ring.h"

#include <QApplication>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace gruk {

TEST(FocusRing, showsAroundWhatTheKeyboardReachedAndNotThePointer)
{
    Theme theme;
    QWidget window;
    auto* column = new QVBoxLayout(&window);
    auto* first = new QPushButton(QStringLiteral("one"));
    auto* second = new QPushButton(QStringLiteral("two"));
    column->addWidget(first);
    column->addWidget(second);
    auto* ring = new FocusRing(theme, window);
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    EXPECT_FALSE(ring->isVisible() && ring->widget() == nullptr);

    second->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(ring->widget(), second);
    EXPECT_TRUE(ring->isVisible());
    EXPECT_TRUE(ring->geometry().contains(second->geometry().adjusted(-4, -4, 4, 4)));

    first->setFocus(Qt::MouseFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(ring->widget(), nullptr);
    EXPECT_FALSE(ring->isVisible());
}

TEST(FocusRing, isNotCutOffByAParentThatIsNoWider)
{
    Theme theme;
    QWidget window;
    window.resize(300, 200);
    // Has the focus first.
    new QPushButton(QStringLiteral("zero"), &window);
    auto* narrow = new QWidget(&window);
    narrow->setGeometry(40, 40, 100, 40);
    auto* button = new QPushButton(QStringLiteral("one"), narrow);
    button->setGeometry(narrow->rect());
    auto* ring = new FocusRing(theme, window);
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    button->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    ASSERT_TRUE(ring->isVisible());
    const QRect place(ring->mapTo(&window, QPoint()), ring->size());
    EXPECT_EQ(place, QRect(40, 40, 100, 40).adjusted(-4, -4, 4, 4));
    EXPECT_EQ(ring->visibleRegion().boundingRect(), ring->rect());
}

TEST(FocusRing, followsWhatScrollsAndStaysInItsArea)
{
    Theme theme;
    QWidget window;
    window.resize(300, 200);
    new QPushButton(QStringLiteral("zero"), &window);
    auto* area = new QScrollArea(&window);
    area->setGeometry(window.rect());
    auto* page = new QWidget;
    page->resize(200, 1'000);
    auto* button = new QPushButton(QStringLiteral("one"), page);
    button->setGeometry(20, 150, 100, 30);
    area->setWidget(page);
    auto* ring = new FocusRing(theme, window);
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    button->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    ASSERT_TRUE(ring->isVisible());
    EXPECT_TRUE(area->viewport()->isAncestorOf(ring));
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->value() + 40);
    QApplication::processEvents();
    const QRect place(ring->mapTo(area->viewport(), QPoint()), ring->size());
    const QRect around(button->mapTo(area->viewport(), QPoint()), button->size());
    EXPECT_EQ(place, around.adjusted(-4, -4, 4, 4));
}

TEST(FocusRing, leavesAloneWhatShowsItsFocusItself)
{
    Theme theme;
    QWidget window;
    new QPushButton(QStringLiteral("zero"), &window);
    auto* button = new QPushButton(QStringLiteral("one"), &window);
    button->setProperty(showsFocusItself, true);
    auto* ring = new FocusRing(theme, window);
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    button->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_EQ(ring->widget(), nullptr);
}

}  // namespace gruk
