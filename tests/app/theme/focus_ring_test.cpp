#include "app/theme/focus_ring.h"

#include <QImage>
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
        return {ring.frame()->mapTo(widget, QPoint()), ring.frame()->size()};
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
    EXPECT_EQ(ring.frame(), nullptr);

    focus(*second, Qt::TabFocusReason);
    EXPECT_EQ(ring.widget(), second);
    EXPECT_TRUE(ring.frame()->isVisible());
    EXPECT_TRUE(ring.frame()->geometry().contains(around(second->geometry())));

    focus(*first, Qt::MouseFocusReason);
    EXPECT_EQ(ring.widget(), nullptr);
    EXPECT_FALSE(ring.frame()->isVisible());
}

TEST_F(FocusRingTest, isNotCutOffByAParentThatIsNoWider)
{
    auto* narrow = new QWidget(&window);
    narrow->setGeometry(40, 40, 100, 40);
    auto* button = buttonAt(narrow->rect(), narrow);
    window.begin();
    focus(*button, Qt::TabFocusReason);
    ASSERT_TRUE(ring.frame()->isVisible());
    EXPECT_EQ(placeIn(&window), around({40, 40, 100, 40}));
    EXPECT_EQ(ring.frame()->visibleRegion().boundingRect(), ring.frame()->rect());
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
    ASSERT_TRUE(ring.frame()->isVisible());
    EXPECT_TRUE(area->viewport()->isAncestorOf(ring.frame()));
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

TEST_F(FocusRingTest, showsAroundWhatComesIntoViewOnlyByItsFocus)
{
    auto* area = new QScrollArea(&window);
    area->setGeometry(0, 0, 300, 200);
    auto* page = new QWidget;
    page->resize(200, 1'000);
    auto* above = buttonAt({20, 20, 100, 30}, page);
    auto* button = buttonAt({20, 700, 100, 30}, page);
    area->setWidget(page);
    window.begin();
    focus(*above, Qt::TabFocusReason);
    button->setFocus(Qt::TabFocusReason);
    area->ensureWidgetVisible(button);
    window.rest();
    ASSERT_TRUE(ring.frame()->isVisible());
    EXPECT_EQ(placeIn(&window), around({button->mapTo(&window, QPoint()), button->size()}));
}

TEST_F(FocusRingTest, outlivesThePageThatItWasIn)
{
    auto* area = new QScrollArea(&window);
    area->setGeometry(0, 40, 300, 160);
    auto* button = new QPushButton(QStringLiteral("one"));
    area->setWidget(button);
    window.begin();
    focus(*button, Qt::TabFocusReason);
    ASSERT_TRUE(area->isAncestorOf(ring.frame()));
    first->setFocus(Qt::MouseFocusReason);
    delete area;
    EXPECT_EQ(ring.widget(), nullptr);
    auto* next = buttonAt({20, 100, 100, 30}, &window);
    next->show();
    focus(*next, Qt::TabFocusReason);
    EXPECT_EQ(ring.widget(), next);
    EXPECT_TRUE(ring.frame()->isVisible());
}

TEST_F(FocusRingTest, liesUnderACardThatLiesOverThePage)
{
    auto* card = new QWidget(&window);
    card->setProperty(liesOverPage, true);
    card->setAutoFillBackground(true);
    card->setGeometry(280, 315, 200, 60);
    auto* action = buttonAt({20, 10, 100, 30}, card);
    window.begin();
    const auto blueIn = [this](const QRect& place) {
        const QImage image = window.grab(place).toImage();
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                found += image.pixelColor(x, y) == window.theme.colour(Role::blue) ? 1 : 0;
            }
        }
        return found;
    };
    focus(*action, Qt::TabFocusReason);
    EXPECT_GT(blueIn(card->geometry()), 0);
    focus(*first, Qt::TabFocusReason);
    EXPECT_GT(blueIn({280, 290, 200, 25}), 0);
    EXPECT_EQ(blueIn(card->geometry()), 0) << "it would cross the card";
}

}  // namespace gruk
