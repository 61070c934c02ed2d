#include "app/desktop/instance_bus.h"

#include <algorithm>
#include <optional>

#include <unistd.h>

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QFile>
#include <QLocalSocket>
#include <QUuid>
#include <QVariantMap>

namespace gruk {

namespace {

const QString applicationInterface = QStringLiteral("org.freedesktop.Application");
const QString busName = QStringLiteral("org.freedesktop.DBus");
const QString tokenKey = QStringLiteral("activation-token");
const QString startupKey = QStringLiteral("desktop-startup-id");

/// Longer than any desktop makes them.
constexpr int longestToken = 4'096;

/// A bus that works answers at once; more must be left for what comes then.
constexpr int patienceWithBus = 1'000;

int remaining(const QDeadlineTimer& deadline, int most = patienceWithBus)
{
    return static_cast<int>(std::clamp<qint64>(deadline.remainingTime(), 1, most));
}

QString tokenOf(const QVariantMap& platformData, const QString& key)
{
    const QString token = platformData.value(key).toString();
    return token.size() <= longestToken && !token.contains(QChar(0)) ? token : QString();
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

/// Where the session bus is; empty when the session has none. Nothing is started to get one.
QString busAddress()
{
    const QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    const QString usual = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus");
    if (!named.isEmpty() || !usual.startsWith(QLatin1Char('/')) || !QFile::exists(usual)) {
        return named;
    }
    return QStringLiteral("unix:path=") + usual;
}

/// The value of `key` in an address such as "unix:path=/run/bus,guid=12"; empty when it has none.
QString addressPart(const QString& address, const QString& key)
{
    constexpr qsizetype schemeLength = 5;
    for (const QString& part : address.mid(schemeLength).split(QLatin1Char(','))) {
        if (part.startsWith(key + QLatin1Char('='))) {
            return QString::fromUtf8(
                QByteArray::fromPercentEncoding(part.mid(key.size() + 1).toUtf8()));
        }
    }
    return {};
}

/// Whether somebody at the address answers as a bus does. To connect to one that is stopped would
/// hold the program up for as long as it stays so.
bool isAnswering(const QString& address, const QDeadlineTimer& deadline)
{
    const QString path = addressPart(address, QStringLiteral("path"));
    const QString abstract = addressPart(address, QStringLiteral("abstract"));
    QLocalSocket socket;
    if (path.isEmpty()) {
        socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    }
    socket.connectToServer(path.isEmpty() ? abstract : path);
    if (!socket.waitForConnected(remaining(deadline))) {
        return false;
    }
    const QByteArray user = QByteArray::number(::getuid()).toHex();
    socket.write(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n");
    return socket.waitForReadyRead(remaining(deadline)) && socket.readLine().startsWith("OK ");
}

/// The first address of those that the session names which is a bus that answers.
std::optional<QString> answeringBus(const QDeadlineTimer& deadline)
{
    for (const QString& address : busAddress().split(QLatin1Char(';'))) {
        if (address.startsWith(QStringLiteral("unix:")) && isAnswering(address, deadline)) {
            return address;
        }
    }
    return std::nullopt;
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
    const std::optional<QString> address = answeringBus(deadline);
    if (!address) {
        return nullptr;
    }
    const QDBusConnection connection =
        QDBusConnection::connectToBus(*address, QUuid::createUuid().toString(QUuid::WithoutBraces));
    std::unique_ptr<InstanceBus> bus(new InstanceBus(connection, applicationID));
    return connection.isConnected() ? std::move(bus) : nullptr;
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
    const QDBusMessage answer = connection_.call(request, QDBus::Block, remaining(deadline));
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
    return connection_.call(call, QDBus::Block, remaining(deadline, std::max(limit, 1))).type()
           == QDBusMessage::ReplyMessage;
}

}  // namespace gruk

#include "instance_bus.moc"
