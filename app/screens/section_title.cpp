#include "app/screens/section_title.h"

#include <memory>

#include <QLayout>

namespace gruk {

Label* sectionTitle(Theme& theme, const QString& text)
{
    auto* label = new Label(theme, TextStyle::sectionTitle);
    label->setText(text);
    return label;
}

Label* sectionNote(Theme& theme, const QString& text)
{
    auto* label = new Label(theme, TextStyle::detail);
    label->setColour(Role::ink, Strength::quiet);
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

void removeRows(QLayout& layout)
{
    while (const std::unique_ptr<QLayoutItem> item{layout.takeAt(0)}) {
        if (QWidget* widget = item->widget()) {
            widget->hide();
            widget->deleteLater();
        }
    }
}

}  // namespace gruk
