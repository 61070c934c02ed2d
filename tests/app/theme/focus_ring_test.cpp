#include "app/theme/focus_ring.h"

#include <QApplication>
#include <QPushButton>
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

}  // namespace gruk
