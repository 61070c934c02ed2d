#include "app/theme/sheet.h"

#include <memory>

#include <QAccessible>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "tests/support/theme_window.h"

namespace gruk {

namespace {

/// A window with a button that opens a sheet with two buttons in it.
class SheetTest : public testing::Test {
protected:
    SheetTest()
    {
        under_->move(10, 10);
        QObject::connect(under_, &QPushButton::clicked, &window_, [this] { ++clicksUnder_; });
        window_.begin();
        under_->setFocus();
        sheet_ = new Sheet(window_.theme, QStringLiteral("A question"), under_);
        sheet_->column()->addWidget(first_);
        sheet_->column()->addWidget(second_);
        QObject::connect(sheet_, &Sheet::accepted, &window_, [this] { ++accepted_; });
        QObject::connect(sheet_, &Sheet::rejected, &window_, [this] { ++rejected_; });
        QObject::connect(sheet_, &Sheet::finished, &window_, [this] { ++finished_; });
    }

    void open()
    {
        sheet_->open();
        test::ThemeWindow::rest();
    }

    test::ThemeWindow window_;
    QPushButton* under_ = new QPushButton(QStringLiteral("Under"), &window_);
    QPushButton* first_ = new QPushButton(QStringLiteral("First"));
    QPushButton* second_ = new QPushButton(QStringLiteral("Second"));
    QPointer<Sheet> sheet_;
    int clicksUnder_ = 0;
    int accepted_ = 0;
    int rejected_ = 0;
    int finished_ = 0;
};

}  // namespace

TEST_F(SheetTest, isNoWindowOfItsOwnAndCoversTheWholeWindow)
{
    open();
    EXPECT_FALSE(sheet_->isWindow());
    EXPECT_EQ(sheet_->parentWidget(), &window_);
    EXPECT_EQ(sheet_->geometry(), window_.rect());
    window_.resize(700, 520);
    test::ThemeWindow::rest();
    EXPECT_EQ(sheet_->geometry(), window_.rect());
    const QPoint middle = window_.middleOf(*first_->parentWidget());
    EXPECT_NEAR(middle.x(), 350, 1);
    EXPECT_NEAR(middle.y(), 260, 1);
}

TEST_F(SheetTest, dimsTheWindowByAQuarterOfInk)
{
    window_.resize(640, 480);
    const QColor paper = window_.grab().toImage().pixelColor(600, 400);
    open();
    const QColor dimmed = window_.grab().toImage().pixelColor(600, 400);
    const QColor ink = window_.theme.colour(Role::ink);
    EXPECT_NEAR(dimmed.red(), paper.red() * 0.75 + ink.red() * 0.25, 2);
    EXPECT_NEAR(dimmed.blue(), paper.blue() * 0.75 + ink.blue() * 0.25, 2);
}

TEST_F(SheetTest, inTheDarkTheWindowUnderItIsDarkerThanTheSheet)
{
    window_.theme.setAppTheme(AppTheme::dark);
    window_.setPalette(window_.theme.windowPalette());
    const QColor paper = window_.grab().toImage().pixelColor(600, 400);
    open();
    const QImage image = window_.grab().toImage();
    const QColor dimmed = image.pixelColor(600, 400);
    const QColor sheet = image.pixelColor(window_.middleOf(*first_->parentWidget()));
    EXPECT_LT(dimmed.lightness(), paper.lightness());
    EXPECT_LT(dimmed.lightness() + 8, sheet.lightness());
}

TEST_F(SheetTest, keepsOffTheEdgesOfASmallWindow)
{
    first_->setMinimumHeight(2'000);
    open();
    const QWidget& card = *first_->parentWidget();
    EXPECT_GE(card.y(), Measure::large);
    EXPECT_LE(card.geometry().bottom(), window_.height() - Measure::large);
}

TEST_F(SheetTest, givesTheFocusToItsFirstControlAndBackAtTheEnd)
{
    open();
    EXPECT_EQ(window_.focusWidget(), first_);
    sheet_->accept();
    EXPECT_EQ(window_.focusWidget(), under_);
    EXPECT_EQ(accepted_, 1);
    EXPECT_EQ(rejected_, 0);
    EXPECT_EQ(finished_, 1);
    test::ThemeWindow::rest();
    EXPECT_EQ(sheet_, nullptr);
}

TEST_F(SheetTest, givesTheFocusToWhatIsNamedForIt)
{
    sheet_->setInitialFocus(second_);
    open();
    EXPECT_EQ(window_.focusWidget(), second_);
}

TEST_F(SheetTest, withoutAControlHasTheFocusItself)
{
    first_->hide();
    second_->hide();
    open();
    EXPECT_EQ(window_.focusWidget(), sheet_);
    window_.key(Qt::Key_Escape);
    EXPECT_EQ(rejected_, 1);
}

TEST_F(SheetTest, escapeRejectsIt)
{
    open();
    window_.key(Qt::Key_Escape);
    EXPECT_EQ(rejected_, 1);
    EXPECT_EQ(accepted_, 0);
    EXPECT_EQ(finished_, 1);
    EXPECT_EQ(sheet_, nullptr);
}

TEST_F(SheetTest, keepsTabWithinItBothWays)
{
    open();
    window_.key(Qt::Key_Tab);
    EXPECT_EQ(window_.focusWidget(), second_);
    window_.key(Qt::Key_Tab);
    EXPECT_EQ(window_.focusWidget(), first_);
    window_.key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window_.focusWidget(), second_);
    second_->setEnabled(false);
    first_->setFocus();
    window_.key(Qt::Key_Tab);
    EXPECT_EQ(window_.focusWidget(), first_);
}

TEST_F(SheetTest, keepsThePointerFromWhatLiesUnderIt)
{
    open();
    window_.click(*under_);
    EXPECT_EQ(clicksUnder_, 0);
    EXPECT_TRUE(sheet_->isOpen());
    sheet_->reject();
    window_.click(*under_);
    EXPECT_EQ(clicksUnder_, 1);
}

TEST_F(SheetTest, keepsTheShortcutsOfTheWindowFromHappening)
{
    int refreshed = 0;
    auto* refresh = new QShortcut(QKeySequence(Qt::Key_F5), &window_);
    QObject::connect(refresh, &QShortcut::activated, &window_, [&] { ++refreshed; });
    open();
    window_.key(Qt::Key_F5);
    EXPECT_EQ(refreshed, 0);
    sheet_->reject();
    window_.key(Qt::Key_F5);
    EXPECT_EQ(refreshed, 1);
}

TEST_F(SheetTest, letsTheProgramBeQuit)
{
    int quits = 0;
    auto* quit = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), &window_);
    QObject::connect(quit, &QShortcut::activated, &window_, [&] { ++quits; });
    open();
    window_.key(Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 1);
}

