#pragma once

#include <memory>

#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QObject>
#include <QString>

#include "app/desktop/activation.h"

namespace gruk {

/// The part of `SingleInstance` on the session bus: the application's name, and the interface
/// "org.freedesktop.Application" by which a desktop activates it. Main thread only.
class InstanceBus : public QObject {
    Q_OBJECT

public:
    /// A connection of its own; null when there is no session bus, or none that answers in time.
    [[nodiscard]] static std::unique_ptr<InstanceBus> connect(const QString& applicationID,
                                                              const QDeadlineTimer& deadline);
    ~InstanceBus() override;

    /// Takes the name, and answers to it from then on; false when another one has it. A bus that
    /// refuses to tell hinders nobody: true.
    [[nodiscard]] bool own(const QDeadlineTimer& deadline);

    /// Activates who has the name; false when nobody has, or it does not answer in time.
    [[nodiscard]] bool activateOwner(const ActivationTokens& tokens,
                                     const QDeadlineTimer& deadline);

Q_SIGNALS:
    void activated(const gruk::ActivationTokens& tokens);

private:
    InstanceBus(QDBusConnection connection, const QString& applicationID);

    QDBusConnection connection_;
    QString name_;
    /// "/io/github/…" for "io.github.…".
    QString objectPath_;
};

}  // namespace gruk
