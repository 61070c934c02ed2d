#pragma once

class QAbstractButton;
class QKeyEvent;

namespace gruk {

/// What a key press means to what has the focus and can be pressed.
enum class KeyPress {
    /// It is pressed.
    press,
    /// The key that pressed it is still down, which presses nothing a second time: what comes under
    /// the focus meanwhile was not meant.
    held,
    /// Another key.
    other,
};

/// Return and Enter press a control.
[[nodiscard]] KeyPress returnPress(const QKeyEvent& event);
/// So does Space, where it need not wait for its release.
[[nodiscard]] KeyPress returnOrSpacePress(const QKeyEvent& event);

/// Clicks `button` when Return or Enter presses it. False for every other key, which the caller
/// hands to its base class: there Space clicks when it is released.
[[nodiscard]] bool clickedByReturn(QAbstractButton& button, const QKeyEvent& event);

}  // namespace gruk
