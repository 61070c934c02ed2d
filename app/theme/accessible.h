#pragma once

#include <QAccessible>

class QWidget;

namespace gruk {

/// Says what `widget` is to assistive technology, where the toolkit takes it for a mere container
/// or a piece of text. Its name is its accessible name; without one the text of a label, and the
/// title of a window. Call it while the widget is made, before it gets
/// a name.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// A tooltip, which is also the accessible description, as plain text.
void giveToolTip(QWidget& widget, const QString& text);

/// Has assistive technology read a widget of the role `Notification` that says something new while
/// it can be seen. One that comes into view is read without that.
void announce(QWidget& notification);

}  // namespace gruk
