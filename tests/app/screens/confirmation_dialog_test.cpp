#include "app/screens/confirmation_dialog.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

#include "app/theme/label.h"
#include "tests/support/theme_window.h"

namespace gruk {

namespace {

/// A window that asks when its button is clicked.
class ConfirmationDialogTest : public testing::Test {
protected:
    ConfirmationDialogTest()
    {
        QObject::connect(opener_, &QPushButton::clicked, &window_, [this] { ask(); });
        window_.begin();
        opener_->setFocus();
    }

    void ask(const QString& title = QStringLiteral("Move it?"),
             const QString& message = QStringLiteral("It goes to the system Trash."))
    {
        dialog_ = new ConfirmationDialog(
            window_.theme,
            {title, message, QStringLiteral("Move to Trash"), QStringLiteral("Cancel")}, opener_);
        QObject::connect(dialog_, &Sheet::accepted, &window_, [this] { ++accepted_; });
        QObject::connect(dialog_, &Sheet::rejected, &window_, [this] { ++rejected_; });
        dialog_->open();
    }

    void begin()
    {
        ask();
        test::ThemeWindow::rest();
    }

    [[nodiscard]] Button* button(const char* text) const
    {
        for (Button* each : dialog_->findChildren<Button*>()) {
            if (each->text() == QLatin1String(text)) {
                return each;
            }
        }
        return nullptr;
    }

    test::ThemeWindow window_;
    Button* opener_ =
        new Button(window_.theme, Button::Kind::secondary, QStringLiteral("Ask"), &window_);
    QPointer<ConfirmationDialog> dialog_;
    int accepted_ = 0;
    int rejected_ = 0;
};

}  // namespace

TEST_F(ConfirmationDialogTest, theSafeButtonIsTheDefaultAndHasTheFocus)
{
    begin();
    EXPECT_TRUE(button("Cancel")->isDefault());
    EXPECT_TRUE(button("Cancel")->hasFocus());
    EXPECT_FALSE(button("Move to Trash")->isDefault());
    EXPECT_EQ(dialog_->accessibleName(), QStringLiteral("Move it?"));
    EXPECT_EQ(dialog_->accessibleDescription(), QStringLiteral("It goes to the system Trash."));
}

TEST_F(ConfirmationDialogTest, escapeAndReturnAreTheSafeAnswer)
{
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
        begin();
        window_.key(key);
        EXPECT_EQ(dialog_, nullptr);
    }
    EXPECT_EQ(rejected_, 4);
    EXPECT_EQ(accepted_, 0);
}

TEST_F(ConfirmationDialogTest, isConfirmedByAPressOrAClickOfItsOwn)
{
    begin();
    window_.key(Qt::Key_Tab);
    EXPECT_TRUE(button("Move to Trash")->hasFocus());
    window_.key(Qt::Key_Return);
    EXPECT_EQ(accepted_, 1);

    begin();
    window_.key(Qt::Key_Tab);
    window_.key(Qt::Key_Space);
    EXPECT_EQ(accepted_, 2);

    begin();
    window_.click(*button("Move to Trash"));
    EXPECT_EQ(accepted_, 3);
    EXPECT_EQ(rejected_, 0);
}

TEST_F(ConfirmationDialogTest, isNotConfirmedByAKeyThatIsHeldDown)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        QTest::keyPress(window_.windowHandle(), key);
        if (dialog_ == nullptr) {
            begin();
        }
        button("Move to Trash")->setFocus();
        window_.repeatKey(key);
        window_.repeatKey(key);
        QTest::keyRelease(window_.windowHandle(), key);
        test::ThemeWindow::rest();
        ASSERT_NE(dialog_, nullptr);
        EXPECT_TRUE(dialog_->isOpen());
        dialog_->reject();
        test::ThemeWindow::rest();
    }
    EXPECT_EQ(accepted_, 0);
}

TEST_F(ConfirmationDialogTest, aKeyThatIsHeldDownDoesNotAnswerForTheUserEither)
{
    QTest::keyPress(window_.windowHandle(), Qt::Key_Return);
    test::ThemeWindow::rest();
    ASSERT_NE(dialog_, nullptr);
    window_.repeatKey(Qt::Key_Return);
    QTest::keyRelease(window_.windowHandle(), Qt::Key_Return);
    test::ThemeWindow::rest();
    ASSERT_NE(dialog_, nullptr);
    EXPECT_EQ(rejected_, 0);
}

