#include "app/screens/refusal_note.h"

#include <QLabel>
#include <gtest/gtest.h>

#include "tests/support/theme_window.h"

namespace gruk {

namespace {

/// How much of a picture of the field is the red of an error.
int redIn(TextField& field, const Theme& theme)
{
    const QImage image = field.grab().toImage();
    int count = 0;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            count += image.pixelColor(x, y) == theme.colour(Role::red) ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

TEST(RefusalNote, saysWhyAndOutlinesTheFieldUntilSomethingElseIsWritten)
{
    test::ThemeWindow window;
    auto* field = new TextField(window.theme, {}, QStringLiteral("Folder name"), &window);
    field->resize(field->sizeHint());
    auto* note = new RefusalNote(window.theme, *field, &window);
    note->setGeometry(0, 60, 300, 40);
    window.begin();
    EXPECT_FALSE(note->isVisible());
    EXPECT_EQ(redIn(*field, window.theme), 0);

    note->refuse(QStringLiteral("A folder needs a name."));
    EXPECT_TRUE(note->isVisible());
    EXPECT_EQ(note->findChild<QLabel*>()->text(), QStringLiteral("A folder needs a name."));
    EXPECT_TRUE(field->hasFocus());
    EXPECT_GT(redIn(*field, window.theme), 100);

    field->setText(QStringLiteral("Pictures"));
    EXPECT_FALSE(note->isVisible());
    EXPECT_EQ(redIn(*field, window.theme), 0);
}

}  // namespace gruk
