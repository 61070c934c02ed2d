#pragma once

#include <optional>

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QObject>
#include <QString>

#include "app/desktop/activation.h"
#include "platform/files/file_lock.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// The part of `SingleInstance` in the user's runtime folder: a lock, and a socket over which the
/// first one is activated. In `XDG_RUNTIME_DIR`, else in a folder of the user's own in the one for
/// temporary files. Main thread only.
class InstanceSocket : public QObject {
    Q_OBJECT

public:
    explicit InstanceSocket(const QString& applicationID);

    /// Takes the lock; false when another process has it. Without a folder that only the user can
    /// reach there is no lock, and nobody has it: true.
    [[nodiscard]] bool own();

    /// Answers on the socket from now on. Only for the owner.
    void listen();

    /// Activates who has the lock; false when it does not answer in time.
    [[nodiscard]] bool activateOwner(const ActivationTokens& tokens,
                                     const QDeadlineTimer& deadline) const;

Q_SIGNALS:
    void activated(const gruk::ActivationTokens& tokens);

private:
    void accept();

    /// The beginning of the path of both files; none without a folder.
    std::optional<FileURL> base_;
    std::optional<FileLock> lock_;
    QLocalServer server_;
};

}  // namespace gruk
