#include "app/desktop/activation.h"

#include <QWidget>

namespace gruk {

namespace {

constexpr const char* activationVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char* startupVariable = "DESKTOP_STARTUP_ID";

}  // namespace

ActivationTokens ActivationTokens::fromEnvironment()
{
    return {qEnvironmentVariable(activationVariable), qEnvironmentVariable(startupVariable)};
}

QString soundToken(const QString& text)
{
    constexpr int longestToken = 4'096;
    return text.size() <= longestToken && !text.contains(QChar(0)) ? text : QString();
}

void bringForward(QWidget& window, const ActivationTokens& tokens)
{
    if (!tokens.activationToken.isEmpty()) {
        // There the toolkit looks for it when a window asks to be activated.
        qputenv(activationVariable, tokens.activationToken.toUtf8());
    }
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
}

}  // namespace gruk
