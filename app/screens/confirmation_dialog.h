#pragma once

#include "app/theme/button.h"
#include "app/theme/sheet.h"

class QScrollBar;

namespace gruk {

/// What a confirmation asks.
struct Confirmation {
    QString title;
    QString message;
    /// The button that does it.
    QString action;
    /// The button that does not: the default one, which has the focus and is what Escape answers.
    QString refusal;
    /// Never the kind of the default one.
    Button::Kind actionKind = Button::Kind::destructive;
};

/// Asks before something that cannot be taken back at once. Shown with `open`, it blocks its window
/// only, and deletes itself; `accepted` means yes, and takes a press or a click that began while
/// the question stood.
class ConfirmationDialog : public Sheet {
    Q_OBJECT

public:
    /// Over the window of `anyWidget`.
    ConfirmationDialog(Theme& theme, const Confirmation& confirmation, QWidget* anyWidget);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    /// Of the words, which scroll where the window is too small for all of them.
    QScrollBar* scrollBar_ = nullptr;
};

}  // namespace gruk
