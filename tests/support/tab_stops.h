#pragma once

#include <QAbstractButton>
#include <QStringList>
#include <QWidget>

namespace gruk::test {

/// What Tab reaches in `area`, in that order, by the names that assistive technology hears.
[[nodiscard]] inline QStringList tabStopsIn(const QWidget& area)
{
    QStringList names;
    for (const QWidget* next = area.nextInFocusChain(); next != &area;
         next = next->nextInFocusChain()) {
        const bool takesTab = (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (area.isAncestorOf(next) && takesTab && next->isVisible() && next->isEnabled()) {
            const auto* button = qobject_cast<const QAbstractButton*>(next);
            const bool isTitled = button != nullptr && next->accessibleName().isEmpty();
            names.append(isTitled ? button->text() : next->accessibleName());
        }
    }
    return names;
}

}  // namespace gruk::test