TEST_F(ConfirmationDialogTest, isNotConfirmedByTheReleaseOfAPressThatBeganBefore)
{
    QTest::mousePress(window_.windowHandle(), Qt::LeftButton, {}, window_.middleOf(*opener_));
    begin();
    QTest::mouseRelease(window_.windowHandle(), Qt::LeftButton, {},
                        window_.middleOf(*button("Move to Trash")));
    test::ThemeWindow::rest();
    EXPECT_TRUE(dialog_->isOpen());
    EXPECT_EQ(accepted_, 0);
}

TEST_F(ConfirmationDialogTest, isNotConfirmedByTheSecondClickOfTheDoubleClickThatOpenedIt)
{
    begin();
    const QPoint place = window_.middleOf(*button("Move to Trash"));
    dialog_->reject();
    test::ThemeWindow::rest();
    opener_->resize(opener_->sizeHint());
    opener_->move(place - opener_->rect().center());

    window_.doubleClick(place);
    ASSERT_NE(dialog_, nullptr);
    ASSERT_EQ(window_.middleOf(*button("Move to Trash")), place);
    EXPECT_TRUE(dialog_->isOpen());
    EXPECT_EQ(accepted_, 0);

    window_.click(place);
    EXPECT_EQ(accepted_, 1);
}

TEST_F(ConfirmationDialogTest, isNotConfirmedByAThirdClickRightAfterTheSecond)
{
    begin();
    const QWidget& action = *button("Move to Trash");
    const auto click = [&](QEvent::Type type, quint64 time) {
        QMouseEvent press(type, action.rect().center(), action.mapToGlobal(action.rect().center()),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        press.setTimestamp(time);
        QApplication::sendEvent(button("Move to Trash"), &press);
        QMouseEvent release(QEvent::MouseButtonRelease, action.rect().center(),
                            action.mapToGlobal(action.rect().center()), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(button("Move to Trash"), &release);
    };
    click(QEvent::MouseButtonDblClick, 5'000);
    click(QEvent::MouseButtonPress, 5'100);
    EXPECT_TRUE(dialog_->isOpen());
    click(QEvent::MouseButtonPress, 5'200 + 2 * quint64(QApplication::doubleClickInterval()));
    EXPECT_EQ(accepted_, 1);
}

TEST_F(ConfirmationDialogTest, showsANameAndAPathWithoutABlankWholeAndItsButtonsToo)
{
    const QString name(200, QLatin1Char('m'));
    const QString path = QLatin1Char('/') + QString(800, QLatin1Char('w'));
    for (const int length : {86, 200}) {
        ask(QStringLiteral("Move %1 to Trash?").arg(name.left(length)),
            QStringLiteral("File · 4 KB\n%1\n\nGruk will use it.").arg(path));
        test::ThemeWindow::rest();
        const QRect room = window_.rect();
        for (const char* text : {"Cancel", "Move to Trash"}) {
            const QRect place(button(text)->mapTo(&window_, QPoint()), button(text)->size());
            EXPECT_TRUE(room.contains(place)) << text << ", " << length;
            EXPECT_GE(place.width(), button(text)->sizeHint().width());
        }
        for (const Label* label : dialog_->findChildren<Label*>()) {
            EXPECT_TRUE(label->text().contains(name.left(length)) || label->text().contains(path));
            EXPECT_LE(label->width(), room.width());
            EXPECT_GE(label->height(), label->heightForWidth(label->width())) << "cut off";
        }
        dialog_->reject();
        test::ThemeWindow::rest();
    }
}

TEST_F(ConfirmationDialogTest, wordsThatTheWindowHasNoRoomForScrollByKeysAboveTheButtons)
{
    ask(QStringLiteral("Move it?"), QString(4'000, QLatin1Char('w')));
    test::ThemeWindow::rest();
    const auto* area = dialog_->findChild<QScrollArea*>();
    ASSERT_GT(area->verticalScrollBar()->maximum(), 0);
    EXPECT_LE(area->widget()->width(), area->viewport()->width());
    EXPECT_GT(area->height(), window_.height() / 2);
    const QRect place(button("Cancel")->mapTo(&window_, QPoint()), button("Cancel")->size());
    EXPECT_TRUE(window_.rect().contains(place));
    EXPECT_EQ(area->verticalScrollBar()->value(), 0);
    window_.key(Qt::Key_End);
    EXPECT_EQ(area->verticalScrollBar()->value(), area->verticalScrollBar()->maximum());
    window_.key(Qt::Key_Home);
    window_.key(Qt::Key_PageDown);
    EXPECT_GT(area->verticalScrollBar()->value(), 0);
    EXPECT_TRUE(dialog_->isOpen());
}

}  // namespace gruk
