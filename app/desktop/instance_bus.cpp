#include "app/desktop/instance_bus.h"

#include <algorithm>
#include <optional>

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QVariantMap>

#include "app/desktop/session_bus.h"

namespace gruk {

namespace {

const QString applicationInterface = QStringLiteral("org.freedesktop.Application");
const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString tokenKey = QStringLiteral("activation-token");
const QString startupKey = QStringLiteral("desktop-startup-id");

QString tokenOf(const QVariantMap& platformData, const QString& key)
{
    return soundToken(platformData.value(key).toString());
}

ActivationTokens tokensOf(const QVariantMap& platformData)
{
    return {tokenOf(platformData, tokenKey), tokenOf(platformData, startupKey)};
}

QVariantMap platformDataOf(const ActivationTokens& tokens)
{
    QVariantMap data;
    if (!tokens.activationToken.isEmpty()) {
        data.insert(tokenKey, tokens.activationToken);
    }
    if (!tokens.startupID.isEmpty()) {
        data.insert(startupKey, tokens.startupID);
    }
    return data;
}

/// What the desktop calls. The names are those of the interface.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(InstanceBus& bus) : QDBusAbstractAdaptor(&bus), bus_(bus) {}

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names are those of the interface
    void Activate(const QVariantMap& platformData)
    {
        Q_EMIT bus_.activated(tokensOf(platformData));
    }
    void Open(const QStringList&, const QVariantMap& platformData) { Activate(platformData); }
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap& platformData)
    {
        Activate(platformData);
    }
    // NOLINTEND(readability-identifier-naming)

private:
    InstanceBus& bus_;
};

}  // namespace

std::unique_ptr<InstanceBus> InstanceBus::connect(const QString& applicationID,
                                                  const QDeadlineTimer& deadline)
{
    const std::optional<QDBusConnection> connection = connectToSessionBus(deadline);
    return connection ? std::unique_ptr<InstanceBus>(new InstanceBus(*connection, applicationID))
                      : nullptr;
}

InstanceBus::InstanceBus(QDBusConnection connection, const QString& applicationID)
    : connection_(std::move(connection)), name_(applicationID),
      objectPath_(QLatin1Char('/') + QString(applicationID).replace(u'.', u'/').replace(u'-', u'_'))
{
}

InstanceBus::~InstanceBus()
{
    QDBusConnection::disconnectFromBus(connection_.name());
}

bool InstanceBus::own(const QDeadlineTimer& deadline)
{
    // Before the name is ours, so that nobody who calls it finds nothing there.
    new ApplicationAdaptor(*this);
    connection_.registerObject(objectPath_, this, QDBusConnection::ExportAdaptors);
    constexpr uint withoutQueueing = 4;
    constexpr uint anotherOwnsIt = 3;
    QDBusMessage request = QDBusMessage::createMethodCall(
        busName, QStringLiteral("/org/freedesktop/DBus"), busName, QStringLiteral("RequestName"));
    request << name_ << withoutQueueing;
    const QDBusMessage answer =
        connection_.call(request, QDBus::Block, millisecondsUntil(deadline));
    return answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()
           || answer.arguments().constFirst().toUInt() != anotherOwnsIt;
}

bool InstanceBus::activateOwner(const ActivationTokens& tokens, const QDeadlineTimer& deadline)
{
    QDBusMessage call = QDBusMessage::createMethodCall(name_, objectPath_, applicationInterface,
                                                       QStringLiteral("Activate"));
    // A program that is not there is not to be started by the bus: this one is.
    call.setAutoStartService(false);
    call << platformDataOf(tokens);
    const int limit = static_cast<int>(deadline.remainingTime());
    return connection_.call(call, QDBus::Block, millisecondsUntil(deadline, std::max(limit, 1)))
               .type()
           == QDBusMessage::ReplyMessage;
}

}  // namespace gruk

#include "instance_bus.moc"
