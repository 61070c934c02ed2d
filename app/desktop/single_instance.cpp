#include "app/desktop/single_instance.h"

#include <QDeadlineTimer>

#include "app/desktop/instance_bus.h"
#include "app/desktop/instance_socket.h"

namespace gruk {

SingleInstance::SingleInstance(const QString& applicationID)
    : socket_(std::make_unique<InstanceSocket>(applicationID))
{
    const QDeadlineTimer deadline(limit);
    bus_ = InstanceBus::connect(applicationID, deadline);
    if (!socket_->own()) {
        return;
    }
    if (bus_ && !bus_->own(deadline)) {
        socket_.reset();
        return;
    }
    isFirst_ = true;
    socket_->listen();
    QObject::connect(socket_.get(), &InstanceSocket::activated, this, &SingleInstance::activated);
    if (bus_) {
        QObject::connect(bus_.get(), &InstanceBus::activated, this, &SingleInstance::activated);
    }
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::activateOther(const ActivationTokens& tokens)
{
    const QDeadlineTimer deadline(limit);
    if (bus_ && bus_->activateOwner(tokens, deadline)) {
        return true;
    }
    return socket_ && socket_->activateOwner(tokens, deadline);
}

}  // namespace gruk
