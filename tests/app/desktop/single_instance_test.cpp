#include "app/desktop/single_instance.h"

#include <csignal>
#include <iterator>
#include <memory>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QLocalServer>
#include <QLocalSocket>
#include <gtest/gtest.h>

#include "tests/support/private_session.h"

namespace gruk {

namespace {

using test::EnvironmentVariable;
using test::PrivateSession;

const QString applicationID = QStringLiteral("io.github.gruk.Gruk");
const ActivationTokens someTokens{QStringLiteral("token \"ä\""), QStringLiteral("startup/1")};

/// No call may hold the program up for longer; a busy machine gets as much again.
constexpr int longestCall = 4'000;

/// Lets a second start ask the first one, in a thread, while the first one's loop runs. What the
/// first one was told; nothing when the second was given no answer.
std::vector<ActivationTokens> activations(SingleInstance& first, const ActivationTokens& tokens)
{
    std::vector<ActivationTokens> heard;
    const QMetaObject::Connection connection =
        QObject::connect(&first, &SingleInstance::activated, &first,
                         [&](const ActivationTokens& one) { heard.push_back(one); });
    QEventLoop events;
    bool isAnswered = false;
    std::jthread second([&] {
        SingleInstance other(applicationID);
        isAnswered = !other.isFirst() && other.activateOther(tokens);
        QMetaObject::invokeMethod(
            &events, [&] { events.quit(); }, Qt::QueuedConnection);
    });
    events.exec();
    second.join();
    QObject::disconnect(connection);
    return isAnswered ? heard : std::vector<ActivationTokens>();
}

class SingleInstanceTest : public test::InEachSession {};

INSTANTIATE_TEST_SUITE_P(Session, SingleInstanceTest, testing::Bool(), test::InEachSession::name);

}  // namespace

TEST_P(SingleInstanceTest, theFirstIsTheFirstAndHearsOfEachFurtherStart)
{
    SingleInstance first(applicationID);
    ASSERT_TRUE(first.isFirst());
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
    EXPECT_EQ(activations(first, {}), std::vector<ActivationTokens>{{}});
}

TEST_P(SingleInstanceTest, afterTheFirstHasEndedTheNextIsTheFirst)
{
    for (int i = 0; i < 3; ++i) {
        const SingleInstance one(applicationID);
        EXPECT_TRUE(one.isFirst());
        const SingleInstance other(applicationID);
        EXPECT_FALSE(other.isFirst());
    }
}

TEST_P(SingleInstanceTest, anotherApplicationIsAnother)
{
    const SingleInstance one(applicationID);
    const SingleInstance other(QStringLiteral("io.github.gruk.Other"));
    EXPECT_TRUE(one.isFirst());
    EXPECT_TRUE(other.isFirst());
}

TEST_P(SingleInstanceTest, aFirstThatDoesNotAnswerIsWaitedForTwoSecondsAtMost)
{
    // Its loop does not run.
    const SingleInstance first(applicationID);
    SingleInstance second(applicationID);
    ASSERT_FALSE(second.isFirst());
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(second.activateOther(someTokens));
    EXPECT_LT(time.elapsed(), longestCall);
}

TEST_P(SingleInstanceTest, aFirstThatHasGoneMeanwhileDoesNotAnswer)
{
    auto first = std::make_unique<SingleInstance>(applicationID);
    SingleInstance second(applicationID);
    ASSERT_FALSE(second.isFirst());
    first.reset();
    EXPECT_FALSE(second.activateOther(someTokens));
    EXPECT_TRUE(SingleInstance(applicationID).isFirst());
}

TEST_P(SingleInstanceTest, aStartWithoutTheBusFindsTheFirstAllTheSame)
{
    SingleInstance first(applicationID);
    const EnvironmentVariable noBus("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
}

namespace {

/// On a bus, where there is one to be had.
class SingleInstanceOnABus : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateSession::canHaveBus()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        ASSERT_TRUE(session.startBus());
    }

    PrivateSession session;
};

}  // namespace

TEST_F(SingleInstanceOnABus, aStartInAnotherRuntimeFolderFindsTheFirstByItsName)
{
    SingleInstance first(applicationID);
    const test::TemporaryDirectory other;
    const EnvironmentVariable folder("XDG_RUNTIME_DIR", other.path());
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
}

