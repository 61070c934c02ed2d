#pragma once

#include <QFocusFrame>
#include <QPointer>

#include "app/theme/theme.h"

namespace gruk {

/// The property of a widget that is true while it shows by itself where the keyboard goes, so that
/// no ring is needed around all of it.
inline constexpr char showsFocusItself[] = "showsFocusItself";

/// The property of a widget that is true where it lies over a page: the ring around what it covers
/// lies under it, too.
inline constexpr char liesOverPage[] = "liesOverPage";

/// The ring around whatever has the focus in one window, shown when the keyboard brought the focus
/// there and not when the pointer did. What the program gives the focus to goes by what the user
/// touched last.
class FocusRing : public QObject {
    Q_OBJECT

public:
    /// For that window, to which it belongs.
    FocusRing(Theme& theme, QWidget& window);

    /// What the ring is around; null for none.
    [[nodiscard]] QWidget* widget() const { return frame_ ? frame_->widget() : nullptr; }
    /// The ring itself, which lies in the page that scrolls what it is around, and may end with it;
    /// null until there is one.
    [[nodiscard]] const QWidget* frame() const { return frame_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void surround(QWidget* widget);

    Theme& theme_;
    QWidget& window_;
    QPointer<QFocusFrame> frame_;
    bool keyboardWasLast_ = false;
};

}  // namespace gruk
