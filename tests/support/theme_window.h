#pragma once

#include <QApplication>
#include <QEvent>
#include <QTest>
#include <QWidget>
#include <QWindow>

#include "app/theme/theme.h"

namespace gruk::test {

/// A window with a theme, shown without a display, that takes keys and clicks as a user gives them.
class ThemeWindow : public QWidget {
public:
    ThemeWindow()
    {
        resize(640, 480);
        setPalette(theme.windowPalette());
    }

    /// Shows it with what was put into it.
    void begin()
    {
        show();
        QApplication::setActiveWindow(this);
        rest();
    }

    /// Lets it lay out, and delete what has ended.
    static void rest()
    {
        constexpr int turns = 3;
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(windowHandle(), key, modifiers);
        rest();
    }
    /// What a key that stays down sends, to whatever has the focus.
    void repeatKey(Qt::Key key)
    {
        QWidget* receiver = focusWidget() != nullptr ? focusWidget() : this;
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
        QApplication::sendEvent(receiver, &down);
        rest();
    }
    void click(const QPoint& at)
    {
        QTest::mouseClick(windowHandle(), Qt::LeftButton, {}, at);
        rest();
    }
    void click(const QWidget& widget) { click(middleOf(widget)); }
    void doubleClick(const QPoint& at)
    {
        QTest::mouseDClick(windowHandle(), Qt::LeftButton, {}, at);
        rest();
    }

    [[nodiscard]] QPoint middleOf(const QWidget& widget) const
    {
        return widget.mapTo(this, widget.rect().center());
    }

    Theme theme;
};

}  // namespace gruk::test