TEST_F(SingleInstanceOnABus, eachCallOfTheDesktopActivates)
{
    SingleInstance first(applicationID);
    int count = 0;
    QObject::connect(&first, &SingleInstance::activated, &first, [&] { ++count; });
    const QDBusConnection desktop = QDBusConnection::connectToBus(
        qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("desktop"));
    const auto call = [&](const QString& name, const QVariantList& arguments) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(applicationID, QStringLiteral("/io/github/gruk/Gruk"),
                                           QStringLiteral("org.freedesktop.Application"), name);
        message.setArguments(arguments);
        QEventLoop events;
        QDBusPendingCallWatcher watcher(desktop.asyncCall(message));
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &events, &QEventLoop::quit);
        events.exec();
        return !watcher.isError();
    };
    EXPECT_TRUE(call(QStringLiteral("Activate"), {QVariantMap()}));
    EXPECT_TRUE(call(QStringLiteral("Open"), {QStringList(), QVariantMap()}));
    EXPECT_TRUE(call(QStringLiteral("ActivateAction"),
                     {QStringLiteral("show"), QVariantList(), QVariantMap()}));
    EXPECT_FALSE(call(QStringLiteral("Quit"), {}));
    EXPECT_EQ(count, 3);
    QDBusConnection::disconnectFromBus(QStringLiteral("desktop"));
}

TEST_F(SingleInstanceOnABus, aBusThatIsStoppedHoldsNobodyUp)
{
    const auto bus = static_cast<pid_t>(session.busProcess());
    ::kill(bus, SIGSTOP);
    QElapsedTimer time;
    time.start();
    const SingleInstance first(applicationID);
    EXPECT_LT(time.elapsed(), longestCall);
    EXPECT_TRUE(first.isFirst());
    ::kill(bus, SIGCONT);
}

TEST_F(SingleInstanceOnABus, theEndOfTheBusEndsNobody)
{
    SingleInstance first(applicationID);
    session.stopBus();
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
}

TEST(SingleInstanceWithoutABus, aSocketThatAKilledProcessHasLeftHindersNobody)
{
    const PrivateSession session;
    {
        // Bound and never listened to, as after an end without warning.
        QLocalServer left;
        ASSERT_TRUE(left.listen(QString::fromStdString(
            session.directory().path("runtime/io.github.gruk.Gruk.socket"))));
        const std::string socket = session.directory().path("runtime/io.github.gruk.Gruk.socket");
        ASSERT_EQ(::link(socket.c_str(), (socket + ".kept").c_str()), 0);
        left.close();
        ASSERT_EQ(::rename((socket + ".kept").c_str(), socket.c_str()), 0);
    }
    SingleInstance first(applicationID);
    ASSERT_TRUE(first.isFirst());
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
}

TEST(SingleInstanceWithoutABus, aRuntimeFolderThatOthersReachIsNotUsed)
{
    const PrivateSession session;
    const EnvironmentVariable temporary("TMPDIR", session.directory().folder("temporary"));
    ASSERT_EQ(::chmod(session.directory().path("runtime").c_str(), 0755), 0);
    SingleInstance first(applicationID);
    ASSERT_TRUE(first.isFirst());
    EXPECT_TRUE(std::filesystem::is_empty(session.directory().path("runtime")));
    const std::string own =
        session.directory().path("temporary/gruk-" + std::to_string(::getuid()));
    struct stat facts {};
    ASSERT_EQ(::stat(own.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 0700U);
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
}

TEST(SingleInstanceWithoutABus, aFolderThatAnotherHasPutInItsPlaceIsNotUsed)
{
    const PrivateSession session;
    const EnvironmentVariable noFolder("XDG_RUNTIME_DIR", std::nullopt);
    const EnvironmentVariable temporary("TMPDIR", session.directory().folder("temporary"));
    const std::string trap = session.directory().folder("trap");
    (void)session.directory().symbolicLink("temporary/gruk-" + std::to_string(::getuid()), trap);
    const SingleInstance first(applicationID);
    EXPECT_TRUE(first.isFirst());
    EXPECT_TRUE(std::filesystem::is_empty(trap));
}

TEST(SingleInstanceWithoutABus, whoTalksNonsenseIsHungUpOnAndHeardByNobody)
{
    const PrivateSession session;
    SingleInstance first(applicationID);
    int count = 0;
    QObject::connect(&first, &SingleInstance::activated, &first, [&] { ++count; });
    const QByteArray speeches[] = {"", "GET / HTTP/1.1\n\n\n\n", "gruk-activate 1\nhalf",
                                   QByteArray(100'000, 'x')};
    QEventLoop events;
    std::vector<std::unique_ptr<QLocalSocket>> talkers;
    std::size_t hungUp = 0;
    for (const QByteArray& speech : speeches) {
        QLocalSocket& socket = *talkers.emplace_back(std::make_unique<QLocalSocket>());
        QObject::connect(&socket, &QLocalSocket::disconnected, &events, [&] {
            if (++hungUp == std::size(speeches)) {
                events.quit();
            }
        });
        socket.connectToServer(
            QString::fromStdString(session.directory().path("runtime/io.github.gruk.Gruk.socket")));
        ASSERT_TRUE(socket.waitForConnected());
        socket.write(speech);
    }
    events.exec();
    for (const auto& socket : talkers) {
        EXPECT_EQ(socket->readAll(), QByteArray());
    }
    EXPECT_EQ(count, 0);
    EXPECT_EQ(activations(first, someTokens), std::vector<ActivationTokens>{someTokens});
}

}  // namespace gruk
