#include "app/theme/segmented_control.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include "app/theme/button.h"

namespace gruk {

namespace {

QImage pictureOf(QWidget& widget)
{
    QImage picture(widget.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    widget.render(&picture);
    return picture;
}

struct Shown {
    Shown()
        : control(theme, {QStringLiteral("One"), QStringLiteral("Two")}, QStringLiteral("Which"))
    {
        control.show();
        QApplication::processEvents();
    }

    [[nodiscard]] QAbstractButton* segment(const char* text) const
    {
        for (QAbstractButton* each : control.findChildren<QAbstractButton*>()) {
            if (each->text() == QString::fromLatin1(text)) {
                return each;
            }
        }
        return nullptr;
    }

    Theme theme;
    SegmentedControl control;
};

}  // namespace

TEST(SegmentedControl, itsCardSlidesToTheChoice)
{
    Shown shown;
    shown.theme.setReducedMotion(false);
    const QImage before = pictureOf(shown.control);
    shown.segment("Two")->click();
    auto* slide = &shown.control.slide();
    ASSERT_EQ(slide->state(), QAbstractAnimation::Running);
    EXPECT_EQ(slide->duration(), 160);
    slide->setCurrentTime(80);
    const double halfway = slide->currentValue().toRectF().left();
    EXPECT_GT(halfway, slide->startValue().toRectF().left());
    EXPECT_LT(halfway, slide->endValue().toRectF().left());
    slide->setCurrentTime(160);
    EXPECT_NE(pictureOf(shown.control), before);
    EXPECT_EQ(shown.control.current(), 1);
}

TEST(SegmentedControl, underReducedMotionTheCardIsThereAtOnce)
{
    Shown shown;
    shown.theme.setReducedMotion(true);
    shown.segment("Two")->click();
    EXPECT_EQ(shown.control.slide().state(), QAbstractAnimation::Stopped);
    const QImage after = pictureOf(shown.control);
    shown.segment("One")->click();
    EXPECT_NE(pictureOf(shown.control), after);
    shown.segment("Two")->click();
    EXPECT_EQ(pictureOf(shown.control), after);
}

TEST(SegmentedControl, arrowKeysChooseAndAreHeardOnce)
{
    Shown shown;
    QSignalSpy chosen(&shown.control, &SegmentedControl::currentChanged);
    QApplication::setActiveWindow(&shown.control);
    shown.segment("One")->setFocus();
    QTest::keyClick(shown.segment("One"), Qt::Key_Right);
    EXPECT_EQ(shown.control.current(), 1);
    EXPECT_EQ(chosen.count(), 1);
}

TEST(DisclosureButton, itsChevronTurnsDownAndBack)
{
    Theme theme;
    theme.setReducedMotion(true);
    DisclosureButton button(theme, QStringLiteral("More"), QStringLiteral("More"));
    button.show();
    QApplication::processEvents();
    const QImage closed = pictureOf(button);
    button.click();
    EXPECT_TRUE(button.isOpen());
    EXPECT_NE(pictureOf(button), closed);
    button.click();
    EXPECT_EQ(pictureOf(button), closed);
}

}  // namespace gruk
