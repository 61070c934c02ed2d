#pragma once

#include <QString>

class QWidget;

namespace gruk {

/// What a desktop gives to a program that the user starts, so that its window may come to the
/// front. Texts of the desktop's own, each empty where it gave none. A plain value.
struct ActivationTokens {
    /// For windows on Wayland.
    QString activationToken;
    /// For windows on X11.
    QString startupID;

    /// Those that this process was started with. Ask before the application object is made: it
    /// uses them up.
    [[nodiscard]] static ActivationTokens fromEnvironment();

    friend bool operator==(const ActivationTokens&, const ActivationTokens&) = default;
};

/// A text that someone on the bus calls a token: itself, or empty where it can be none, being
/// longer than any desktop makes them or holding a NUL.
[[nodiscard]] QString soundToken(const QString& text);

/// Shows the window, also when it is minimised, and asks the desktop to put it to the front. It is
/// the desktop's to refuse, most likely without a token. Main thread only.
void bringForward(QWidget& window, const ActivationTokens& tokens);

}  // namespace gruk
