#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <gtest/gtest.h>

#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// A session of the test's own: a runtime folder, and at will a message bus. What was the session's
/// comes back at the end.
class PrivateSession {
public:
    PrivateSession()
        : runtimeFolder_("XDG_RUNTIME_DIR", directory_.path("runtime")),
          noBus_("DBUS_SESSION_BUS_ADDRESS", std::nullopt)
    {
        (void)directory_.folder("runtime");
        std::filesystem::permissions(directory_.path("runtime"), std::filesystem::perms::owner_all);
    }
    ~PrivateSession() { stopBus(); }
    PrivateSession(const PrivateSession&) = delete;
    PrivateSession& operator=(const PrivateSession&) = delete;

    [[nodiscard]] const TemporaryDirectory& directory() const { return directory_; }

    [[nodiscard]] static bool canHaveBus()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty();
    }

    /// Starts a bus, which the session then has; whether it has said where it is.
    [[nodiscard]] bool startBus()
    {
        const QString place = QString::fromStdString("unix:dir=" + directory_.path());
        bus_.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--print-address=1"), QStringLiteral("--address=") + place});
        constexpr int patience = 20'000;
        if (!bus_.waitForReadyRead(patience)) {
            return false;
        }
        const std::string address = bus_.readLine().trimmed().toStdString();
        busAddress_ = std::make_unique<EnvironmentVariable>("DBUS_SESSION_BUS_ADDRESS", address);
        return true;
    }

    [[nodiscard]] qint64 busProcess() const { return bus_.processId(); }

    void stopBus()
    {
        if (bus_.state() != QProcess::NotRunning) {
            bus_.kill();
            bus_.waitForFinished();
        }
    }

private:
    TemporaryDirectory directory_;
    EnvironmentVariable runtimeFolder_;
    EnvironmentVariable noBus_;
    std::unique_ptr<EnvironmentVariable> busAddress_;
    QProcess bus_;
};

/// For tests that run in a session with a bus, and in one without: the parameter says which.
class InEachSession : public testing::TestWithParam<bool> {
public:
    /// What an instance is called.
    static std::string name(const testing::TestParamInfo<bool>& session)
    {
        return session.param ? "withABus" : "withoutABus";
    }

protected:
    void SetUp() override
    {
        if (!GetParam()) {
            return;
        }
        if (!PrivateSession::canHaveBus()) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        ASSERT_TRUE(session.startBus());
    }

    PrivateSession session;
};

}  // namespace gruk::test
