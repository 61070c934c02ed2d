#include "app/screens/message_strip.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include <QAccessible>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/status_banner.h"
#include "tests/support/patrol_page_house.h"
#include "tests/support/widget_words.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::PatrolPageHouse;

/// A small window on a page of forty findings, of which the first went to the Trash.
class MessagesInSight : public testing::Test {
protected:
    MessagesInSight()
    {
        house.makeManyFindings(40);
        house.allowTrash();
        house.activate();
        house.shrink();
        house.settle();
    }

    void scrollTo(int place)
    {
        house.scrollBar()->setValue(place);
        house.settle();
    }
    /// The first row that can be seen whole.
    [[nodiscard]] FindingRow* rowInView() const
    {
        for (FindingRow* row : house.rows()) {
            if (heightInWindow(*row) >= heightInWindow(*house.page())) {
                return row;
            }
        }
        return nullptr;
    }
    [[nodiscard]] int heightInWindow(const QWidget& widget) const
    {
        return widget.mapTo(house.window.get(), QPoint(0, 0)).y();
    }
    [[nodiscard]] QWidget* echo() const
    {
        return house.window->findChild<QWidget*>(QStringLiteral("messageEcho"));
    }
    void trash(const FindingRow& row)
    {
        QTest::mouseClick(buttonIn(&row, "Move to Trash"), Qt::LeftButton);
        house.repaint();
        house.answer("trashQuestion", "Move to Trash");
    }
    /// Whether a label with that text lies whole within the window and what it is scrolled in.
    [[nodiscard]] bool isInSight(const QString& text) const
    {
        for (const QLabel* label : house.window->findChildren<QLabel*>()) {
            if (label->isVisible() && label->text() == text
                && label->visibleRegion().boundingRect() == label->rect()) {
                return true;
            }
        }
        return false;
    }

    PatrolPageHouse house;
};

}  // namespace

TEST_F(MessagesInSight, aRowThatGoesToTheTrashLowOnThePageIsToldAboveTheFold)
{
    scrollTo(1'500);
    FindingRow* row = rowInView();
    ASSERT_NE(row, nullptr);
    trash(*row);
    const QString said = QString::fromStdString(*house.model->lastActionMessage());
    ASSERT_TRUE(said.startsWith(QStringLiteral("Moved report (1).pdf")));
    EXPECT_TRUE(isInSight(said));
    QAbstractButton* undo = test::buttonIn(*echo(), QStringLiteral("Undo"));
    ASSERT_NE(undo, nullptr);
    EXPECT_EQ(undo->visibleRegion().boundingRect(), undo->rect());
    undo->click();
    house.settle();
    EXPECT_FALSE(house.model->lastTrashOperation());
    EXPECT_TRUE(isInSight(QStringLiteral("Restored 1 item from Trash.")));
}

TEST_F(MessagesInSight, anErrorIsToldAboveTheFoldToo)
{
    scrollTo(1'500);
    FindingRow* row = rowInView();
    buttonIn(row, "Move to Trash")->click();
    house.repaint();
    std::filesystem::remove_all(house.directory.path("Home"));
    house.answer("trashQuestion", "Move to Trash");
    ASSERT_TRUE(house.model->errorMessage());
    EXPECT_TRUE(isInSight(QString::fromStdString(*house.model->errorMessage())));
}

TEST_F(MessagesInSight, atItsTopThePageKeepsItsHeadInView)
{
    scrollTo(0);
    ASSERT_FALSE(echo()->isVisible());
    // So low that the messages' own place is below the fold.
    house.window->setMinimumHeight(0);
    house.window->resize(house.window->width(), 260);
    house.settle();
    ASSERT_TRUE(echo()->isVisible());
    EXPECT_EQ(house.scrollBar()->value(), 0);
}

TEST_F(MessagesInSight, theyAreRepeatedOnlyWhileTheirOwnPlaceIsOutOfView)
{
    scrollTo(0);
    EXPECT_FALSE(echo()->isVisible());
    scrollTo(1'500);
    EXPECT_TRUE(echo()->isVisible());
    scrollTo(0);
    EXPECT_FALSE(echo()->isVisible());
    scrollTo(1'500);
    // Which has a strip of its own.
    house.window->setDetailPage(DetailPage::browse);
    house.settle();
    EXPECT_FALSE(echo()->isVisible());
    house.window->setDetailPage(DetailPage::patrol);
    scrollTo(1'500);
    EXPECT_TRUE(echo()->isVisible());
    house.model->selectRealm(FileURL::directory(house.directory.path("Other")));
    house.settle();
    EXPECT_FALSE(echo()->isVisible()) << "nothing is said any more";
}

TEST_F(MessagesInSight, whatComesOverThePageMovesNothingThatIsRead)
{
    scrollTo(0);
    // Just so far that the messages are cut.
    const QWidget* section = house.page()->findChild<QWidget*>(QStringLiteral("lastActionMessage"));
    const QWidget* row = house.page()->findChild<QWidget*>(QStringLiteral("findingsFilter"));
    const int before = heightInWindow(*row);
    const int by = heightInWindow(*section) - heightInWindow(*house.page()) + 1;
    scrollTo(by);
    ASSERT_TRUE(echo()->isVisible());
    EXPECT_EQ(heightInWindow(*row), before - by);
    const int read = heightInWindow(*row);
    house.scrollBar()->setValue(house.scrollBar()->value() - 1 - echo()->height());
    house.settle();
    ASSERT_FALSE(echo()->isVisible());
    EXPECT_EQ(heightInWindow(*row), read + 1 + echo()->height());
}

TEST_F(MessagesInSight, theFocusGoesBackToWhereItWasWhenTheUndoIsDone)
{
    scrollTo(1'500);
    trash(*rowInView());
    QWidget* was = house.window->focusWidget();
    ASSERT_TRUE(house.page()->isAncestorOf(was));
    const int place = heightInWindow(*was);
    QAbstractButton* undo = test::buttonIn(*echo(), QStringLiteral("Undo"));
    undo->setFocus(Qt::TabFocusReason);
    QTest::keyClick(undo, Qt::Key_Space);
    house.settle();
    EXPECT_FALSE(house.model->lastTrashOperation());
    EXPECT_EQ(house.window->focusWidget(), was);
    EXPECT_EQ(heightInWindow(*was), place);
}

TEST_F(MessagesInSight, whoListensHearsItOnce)
{
    const auto roles = [this](const char* name) {
        std::vector<QAccessible::Role> all;
        for (StatusBanner* banner :
             house.window->findChildren<StatusBanner*>(QString::fromLatin1(name))) {
            if (banner->isVisible()) {
                all.push_back(QAccessible::queryAccessibleInterface(banner)->role());
            }
        }
        return all;
    };
    scrollTo(1'500);
    trash(*rowInView());
    const std::vector<QAccessible::Role> said = roles("lastActionMessage");
    EXPECT_EQ(said.size(), 2U);
    EXPECT_EQ(std::ranges::count(said, QAccessible::Notification), 1);
}

}  // namespace gruk
