#include "app/theme/focus_ring.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

#include "tests/support/theme_window.h"

namespace gruk {

namespace {

/// A window with a ring and a control that has the focus first.
class FocusRingTest : public testing::Test {
protected:
    [[nodiscard]] static QPushButton* buttonAt(const QRect& place, QWidget* parent)
    {
        auto* button = new QPushButton(QStringLiteral("one"), parent);
        button->setGeometry(place);
        return button;
    }
    void focus(QWidget& widget, Qt::FocusReason reason)
    {
        widget.setFocus(reason);
        window.rest();
    }
    /// Where the ring is in `widget`.
    [[nodiscard]] QRect placeIn(const QWidget* widget) const
    {
        return {ring.mapTo(widget, QPoint()), ring.size()};
    }
    /// Where the ring belongs that is around what stands there.
    [[nodiscard]] static QRect around(const QRect& place) { return place.adjusted(-4, -4, 4, 4); }

    test::ThemeWindow window;
    QPushButton* first = buttonAt({300, 300, 100, 30}, &window);
    FocusRing& ring = *new FocusRing(window.theme, window);
};

}  // namespace

TEST_F(FocusRingTest, showsAroundWhatTheKeyboardReachedAndNotThePointer)
{
    auto* second = buttonAt({300, 350, 100, 30}, &window);
    window.begin();
    EXPECT_FALSE(ring.isVisible() && ring.widget() == nullptr);

    focus(*second, Qt::TabFocusReason);
    EXPECT_EQ(ring.widget(), second);
    EXPECT_TRUE(ring.isVisible());
    EXPECT_TRUE(ring.geometry().contains(around(second->geometry())));

    focus(*first, Qt::MouseFocusReason);
    EXPECT_EQ(ring.widget(), nullptr);
    EXPECT_FALSE(ring.isVisible());
}

TEST_F(FocusRingTest, isNotCutOffByAParentThatIsNoWider)
{
    auto* narrow = new QWidget(&window);
    narrow->setGeometry(40, 40, 100, 40);
    auto* button = buttonAt(narrow->rect(), narrow);
    window.begin();
    focus(*button, Qt::TabFocusReason);
    ASSERT_TRUE(ring.isVisible());
    EXPECT_EQ(placeIn(&window), around({40, 40, 100, 40}));
    EXPECT_EQ(ring.visibleRegion().boundingRect(), ring.rect());
}

TEST_F(FocusRingTest, followsWhatScrollsAndStaysInItsArea)
{
    auto* area = new QScrollArea(&window);
    area->setGeometry(0, 0, 300, 200);
    auto* page = new QWidget;
    page->resize(200, 1'000);
    auto* button = buttonAt({20, 150, 100, 30}, page);
    area->setWidget(page);
    window.begin();
    focus(*button, Qt::TabFocusReason);
    ASSERT_TRUE(ring.isVisible());
    EXPECT_TRUE(area->viewport()->isAncestorOf(&ring));
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->value() + 40);
    window.rest();
    EXPECT_EQ(placeIn(area->viewport()),
              around({button->mapTo(area->viewport(), QPoint()), button->size()}));
}

TEST_F(FocusRingTest, leavesAloneWhatShowsItsFocusItself)
{
    auto* button = buttonAt({300, 350, 100, 30}, &window);
    button->setProperty(showsFocusItself, true);
    window.begin();
    focus(*button, Qt::TabFocusReason);
    EXPECT_EQ(ring.widget(), nullptr);
}

}  // namespace gruk
