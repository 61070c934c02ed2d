#pragma once

#include <vector>

#include <QAccessible>
#include <QStringList>

class QWidget;

namespace gruk::test {

/// One thing on a screen as assistive technology is told of it. A plain value.
struct AccessibleThing {
    QAccessible::Role role = QAccessible::NoRole;
    QString name;
    QString description;
    QAccessible::State state;
    /// The class of the widget behind it; empty for what is only painted.
    QString widgetClass;
    /// Whether it lies in an item of a list.
    bool isInRow = false;
};

/// `window` and everything in it that is not hidden, in the order in which it is read.
[[nodiscard]] std::vector<AccessibleThing> accessibleThings(QWidget& window);

/// The first thing of that name (and role) in `window`; a test fails where there is none.
[[nodiscard]] AccessibleThing thingNamed(QWidget& window, const QString& name);
[[nodiscard]] AccessibleThing thingNamed(QWidget& window, const QString& name,
                                         QAccessible::Role role);

/// Every control in the window that is not hidden and has no name for assistive technology or a
/// blank one, everything that can have the focus and is not found from the window downwards,
/// everything with a name that nobody reads out, since it has no role, and every description with
/// markup in it.
[[nodiscard]] QStringList namelessControls(QWidget& window);

/// Every enabled control that sounds like another one: like the one read before it or, in the items
/// of lists, like any other there by name and description together.
[[nodiscard]] QStringList controlsThatSoundAlike(QWidget& window);

}  // namespace gruk::test
