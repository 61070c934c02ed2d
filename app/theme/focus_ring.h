#pragma once

#include <QFocusFrame>

#include "app/theme/theme.h"

namespace gruk {

/// The property of a widget that is true while it shows by itself where the keyboard goes, so that
/// no ring is needed around all of it.
inline constexpr char showsFocusItself[] = "showsFocusItself";

/// The ring around whatever has the focus in one window, shown when the keyboard brought the focus
/// there and not when the pointer did. What the program gives the focus to goes by what the user
/// touched last.
class FocusRing : public QFocusFrame {
    Q_OBJECT

public:
    FocusRing(Theme& theme, QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Theme& theme_;
    QWidget& window_;
    bool keyboardWasLast_ = false;
};

}  // namespace gruk
