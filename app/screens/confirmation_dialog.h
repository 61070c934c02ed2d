#pragma once

#include <QDialog>

#include "app/theme/theme.h"

namespace gruk {

/// What a confirmation asks.
struct Confirmation {
    QString title;
    QString message;
    /// The button that does it.
    QString action;
    /// The button that does not, which is the default and what Escape presses.
    QString refusal;
};

/// Asks before something that cannot be taken back at once. Shown with `open`, it blocks its window
/// only, and deletes itself; `accepted` means yes.
class ConfirmationDialog : public QDialog {
    Q_OBJECT

public:
    ConfirmationDialog(Theme& theme, const Confirmation& confirmation, QWidget* parent);
};

}  // namespace gruk
