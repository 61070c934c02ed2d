#pragma once

#include <initializer_list>

#include <QAbstractButton>
#include <QLabel>
#include <QString>
#include <QStringList>

namespace gruk::test {

/// What a test expects to be read.
[[nodiscard]] inline QStringList words(std::initializer_list<const char*> texts)
{
    QStringList words;
    for (const char* text : texts) {
        words.append(QString::fromUtf8(text));
    }
    return words;
}

/// The texts of every label and button in `widget` that can be seen, whole, in no order.
[[nodiscard]] inline QStringList wordsIn(const QWidget& widget)
{
    QStringList words;
    for (const QLabel* label : widget.findChildren<QLabel*>()) {
        if (label->isVisible()) {
            words.append(label->text());
        }
    }
    for (const QAbstractButton* button : widget.findChildren<QAbstractButton*>()) {
        if (button->isVisible()) {
            words.append(button->text());
        }
    }
    return words;
}

/// The button in `widget` that can be seen with that text or, without a text, that name; null
/// without one.
[[nodiscard]] inline QAbstractButton* buttonIn(const QWidget& widget, const QString& text)
{
    for (QAbstractButton* button : widget.findChildren<QAbstractButton*>()) {
        const QString shown = button->text().isEmpty() ? button->accessibleName() : button->text();
        if (button->isVisible() && shown == text) {
            return button;
        }
    }
    return nullptr;
}

}  // namespace gruk::test