TEST_F(SheetTest, returnPressesTheDefaultButtonWhereNothingElseTakesIt)
{
    sheet_->setDefaultButton(second_);
    sheet_->setInitialFocus(sheet_);
    int presses = 0;
    QObject::connect(second_, &QPushButton::clicked, &window_, [&] { ++presses; });
    open();
    window_.key(Qt::Key_Return);
    EXPECT_EQ(presses, 1);
}

TEST_F(SheetTest, hearsNoKeyThatWasDownBefore)
{
    QTest::keyPress(window_.windowHandle(), Qt::Key_Escape);
    open();
    window_.repeatKey(Qt::Key_Escape);
    EXPECT_TRUE(sheet_->isOpen());
    QTest::keyRelease(window_.windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(sheet_->isOpen());
    window_.key(Qt::Key_Escape);
    EXPECT_EQ(rejected_, 1);
}

TEST_F(SheetTest, isClosedOnce)
{
    open();
    sheet_->accept();
    sheet_->reject();
    sheet_->open();
    EXPECT_FALSE(sheet_->isVisible());
    EXPECT_EQ(accepted_, 1);
    EXPECT_EQ(rejected_, 0);
    EXPECT_EQ(finished_, 1);
}

TEST_F(SheetTest, takesTheSizeGivenWithinTheWindow)
{
    sheet_->setCardSize(QSize(400, 300));
    open();
    QWidget* card = first_->parentWidget();
    EXPECT_EQ(card->size(), QSize(400, 300));
    window_.resize(380, 280);
    test::ThemeWindow::rest();
    EXPECT_EQ(card->size(), QSize(380 - 2 * Measure::large, 280 - 2 * Measure::large));
}

TEST_F(SheetTest, growsWithItsContent)
{
    open();
    QWidget* card = first_->parentWidget();
    const int before = card->height();
    sheet_->column()->addWidget(new QPushButton(QStringLiteral("Third")));
    test::ThemeWindow::rest();
    EXPECT_GT(card->height(), before);
    EXPECT_NEAR(window_.middleOf(*card).y(), window_.rect().center().y(), 1);
}

TEST_F(SheetTest, isADialogWithANameForAssistiveTechnology)
{
    sheet_->setAccessibleDescription(QStringLiteral("What it asks."));
    open();
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(sheet_.data());
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::Dialog);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("A question"));
    EXPECT_EQ(accessible->text(QAccessible::Description), QStringLiteral("What it asks."));
    EXPECT_TRUE(accessible->state().modal);
    EXPECT_GT(accessible->childCount(), 0);
}

}  // namespace gruk
