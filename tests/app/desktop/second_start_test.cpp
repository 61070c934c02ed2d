#include <csignal>

#include <QLocalSocket>
#include <QProcess>
#include <gtest/gtest.h>

#include "app/desktop/single_instance.h"
#include "tests/support/private_session.h"

// The program itself, started more than once.

namespace gruk {

namespace {

using test::PrivateSession;

constexpr int patience = 60'000;

void start(QProcess& program)
{
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(GRUK_PROGRAM), QStringList());
    ASSERT_TRUE(program.waitForStarted(patience));
}

/// Whether a process of the session listens; to ask by trying to be the first would make it so.
bool isListening(const PrivateSession& session)
{
    QLocalSocket socket;
    socket.connectToServer(
        QString::fromStdString(session.directory().path("runtime/io.github.gruk.Gruk.socket")));
    return socket.waitForConnected(patience);
}

/// Starts the program and waits until it answers further starts.
void startFirst(QProcess& program, const PrivateSession& session)
{
    start(program);
    while (!isListening(session)) {
        ASSERT_FALSE(program.waitForFinished(10)) << "it has ended";
    }
    SingleInstance other(QStringLiteral("io.github.gruk.Gruk"));
    ASSERT_FALSE(other.isFirst());
    while (!other.activateOther({})) {
        ASSERT_FALSE(program.waitForFinished(10)) << "it has ended";
    }
}

bool endsWell(QProcess& program)
{
    return program.waitForFinished(patience) && program.exitStatus() == QProcess::NormalExit
           && program.exitCode() == 0;
}

class SecondStart : public test::InEachSession {};

INSTANTIATE_TEST_SUITE_P(Session, SecondStart, testing::Bool(), test::InEachSession::name);

}  // namespace

TEST_P(SecondStart, endsWellAndTheFirstGoesOnUntilItIsToldToEnd)
{
    QProcess first;
    startFirst(first, session);
    QProcess second;
    start(second);
    EXPECT_TRUE(endsWell(second));
    EXPECT_EQ(first.state(), QProcess::Running);
    first.terminate();
    EXPECT_TRUE(endsWell(first));
}

TEST_P(SecondStart, ofTheSessionsOwnEndsWellAndTheFirstGoesOn)
{
    QProcess first;
    startFirst(first, session);
    QProcess second;
    second.start(QStringLiteral(GRUK_PROGRAM), {QStringLiteral("--background")});
    EXPECT_TRUE(endsWell(second));
    EXPECT_EQ(first.state(), QProcess::Running);
    first.terminate();
    EXPECT_TRUE(endsWell(first));
}

TEST_P(SecondStart, isTheFirstWhenTheFormerOneWasKilled)
{
    QProcess first;
    startFirst(first, session);
    first.kill();
    first.waitForFinished(patience);
    QProcess second;
    startFirst(second, session);
    QProcess third;
    start(third);
    EXPECT_TRUE(endsWell(third));
    second.terminate();
    EXPECT_TRUE(endsWell(second));
}

TEST_P(SecondStart, saysSoAndFailsWhenTheFirstDoesNotAnswer)
{
    QProcess first;
    startFirst(first, session);
    ::kill(static_cast<pid_t>(first.processId()), SIGSTOP);
    QProcess second;
    second.start(QStringLiteral(GRUK_PROGRAM), QStringList());
    EXPECT_TRUE(second.waitForFinished(patience));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_EQ(second.readAllStandardError(), "Gruk is running already, but does not answer.\n");
    ::kill(static_cast<pid_t>(first.processId()), SIGCONT);
    first.terminate();
    EXPECT_TRUE(endsWell(first));
}

}  // namespace gruk
