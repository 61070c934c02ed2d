#pragma once

#include <chrono>
#include <memory>

#include <QObject>
#include <QString>

#include "app/desktop/activation.h"

namespace gruk {

class InstanceBus;
class InstanceSocket;

/// Sees to it that one process of a user shows the program, however often it is started.
///
/// The first one owns the application's name on the session bus, as the desktop expects it, and a
/// lock in the user's runtime folder, which also holds where there is no bus. Both end with the
/// process, however it ends. Main thread only, within the life of the application object.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    /// The longest that anything here takes.
    static constexpr std::chrono::milliseconds limit{2'000};

    /// Becomes the first one, if there is none. `applicationID` is the application's reverse-DNS
    /// name.
    explicit SingleInstance(const QString& applicationID);
    ~SingleInstance() override;

    /// Whether this process is the one that shows the program. One that can find out nothing, since
    /// there is neither a bus nor a runtime folder, is the first, too.
    [[nodiscard]] bool isFirst() const { return isFirst_; }

    /// Asks the first one to show itself; false when it has gone meanwhile, or does not answer.
    [[nodiscard]] bool activateOther(const ActivationTokens& tokens);

Q_SIGNALS:
    /// The program was started again, or the desktop wants it shown. On the first one only.
    void activated(const gruk::ActivationTokens& tokens);

private:
    bool isFirst_ = false;
    std::unique_ptr<InstanceSocket> socket_;
    std::unique_ptr<InstanceBus> bus_;
};

}  // namespace gruk
