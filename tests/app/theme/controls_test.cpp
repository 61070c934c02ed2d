#include <algorithm>

#include <QAccessible>
#include <QAction>
#include <QImage>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "app/theme/button.h"
#include "app/theme/label.h"
#include "app/theme/picker.h"
#include "app/theme/text_field.h"
#include "app/theme/toggle.h"
#include "tests/support/theme_window.h"

namespace gruk {

namespace {

void turnWheel(QWidget& widget)
{
    QWheelEvent wheel(QPointF(4, 4), widget.mapToGlobal(QPointF(4, 4)), {}, QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
}

}  // namespace

TEST(Toggle, turnsBySpaceByReturnAndByAClickOnItsText)
{
    test::ThemeWindow window;
    auto* toggle = new Toggle(window.theme, QStringLiteral("Also file"), &window);
    toggle->resize(toggle->sizeHint());
    window.begin();
    toggle->setFocus();
    window.key(Qt::Key_Space);
    EXPECT_TRUE(toggle->isChecked());
    window.key(Qt::Key_Return);
    EXPECT_FALSE(toggle->isChecked());
    window.repeatKey(Qt::Key_Return);
    EXPECT_FALSE(toggle->isChecked());
    window.click(QPoint(toggle->width() - 4, toggle->height() / 2));
    EXPECT_TRUE(toggle->isChecked());
}

TEST(Toggle, isACheckBoxForAssistiveTechnology)
{
    Theme theme;
    Toggle toggle(theme, QStringLiteral("Also file"));
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&toggle);
    EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Also file"));
    EXPECT_FALSE(accessible->state().checked);
    toggle.setChecked(true);
    EXPECT_TRUE(accessible->state().checked);
}

TEST(Toggle, withReducedMotionIsWhereItGoesAtOnce)
{
    test::ThemeWindow window;
    window.theme.setReducedMotion(true);
    auto* toggle = new Toggle(window.theme, QString(), &window);
    toggle->resize(toggle->sizeHint());
    window.begin();
    const QImage off = toggle->grab().toImage();
    toggle->setChecked(true);
    const QImage on = toggle->grab().toImage();
    EXPECT_NE(off, on);
    test::ThemeWindow::rest();
    EXPECT_EQ(toggle->grab().toImage(), on);
}

TEST(Picker, offersItsLabelsAndIsNamed)
{
    Theme theme;
    const Picker picker(theme, {QStringLiteral("Off"), QStringLiteral("Daily")},
                        QStringLiteral("Cadence"));
    EXPECT_EQ(picker.currentText(), QStringLiteral("Off"));
    EXPECT_EQ(picker.count(), 2);
    EXPECT_EQ(picker.accessibleName(), QStringLiteral("Cadence"));
    EXPECT_GE(picker.sizeHint().width(),
              picker.fontMetrics().horizontalAdvance(QStringLiteral("Daily")));
}

TEST(Picker, theWheelTurnsItOnlyWithTheFocus)
{
    test::ThemeWindow window;
    auto* picker = new Picker(window.theme, {QStringLiteral("Off"), QStringLiteral("Daily")},
                              QStringLiteral("Cadence"), &window);
    auto* other = new TextField(window.theme, QString(), QStringLiteral("Name"), &window);
    window.begin();
    other->setFocus();
    turnWheel(*picker);
    EXPECT_EQ(picker->currentIndex(), 0);
    picker->setFocus();
    turnWheel(*picker);
    EXPECT_EQ(picker->currentIndex(), 1);
}

TEST(TextField, showsWhatIsMissingAndIsNamed)
{
    Theme theme;
    const TextField field(theme, QStringLiteral("Folder name"), QStringLiteral("Folder name"));
    EXPECT_EQ(field.placeholderText(), QStringLiteral("Folder name"));
    EXPECT_EQ(field.accessibleName(), QStringLiteral("Folder name"));
    EXPECT_FALSE(field.hasFrame());
}

TEST(TextField, changesItsColoursWithTheTheme)
{
    Theme theme;
    const TextField field(theme, {}, QStringLiteral("Name"));
    theme.setPaletteTheme(AppPaletteTheme::ember);
    EXPECT_EQ(field.palette().color(QPalette::Text), theme.colour(Role::ink));
}

TEST(TextField, offersToClearWhatWasWrittenInInkThatFollowsTheTheme)
{
    test::ThemeWindow window;
    auto* field =
        new TextField(window.theme, QStringLiteral("Filter"), QStringLiteral("Filter"), &window);
    field->setClearable();
    field->resize(field->sizeHint());
    window.begin();
    QAction* clear = field->actions().constFirst();
    EXPECT_FALSE(clear->isVisible());
    field->setText(QStringLiteral("fern"));
    EXPECT_TRUE(clear->isVisible());
    const auto lightest = [clear] {
        const QImage image = clear->icon().pixmap(Measure::smallIconSize).toImage();
        int most = 0;
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, x);
            most = std::max(most, colour.alpha() > 100 ? colour.lightness() : 0);
        }
        return most;
    };
    window.theme.setAppTheme(AppTheme::light);
    EXPECT_LT(lightest(), 100);
    window.theme.setAppTheme(AppTheme::dark);
    EXPECT_GT(lightest(), 100);
    clear->trigger();
    EXPECT_EQ(field->text(), QString());
    EXPECT_FALSE(clear->isVisible());
}

TEST(DisclosureButton, isAsWideOpenAsClosed)
{
    Theme theme;
    DisclosureButton disclosure(theme, QStringLiteral("Why the Gruk flagged this"),
                                QStringLiteral("Hide why"));
    const QSize closed = disclosure.sizeHint();
    disclosure.setOpen(true);
    EXPECT_EQ(disclosure.sizeHint(), closed);
    EXPECT_GT(closed.width(), disclosure.fontMetrics().horizontalAdvance(
                                  QStringLiteral("Why the Gruk flagged it")));
}

TEST(Label, thatWrapsIsMadeNoWiderByANameWithoutABlank)
{
    Theme theme;
    const Label* plain = paragraph(theme, TextStyle::body, QStringLiteral("Moved it to Trash."));
    const Label* named = paragraph(theme, TextStyle::body, QString(200, QLatin1Char('m')));
    constexpr int narrow = 200;
    EXPECT_LT(named->minimumSizeHint().width(), narrow);
    EXPECT_GT(named->heightForWidth(narrow), 10 * plain->heightForWidth(narrow));
    EXPECT_EQ(plain->heightForWidth(narrow), plain->fontMetrics().height());
    delete plain;
    delete named;
}

}  // namespace gruk
