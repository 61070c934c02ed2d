#include "app/desktop/activation.h"

#include <QCoreApplication>
#include <QWidget>
#include <gtest/gtest.h>

#include "tests/support/environment.h"

namespace gruk {

using test::EnvironmentVariable;

TEST(Activation, tokensAreThoseThatTheProcessWasStartedWith)
{
    const EnvironmentVariable token("XDG_ACTIVATION_TOKEN", "token-1");
    const EnvironmentVariable startup("DESKTOP_STARTUP_ID", std::nullopt);
    EXPECT_EQ(ActivationTokens::fromEnvironment(),
              (ActivationTokens{QStringLiteral("token-1"), QString()}));
}

TEST(Activation, aHiddenWindowAndAMinimisedOneAreShown)
{
    QWidget window;
    bringForward(window, {});
    EXPECT_TRUE(window.isVisible());
    window.showMinimized();
    ASSERT_TRUE(window.isMinimized());
    bringForward(window, {});
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.isMinimized());
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isActiveWindow());
}

TEST(Activation, aMaximisedWindowStaysSo)
{
    QWidget window;
    window.showMaximized();
    window.setWindowState(window.windowState() | Qt::WindowMinimized);
    bringForward(window, {});
    EXPECT_TRUE(window.isMaximized());
    EXPECT_FALSE(window.isMinimized());
}

TEST(Activation, theTokenIsWhereTheToolkitLooksForIt)
{
    const EnvironmentVariable token("XDG_ACTIVATION_TOKEN", std::nullopt);
    QWidget window;
    bringForward(window, {});
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    bringForward(window, {QStringLiteral("token-2"), QString()});
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token-2");
}

}  // namespace gruk
