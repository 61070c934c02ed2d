#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

#include <QApplication>
#include <QPointer>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

#include "app/screens/heavy_section.h"
#include "app/screens/selection_box.h"
#include "core/patrol/metadata_reader.h"
#include "tests/support/patrol_page_house.h"

namespace gruk {

namespace {

using test::buttonIn;
using test::PatrolPageHouse;

/// A small window on a page of forty findings that is scrolled into the midst of them.
class LongPage : public PatrolPageHouse {
public:
    explicit LongPage(std::shared_ptr<SnapshotScanner> scanner = nullptr)
        : PatrolPageHouse(std::move(scanner))
    {
        makeManyFindings(40);
        allowTrash();
        activate();
        shrink();
        scrollBar()->setValue(1'500);
        settle();
    }

    /// The first row that can be seen whole.
    [[nodiscard]] FindingRow* firstInView() const
    {
        for (FindingRow* row : rows()) {
            if (heightInView(row) >= 0) {
                return row;
            }
        }
        return nullptr;
    }

    /// How far down in the view something is.
    [[nodiscard]] int heightInView(const QWidget* widget) const
    {
        return widget->mapTo(page()->viewport(), QPoint(0, 0)).y();
    }

    /// The same in the window, in which what stands over the page takes its room.
    [[nodiscard]] int heightInWindow(const QWidget* widget) const
    {
        return widget->mapTo(window.get(), QPoint(0, 0)).y();
    }

    [[nodiscard]] FindingRow* rowBelow(const FindingRow* row) const
    {
        const std::vector<FindingRow*> all = rows();
        return *std::next(std::ranges::find(all, row));
    }

    [[nodiscard]] FindingRow* rowNamed(const QString& name) const
    {
        for (FindingRow* row : rows()) {
            if (row->accessibleName() == name) {
                return row;
            }
        }
        return nullptr;
    }
};

QString focusedText()
{
    const auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
    return button == nullptr ? QString() : button->text();
}

QString focusedDescription()
{
    const QWidget* focused = QApplication::focusWidget();
    return focused == nullptr ? QString() : focused->accessibleDescription();
}

FindingRow* focusedRow()
{
    QWidget* at = QApplication::focusWidget();
    while (at != nullptr && qobject_cast<FindingRow*>(at) == nullptr) {
        at = at->parentWidget();
    }
    return qobject_cast<FindingRow*>(at);
}

}  // namespace

TEST(PatrolPageFocus, thePageStaysWhereItIsWhenAnItemIsMovedToTheTrashByPointer)
{
    LongPage page;
    const QPointer<FindingRow> row = page.firstInView();
    const QString next = page.rowBelow(row)->accessibleName();
    const int height = page.heightInWindow(row);
    QTest::mouseClick(buttonIn(row, "Move to Trash"), Qt::LeftButton);
    page.repaint();
    page.answer("trashQuestion", "Move to Trash");
    EXPECT_TRUE(row.isNull());
    ASSERT_NE(focusedRow(), nullptr);
    EXPECT_EQ(focusedRow()->accessibleName(), next);
    EXPECT_EQ(page.heightInWindow(focusedRow()), height);
}

TEST(PatrolPageFocus, theKeyboardGoesOnAtTheRowThatFollowsOneMovedToTheTrash)
{
    LongPage page;
    FindingRow* row = page.firstInView();
    row->disclosure()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(focusedRow(), row);
    ASSERT_EQ(focusedText(), QStringLiteral("Move to Trash"));
    const int height = page.heightInWindow(row);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    page.repaint();
    page.answer("trashQuestion", "Move to Trash");
    EXPECT_EQ(focusedText(), QStringLiteral("Move to Trash"));
    ASSERT_NE(focusedRow(), nullptr);
    EXPECT_EQ(page.heightInWindow(focusedRow()), height);
}

TEST(PatrolPageFocus, aPatrolInTheBackgroundMovesNeitherThePageNorTheFocus)
{
    LongPage page;
    FindingRow* row = page.firstInView();
    row->disclosure()->click();
    row->disclosure()->setFocus(Qt::TabFocusReason);
    page.settle();
    const QString name = row->accessibleName();
    const int height = page.heightInView(row);
    page.patrol();
    ASSERT_NE(page.rowNamed(name), nullptr);
    EXPECT_EQ(QApplication::focusWidget(), page.rowNamed(name)->disclosure());
    EXPECT_EQ(page.heightInView(page.rowNamed(name)), height);
}

TEST(PatrolPageFocus, thePageStaysWhereItIsWhenTheControlInFocusGoes)
{
    LongPage page;
    page.button(QStringLiteral("Select all"))->setFocus(Qt::OtherFocusReason);
    const int value = page.scrollBar()->value();
    page.model->setReviewOnly(true);
    page.repaint();
    EXPECT_EQ(focusedText(), QStringLiteral("All kinds"));
    EXPECT_EQ(page.scrollBar()->value(), value);
}

TEST(PatrolPageFocus, aRowThatCanMoveNothingAnyMoreKeepsTheFocus)
{
    LongPage page;
    FindingRow* row = page.firstInView();
    for (QWidget* control : {row->controls().front(), row->controls().back()}) {
        control->setFocus(Qt::OtherFocusReason);
        ASSERT_EQ(QApplication::focusWidget(), control);
        page.model->setReviewOnly(true);
        page.repaint();
        EXPECT_EQ(QApplication::focusWidget(), row->disclosure());
        page.model->setReviewOnly(false);
        page.repaint();
    }
}

TEST(PatrolPageFocus, withTheLastFindingGoneTheFocusGoesToTheHeadOfTheList)
{
    PatrolPageHouse house;
    house.makeDuplicate("Home", 8'192);
    house.makePatrolledRealm("Home");
    house.allowTrash();
    house.activate();
    QTest::mouseClick(buttonIn(house.rows().front(), "Move to Trash"), Qt::LeftButton);
    house.repaint();
    house.answer("trashQuestion", "Move to Trash");
    ASSERT_TRUE(house.rows().empty());
    EXPECT_EQ(focusedText(), QStringLiteral("All kinds"));
}

TEST(PatrolPageFocus, theFocusStaysOnABigThingWhenItsListChanges)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.activate();
    const auto* heavy = house.window->findChild<HeavySection*>();
    QAbstractButton* reveal = nullptr;
    for (QAbstractButton* each : heavy->findChildren<QAbstractButton*>()) {
        reveal = each->accessibleDescription().startsWith(QStringLiteral("b, ")) ? each : reveal;
    }
    ASSERT_NE(reveal, nullptr) << test::textIn(heavy).toStdString();
    reveal->setFocus(Qt::TabFocusReason);
    house.model->moveFindingToTrash(
        house.model->findings().front(),
        *TrashService::currentIdentity(house.model->findings().front().url));
    house.settle();
    ASSERT_TRUE(heavy->isAncestorOf(QApplication::focusWidget()));
    EXPECT_NE(QApplication::focusWidget(), reveal);
    EXPECT_TRUE(focusedDescription().startsWith(QStringLiteral("b, ")));
}

TEST(PatrolPageFocus, showAllGoesOnAtTheFirstRowThatIsNew)
{
    PatrolPageHouse house;
    for (std::size_t number = 1; number < 8; ++number) {
        house.directory.file("Home/file" + std::to_string(number), number * 8'192);
    }
    house.makePatrolledRealm("Home");
    house.activate();
    QAbstractButton* showAll = house.button(QStringLiteral("Show all 8"));
    ASSERT_NE(showAll, nullptr);
    showAll->setFocus(Qt::TabFocusReason);
    QTest::keyClick(showAll, Qt::Key_Return);
    house.settle();
    EXPECT_EQ(focusedText(), QStringLiteral("Reveal"));
    EXPECT_TRUE(focusedDescription().startsWith(QStringLiteral("file2, ")));
}

TEST(PatrolPageFocus, aPatrolThatIsStartedByKeyIsStoppedByTheSameKey)
{
    LongPage* watched = nullptr;
    std::function<void()> atFirst;
    LongPage page(std::make_shared<SnapshotScanner>([&](const FileURL& folder) {
        if (const auto look = std::exchange(atFirst, nullptr)) {
            look();
        }
        return MetadataReader::entries(folder);
    }));
    watched = &page;
    page.scrollBar()->setValue(0);
    page.button(QStringLiteral("Patrol again"))->setFocus(Qt::TabFocusReason);
    atFirst = [&] {
        watched->loop->run();
        watched->repaint();
        EXPECT_EQ(focusedText(), QStringLiteral("Stop patrol"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    };
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    page.settle();
    EXPECT_TRUE(page.shows(QStringLiteral("Patrol stopped. No partial snapshot was saved.")));
    EXPECT_EQ(focusedText(), QStringLiteral("Patrol again"));
    EXPECT_EQ(page.scrollBar()->value(), 0);
}

TEST(PatrolPageFocus, tabGoesDownThePageFromTopToBottom)
{
    PatrolPageHouse house;
    house.makeManyFindings(6);
    house.allowTrash();
    house.activate();
    house.patrol();
    const QWidget* content = house.page()->widget();
    house.button(QStringLiteral("Patrol again"))->setFocus(Qt::TabFocusReason);
    QStringList walk;
    int last = -1;
    while (content->isAncestorOf(QApplication::focusWidget()) && walk.size() < 100) {
        const QWidget* at = QApplication::focusWidget();
        // Beside each other is in order too.
        const int bottom = at->mapTo(content, QPoint(0, at->height())).y();
        EXPECT_GT(bottom, last) << focusedText().toStdString();
        last = at->mapTo(content, QPoint(0, 0)).y();
        walk.append(focusedText());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(walk.count(QStringLiteral("Why the Gruk flagged this")), 6);
    EXPECT_EQ(walk.count(QStringLiteral("Reveal")), 6 + 5);
    EXPECT_EQ(walk.last(), QStringLiteral("Show all 7"));
}

TEST(PatrolPageFocus, theRowsStayWhereTheyAreWhenOneIsTicked)
{
    LongPage page;
    for (const int value : {600, 1'500}) {
        page.scrollBar()->setValue(value);
        page.settle();
        FindingRow* row = page.firstInView();
        ASSERT_NE(row, nullptr);
        const int height = page.heightInView(row);
        for (const bool ticked : {true, false}) {
            QTest::mouseClick(row->findChild<SelectionBox*>(), Qt::LeftButton);
            page.settle();
            EXPECT_EQ(test::isTicked(row), ticked);
            EXPECT_EQ(page.heightInView(row), height) << value;
        }
    }
}

TEST(PatrolPageFocus, whoReadsTheFindingsIsNotMovedByAMessageThatComesAboveThem)
{
    LongPage page;
    const FindingRow* row = page.firstInView();
    const int height = page.heightInWindow(row);
    page.model->moveFindingToTrash(page.model->findings().back(), {});
    page.settle();
    ASSERT_TRUE(page.model->errorMessage());
    EXPECT_EQ(page.heightInWindow(row), height);
}

TEST(PatrolPageFocus, theRowsOfAPageThatIsInViewAsAWholeStayToo)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    FindingRow* row = house.rows().back();
    const QPoint place = row->mapTo(house.window.get(), QPoint(0, 0));
    QTest::mouseClick(row->findChild<SelectionBox*>(), Qt::LeftButton);
    house.settle();
    EXPECT_TRUE(test::isTicked(row));
    EXPECT_EQ(row->mapTo(house.window.get(), QPoint(0, 0)), place);
}

TEST(PatrolPageFocus, whatCanBeDoneWithASelectionIsInViewHoweverFarTheListIsScrolled)
{
    LongPage page;
    QTest::mouseClick(page.firstInView()->findChild<SelectionBox*>(), Qt::LeftButton);
    page.settle();
    for (const int value : {1'000, 1'500, 2'000}) {
        page.scrollBar()->setValue(value);
        page.settle();
        const QAbstractButton* move = page.button(QStringLiteral("Move 1 to Trash…"));
        ASSERT_NE(move, nullptr);
        EXPECT_TRUE(page.page()->viewport()->rect().contains(
            QRect(move->mapTo(page.page()->viewport(), QPoint(0, 0)), move->size())))
            << value;
    }
}

TEST(PatrolPageFocus, aSelectionHidesNoRowAtTheEndOfTheList)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.settle();
    house.button(QStringLiteral("Select all"))->click();
    house.settle();
    const QAbstractButton* move = house.button(QStringLiteral("Move 3 to Trash…"));
    const FindingRow* last = house.rows().back();
    EXPECT_GT(move->mapTo(house.window.get(), QPoint(0, 0)).y(),
              last->mapTo(house.window.get(), QPoint(0, last->height())).y());
    EXPECT_LT(
        move->mapTo(house.window.get(), QPoint(0, move->height())).y(),
        house.window->findChild<HeavySection*>()->mapTo(house.window.get(), QPoint(0, 0)).y());
}

TEST(PatrolPageFocus, theFocusGoesDownTheListInFullViewAboveASelection)
{
    LongPage page;
    QTest::mouseClick(page.firstInView()->findChild<SelectionBox*>(), Qt::LeftButton);
    page.settle();
    const QAbstractButton* move = page.button(QStringLiteral("Move 1 to Trash…"));
    page.firstInView()->disclosure()->setFocus(Qt::TabFocusReason);
    for (int step = 0; step < 40; ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        page.repaint();
        const QWidget* at = QApplication::focusWidget();
        ASSERT_NE(focusedRow(), nullptr);
        EXPECT_LT(page.heightInView(at) + at->height(), page.heightInView(move)) << step;
    }
}

TEST(PatrolPageFocus, theFocusOfAnEndedSelectionGoesToItsControls)
{
    PatrolPageHouse house;
    house.makeFindings();
    house.allowTrash();
    house.activate();
    const auto press = [&](const char* text) {
        QAbstractButton* button = house.button(QString::fromUtf8(text));
        ASSERT_NE(button, nullptr) << text;
        button->setFocus(Qt::TabFocusReason);
        QTest::keyClick(button, Qt::Key_Return);
        house.settle();
    };
    press("Select all");
    EXPECT_EQ(focusedText(), QStringLiteral("Select all"));
    press("Clear selection");
    EXPECT_EQ(focusedText(), QStringLiteral("Select all"));
    press("Select all");
    house.button(QStringLiteral("Move 3 to Trash…"))->setFocus(Qt::TabFocusReason);
    house.model->setReviewOnly(true);
    house.settle();
    EXPECT_EQ(focusedText(), QStringLiteral("Enable Trash actions…"));
    house.model->setReviewOnly(false);
    house.settle();
    press("Move 3 to Trash…");
    house.answer("batchTrashQuestion", "Move to Trash");
    ASSERT_TRUE(house.rows().empty());
    EXPECT_EQ(focusedText(), QStringLiteral("All kinds"));
}

}  // namespace gruk
