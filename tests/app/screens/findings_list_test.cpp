#include "app/screens/findings_list.h"

#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <QVariantAnimation>
#include <gtest/gtest.h>

namespace gruk {

namespace {

std::string nameOf(int number)
{
    return "item" + std::to_string(number);
}

FindingsList::Findings makeFindings(int count)
{
    auto findings = std::make_shared<std::vector<ReviewFinding>>();
    for (int number = 0; number < count; ++number) {
        ReviewFinding finding;
        finding.id = "oldInstaller:" + std::to_string(number);
        finding.url = FileURL("/realm/" + nameOf(number));
        finding.reason = ReviewFinding::Reason::oldInstaller;
        finding.explanation = "An explanation that goes on for a while. ";
        finding.confidence = number % 2 == 0 ? 0.8 : 0.79;
        findings->push_back(std::move(finding));
    }
    return findings;
}

/// The same findings without one.
FindingsList::Findings without(const FindingsList::Findings& findings, int number)
{
    auto rest = std::make_shared<std::vector<ReviewFinding>>(*findings);
    std::erase_if(*rest, [&](const ReviewFinding& finding) {
        return finding.url.lastPathComponent() == nameOf(number);
    });
    return rest;
}

/// A list in a scrolling page, as the patrol page has it, between two other controls.
struct Page {
    Theme theme;
    QScrollArea scroll;
    QPushButton* above = new QPushButton;
    FindingsList* list = new FindingsList(theme);
    QPushButton* below = new QPushButton;

    Page()
    {
        theme.setReducedMotion(true);
        auto* content = new QWidget;
        auto* column = new QVBoxLayout(content);
        column->addWidget(above);
        column->addWidget(list);
        column->addWidget(below);
        scroll.setFocusPolicy(Qt::NoFocus);
        scroll.setWidgetResizable(true);
        scroll.setWidget(content);
        scroll.resize(600, 400);
        QObject::connect(scroll.verticalScrollBar(), &QScrollBar::valueChanged, list,
                         [this] { tellWhatIsInView(); });
        scroll.show();
        QApplication::setActiveWindow(&scroll);
        QApplication::processEvents();
    }

    void show(FindingsList::Findings findings)
    {
        list->setControlBefore(above);
        static_cast<void>(list->setFindings(std::move(findings)));
        QApplication::processEvents();
        tellWhatIsInView();
        QApplication::processEvents();
    }

    void tellWhatIsInView()
    {
        const int top = list->mapFrom(scroll.viewport(), QPoint(0, 0)).y();
        list->showWithin(top, top + scroll.viewport()->height());
    }

    /// In the scrolling page, on a row's name.
    [[nodiscard]] QPoint place(const QWidget& row) const
    {
        constexpr QPoint onTheName(120, 14);
        return row.mapTo(&scroll, onTheName);
    }

    [[nodiscard]] FindingRow* row(int number) const
    {
        return row(QString::fromStdString(nameOf(number)));
    }

