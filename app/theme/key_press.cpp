#include "app/theme/key_press.h"

#include <QAbstractButton>
#include <QKeyEvent>

namespace gruk {

namespace {

KeyPress pressOf(const QKeyEvent& event, bool isPressKey)
{
    if (!isPressKey) {
        return KeyPress::other;
    }
    return event.isAutoRepeat() ? KeyPress::held : KeyPress::press;
}

bool isReturn(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

KeyPress returnPress(const QKeyEvent& event)
{
    return pressOf(event, isReturn(event));
}

KeyPress returnOrSpacePress(const QKeyEvent& event)
{
    return pressOf(event, isReturn(event) || event.key() == Qt::Key_Space);
}

bool clickedByReturn(QAbstractButton& button, const QKeyEvent& event)
{
    const KeyPress press = returnPress(event);
    if (press == KeyPress::press) {
        button.click();
    }
    return press != KeyPress::other;
}

}  // namespace gruk