    [[nodiscard]] FindingRow* row(const QString& name) const
    {
        for (FindingRow* each : list->findChildren<FindingRow*>()) {
            if (each->isVisible() && each->accessibleName().startsWith(name + QLatin1Char(','))) {
                return each;
            }
        }
        return nullptr;
    }
};

void press(Qt::Key key)
{
    QWidget* focused = QApplication::focusWidget();
    ASSERT_NE(focused, nullptr);
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(focused, &down);
    QApplication::processEvents();
}

}  // namespace

TEST(FindingsList, aHundredThousandFindingsMakeAHandfulOfRows)
{
    Page page;
    page.show(makeFindings(100'000));
    EXPECT_LT(page.list->rowCount(), 20U);
    EXPECT_GT(page.list->rowCount(), 4U);
    EXPECT_NE(page.row(QStringLiteral("item0")), nullptr);

    QScrollBar* bar = page.scroll.verticalScrollBar();
    bar->setValue(bar->maximum());
    QApplication::processEvents();
    EXPECT_LT(page.list->rowCount(), 20U);
    EXPECT_NE(page.row(QStringLiteral("item99999")), nullptr);
    EXPECT_EQ(page.row(QStringLiteral("item0")), nullptr);
}

TEST(FindingsList, isAsTallAsAllItsRows)
{
    Page page;
    page.show(makeFindings(1'000));
    EXPECT_EQ(page.list->height(), 1'000 * FindingRow::closedHeight(page.theme));
    page.show(makeFindings(0));
    EXPECT_EQ(page.list->height(), 0);
    EXPECT_EQ(page.list->rowCount(), 0U);
}

TEST(FindingsList, endsWhereAWidgetCannotBeTaller)
{
    Page page;
    page.show(makeFindings(static_cast<int>(FindingsList::mostRows) + 10));
    const int rowHeight = FindingRow::closedHeight(page.theme);
    EXPECT_EQ(page.list->height(), static_cast<int>(FindingsList::mostRows) * rowHeight);
    EXPECT_LT(page.list->height(), QWIDGETSIZE_MAX);
}

TEST(FindingsList, anOpenRowMakesRoomForItsPanelAndClosesAgain)
{
    Page page;
    page.show(makeFindings(50));
    const int closed = page.list->height();
    FindingRow* row = page.row(QStringLiteral("item1"));
    auto* disclosure = qobject_cast<QAbstractButton*>(row->disclosure());
    disclosure->click();
    QApplication::processEvents();
    EXPECT_GT(page.list->height(), closed + 40);
    EXPECT_EQ(page.row(QStringLiteral("item2"))->y(), row->y() + row->height());
    EXPECT_EQ(page.list->height() - closed, row->height() - FindingRow::closedHeight(page.theme));
    disclosure->click();
    EXPECT_EQ(page.list->height(), closed);
}

TEST(FindingsList, aPanelNeedsMoreRoomWhereItIsNarrow)
{
    Page page;
    page.show(makeFindings(5));
    qobject_cast<QAbstractButton*>(page.row(QStringLiteral("item1"))->disclosure())->click();
    const int wide = page.list->height();
    page.scroll.resize(320, 400);
    QApplication::processEvents();
    EXPECT_GT(page.list->height(), wide);
}

TEST(FindingsList, aPanelGrowsSmoothlyAndTheRestMovesAlong)
{
    Page page;
    page.show(makeFindings(5));
    page.theme.setReducedMotion(false);
    FindingRow* row = page.row(QStringLiteral("item1"));
    const FindingRow* next = page.row(QStringLiteral("item2"));
    const int closed = FindingRow::closedHeight(page.theme);
    row->disclosure()->click();
    auto* move = page.list->findChild<QVariantAnimation*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_NE(move, nullptr);
    EXPECT_EQ(move->duration(), 160);
    move->setCurrentTime(80);
    const int halfway = row->height();
    EXPECT_GT(halfway, closed);
    EXPECT_EQ(next->y(), row->y() + halfway);
    move->setCurrentTime(160);
    EXPECT_GT(row->height(), halfway);
    EXPECT_EQ(next->y(), row->y() + row->height());
}

TEST(FindingsList, whatIsOpenStaysOpenInAnotherOrder)
{
    Page page;
    const FindingsList::Findings findings = makeFindings(10);
    page.show(findings);
    qobject_cast<QAbstractButton*>(page.row(QStringLiteral("item3"))->disclosure())->click();
    auto reversed =
        std::make_shared<std::vector<ReviewFinding>>(findings->rbegin(), findings->rend());
    page.show(reversed);
    EXPECT_GT(page.row(QStringLiteral("item3"))->height(), FindingRow::closedHeight(page.theme));
    EXPECT_EQ(page.row(QStringLiteral("item4"))->height(), FindingRow::closedHeight(page.theme));
}

TEST(FindingsList, theTabKeyGoesDownTheListRowByRow)
{
    Page page;
    page.show(makeFindings(200));
    page.row(0)->disclosure()->setFocus(Qt::TabFocusReason);
    for (int number = 0; number < 60; ++number) {
        const FindingRow* row = page.row(number);
        ASSERT_NE(row, nullptr) << number;
        ASSERT_EQ(QApplication::focusWidget(), row->disclosure()) << number;
        press(Qt::Key_Tab);
        EXPECT_TRUE(row->isAncestorOf(QApplication::focusWidget()));
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Backtab);
    press(Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), page.row(59)->disclosure());
}

TEST(FindingsList, theTabKeyComesFromWhatIsAboveTheListAndGoesOnToWhatIsBelow)
{
    Page page;
    page.show(makeFindings(20));
    page.above->setFocus(Qt::TabFocusReason);
    for (int number = 0; number < 20; ++number) {
        press(Qt::Key_Tab);
        ASSERT_NE(page.row(number), nullptr) << number;
        ASSERT_EQ(QApplication::focusWidget(), page.row(number)->disclosure()) << number;
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), page.below);
    for (int number = 19; number >= 0; --number) {
        press(Qt::Key_Backtab);
        press(Qt::Key_Backtab);
        ASSERT_NE(page.row(number), nullptr) << number;
        ASSERT_EQ(QApplication::focusWidget(), page.row(number)->disclosure()) << number;
    }
    press(Qt::Key_Backtab);
    EXPECT_EQ(QApplication::focusWidget(), page.above);
}

TEST(FindingsList, whatIsBeyondTheLastRowIsNotShown)
{
    Page page;
    page.show(makeFindings(7));
    EXPECT_EQ(page.list->shown().size(), 7U);
    page.show(makeFindings(static_cast<int>(FindingsList::mostRows) + 10));
    EXPECT_EQ(page.list->shown().size(), FindingsList::mostRows);
}

TEST(FindingsList, aRowSaysThatItsItemIsGoneAndThatItIsThereAgain)
{
    Page page;
    page.show(makeFindings(3));
    const auto saysGone = [&](int number) {
        const QList<QLabel*> labels = page.row(number)->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [](const QLabel* label) {
            return label->text() == QStringLiteral("Already gone — next patrol will forget it");
        });
    };
    const std::vector<FileURL> all = page.list->shownURLs();
    page.list->showGone(all, {all[1]});
    EXPECT_FALSE(saysGone(0));
    EXPECT_TRUE(saysGone(1));
    page.list->showGone({all[0]}, {});
    EXPECT_TRUE(saysGone(1));
    page.list->showGone(all, {all[0]});
    EXPECT_TRUE(saysGone(0));
    EXPECT_FALSE(saysGone(1));
}

TEST(FindingsList, theFocusStaysWithItsFindingWhenTheListChanges)
{
    Page page;
    const FindingsList::Findings findings = makeFindings(200);
    page.show(findings);
    page.scroll.verticalScrollBar()->setValue(page.row(0)->height() * 20);
    QApplication::processEvents();
    QWidget* focused = page.row(22)->disclosure();
    focused->setFocus(Qt::TabFocusReason);
    const int value = page.scroll.verticalScrollBar()->value();
    page.show(without(findings, 3));
    EXPECT_EQ(QApplication::focusWidget(), focused);
    ASSERT_NE(page.row(22), nullptr);
    EXPECT_EQ(focused, page.row(22)->disclosure());
    EXPECT_EQ(page.scroll.verticalScrollBar()->value(), value);
}

TEST(FindingsList, theRowThatTakesThePlaceOfOneThatLeftTakesItsFocus)
{
    Page page;
    page.list->setReviewOnly(false);
    const FindingsList::Findings findings = makeFindings(200);
    page.show(findings);
    page.scroll.verticalScrollBar()->setValue(page.row(0)->height() * 20);
    QApplication::processEvents();
    for (const std::size_t control : {0U, 1U, 2U, 3U}) {
        page.show(findings);
        page.row(22)->controls()[control]->setFocus(Qt::TabFocusReason);
        const int value = page.scroll.verticalScrollBar()->value();
        page.show(without(findings, 22));
        ASSERT_NE(page.row(23), nullptr) << control;
        EXPECT_EQ(QApplication::focusWidget(), page.row(23)->controls()[control]) << control;
        EXPECT_EQ(page.scroll.verticalScrollBar()->value(), value) << control;
    }
}

TEST(FindingsList, theLastRowTakesTheFocusOfOneThatLeftFromTheEnd)
{
    Page page;
    const FindingsList::Findings findings = makeFindings(5);
    page.show(findings);
    page.row(4)->disclosure()->setFocus(Qt::TabFocusReason);
    page.show(without(findings, 4));
    EXPECT_EQ(QApplication::focusWidget(), page.row(3)->disclosure());
}

TEST(FindingsList, theFocusIsNotTakenFromElsewhereWhenTheListChanges)
{
    Page page;
    const FindingsList::Findings findings = makeFindings(5);
    page.show(findings);
    page.above->setFocus(Qt::TabFocusReason);
    page.show(without(findings, 0));
    EXPECT_EQ(QApplication::focusWidget(), page.above);
}

TEST(FindingsList, aRowWhoseFindingIsTheSameIsKeptAndAnotherIsMadeAfresh)
{
    Page page;
    const FindingsList::Findings findings = makeFindings(5);
    page.show(findings);
    const FindingRow* kept = page.row(3);
    page.row(2)->disclosure()->setFocus(Qt::TabFocusReason);
    auto grown = std::make_shared<std::vector<ReviewFinding>>(*without(findings, 1));
    (*grown)[1].allocatedSize = 9'000;
    page.show(grown);
    EXPECT_EQ(page.row(3), kept);
    EXPECT_EQ(kept->y(), 2 * FindingRow::closedHeight(page.theme));
    EXPECT_EQ(page.row(2)->accessibleName(), QStringLiteral("item2, 9 KB, Old installer"));
    EXPECT_EQ(QApplication::focusWidget(), page.row(2)->disclosure());
}

TEST(FindingsList, aRowThatMovedActsOnItsOwnFinding)
{
    Page page;
    const FindingsList::Findings findings = makeFindings(5);
    page.show(findings);
    page.show(without(findings, 0));
    std::vector<std::size_t> revealed;
    QObject::connect(page.list, &FindingsList::revealRequested, page.list,
                     [&](std::size_t index) { revealed.push_back(index); });
    Q_EMIT page.row(3)->revealRequested();
    EXPECT_EQ(revealed, std::vector<std::size_t>{2});
    page.row(3)->disclosure()->click();
    EXPECT_GT(page.row(3)->height(), FindingRow::closedHeight(page.theme));
    EXPECT_EQ(page.row(4)->height(), FindingRow::closedHeight(page.theme));
}

TEST(FindingsList, aRowThatIsClosingWhenTheWidthChangesEndsClosed)
{
    Page page;
    page.show(makeFindings(5));
    const int closed = FindingRow::closedHeight(page.theme);
    page.row(1)->disclosure()->click();
    page.row(3)->disclosure()->click();
    page.theme.setReducedMotion(false);
    page.row(1)->disclosure()->click();
    auto* move = page.list->findChild<QVariantAnimation*>(QString(), Qt::FindDirectChildrenOnly);
    ASSERT_NE(move, nullptr);
    move->setCurrentTime(80);
    ASSERT_GT(page.row(1)->height(), closed);
    page.scroll.resize(500, 400);
    QApplication::processEvents();
    EXPECT_EQ(page.row(1)->height(), closed);
    EXPECT_EQ(page.row(2)->y(), page.row(1)->y() + closed);
    EXPECT_EQ(page.list->height(), 5 * closed + page.row(3)->height() - closed);
}

TEST(FindingsList, returnOpensTheRowInFocus)
{
    Page page;
    page.show(makeFindings(5));
    FindingRow* row = page.row(QStringLiteral("item2"));
    row->disclosure()->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Return);
    EXPECT_GT(row->height(), FindingRow::closedHeight(page.theme));
}

TEST(FindingsList, theRowInFocusStaysWhenItIsScrolledAway)
{
    Page page;
    page.show(makeFindings(1'000));
    page.row(QStringLiteral("item0"))->disclosure()->setFocus(Qt::TabFocusReason);
    page.scroll.verticalScrollBar()->setValue(page.scroll.verticalScrollBar()->maximum());
    QApplication::processEvents();
    EXPECT_NE(page.row(QStringLiteral("item0")), nullptr);
    EXPECT_EQ(page.row(QStringLiteral("item50")), nullptr);
}

TEST(FindingsList, aFindingOfExactlyEightTenthsConfidenceReadsSolid)
{
    Page page;
    page.show(makeFindings(2));
    const auto lastLine = [&](const char* name) {
        FindingRow* row = page.row(QString::fromLatin1(name));
        qobject_cast<QAbstractButton*>(row->disclosure())->click();
        QString text;
        for (const QLabel* label : row->findChildren<QLabel*>()) {
            text = label->wordWrap() ? label->text() : text;
        }
        return text;
    };
    EXPECT_EQ(lastLine("item0"),
              QStringLiteral("The facts here are solid. The decision is still yours."));
    EXPECT_EQ(lastLine("item1"),
              QStringLiteral("Good evidence, not certainty — worth a glance before anything "
                             "moves."));
}

TEST(FindingsList, theRingAroundAnActionLiesOnNoFigure)
{
    Page page;
    page.list->setReviewOnly(false);
    auto findings = std::make_shared<std::vector<ReviewFinding>>(*makeFindings(1));
    findings->front().byteDelta = 52'000'000;
    page.show(findings);
    const FindingRow* row = page.row(0);
    const auto place = [&](const QWidget& part) {
        return QRect(part.mapTo(row, QPoint()), part.size());
    };
    const auto labels = row->findChildren<QLabel*>();
    const auto delta = std::ranges::find(labels, QStringLiteral("+52 MB"), &QLabel::text);
    ASSERT_NE(delta, labels.end());
    constexpr int ring = Measure::focusGap + Measure::focusRing;
    for (const QWidget* control : row->controls()) {
        const QRect around = place(*control).adjusted(-ring, -ring, ring, ring);
        EXPECT_FALSE(around.intersects(place(**delta))) << control->metaObject()->className();
    }
}

TEST(FindingsList, aRowIsPressedWhileThePointerIsDownOnIt)
{
    Page page;
    page.list->setReviewOnly(false);
    page.show(makeFindings(3));
    FindingRow* row = page.row(1);
    const QImage atRest = row->grab().toImage();
    QTest::mousePress(page.scroll.windowHandle(), Qt::LeftButton, {}, page.place(*row));
    const QImage pressed = row->grab().toImage();
    EXPECT_NE(pressed, atRest);
    // Dragged out and in again it stays pressed, until the pointer is up.
    QTest::mouseMove(page.scroll.windowHandle(), QPoint(1, 1));
    EXPECT_EQ(row->grab().toImage(), pressed);
    QTest::mouseMove(page.scroll.windowHandle(), page.place(*row));
    EXPECT_EQ(row->grab().toImage(), pressed);
    QTest::mouseRelease(page.scroll.windowHandle(), Qt::LeftButton, {}, page.place(*row));
    EXPECT_EQ(row->grab().toImage(), atRest);
}

TEST(FindingsList, aPressedRowLeavesItsOpenPanelAlone)
{
    Page page;
    page.scroll.resize(600, 600);
    page.list->setReviewOnly(false);
    page.show(makeFindings(3));
    FindingRow* row = page.row(1);
    row->disclosure()->setOpen(true);
    QApplication::processEvents();
    const int top = FindingRow::closedHeight(page.theme) + 2;
    const QRect panel(0, top, row->width(), row->height() - top);
    const QImage atRest = row->grab(panel).toImage();
    QTest::mousePress(page.scroll.windowHandle(), Qt::LeftButton, {}, page.place(*row));
    EXPECT_EQ(row->grab(panel).toImage(), atRest);
    QTest::mouseRelease(page.scroll.windowHandle(), Qt::LeftButton, {}, page.place(*row));
    const QPoint inPanel = row->mapTo(&page.scroll, panel.center());
    const QImage whole = row->grab().toImage();
    QTest::mousePress(page.scroll.windowHandle(), Qt::LeftButton, {}, inPanel);
    EXPECT_EQ(row->grab().toImage(), whole);
    QTest::mouseRelease(page.scroll.windowHandle(), Qt::LeftButton, {}, inPanel);
}

TEST(FindingsList, aRowThatAClickDoesNothingToIsNotPressed)
{
    Page page;
    page.list->setReviewOnly(true);
    page.show(makeFindings(3));
    FindingRow* row = page.row(1);
    const QImage atRest = row->grab().toImage();
    QTest::mousePress(page.scroll.windowHandle(), Qt::LeftButton, {}, page.place(*row));
    EXPECT_EQ(row->grab().toImage(), atRest);
    QTest::mouseRelease(page.scroll.windowHandle(), Qt::LeftButton, {}, page.place(*row));
}

TEST(FindingsList, theControlsOfARowAndTheKeyboardDoNotPressIt)
{
    Page page;
    page.list->setReviewOnly(false);
    page.show(makeFindings(3));
    FindingRow* row = page.row(1);
    for (QWidget* control : row->controls()) {
        const QPoint middle = control->mapTo(&page.scroll, control->rect().center());
        QTest::mousePress(page.scroll.windowHandle(), Qt::LeftButton, {}, middle);
        for (const QWidget* part : row->findChildren<QWidget*>()) {
            EXPECT_EQ(part->graphicsEffect(), nullptr);
        }
        QTest::mouseRelease(page.scroll.windowHandle(), Qt::LeftButton, {}, QPoint(1, 1));
    }
    row->controls().front()->setFocus();
    QTest::keyPress(page.scroll.windowHandle(), Qt::Key_Space);
    for (const QWidget* part : row->findChildren<QWidget*>()) {
        EXPECT_EQ(part->graphicsEffect(), nullptr);
    }
    QTest::keyRelease(page.scroll.windowHandle(), Qt::Key_Space);
}

}  // namespace gruk
