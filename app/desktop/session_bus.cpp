#include "app/desktop/session_bus.h"

#include <algorithm>

#include <unistd.h>

#include <QFile>
#include <QLocalSocket>
#include <QUuid>

namespace gruk {

namespace {

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
    if (!socket.waitForConnected(millisecondsUntil(deadline))) {
        return false;
    }
    const QByteArray user = QByteArray::number(::getuid()).toHex();
    socket.write(QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\n");
    return socket.waitForReadyRead(millisecondsUntil(deadline))
           && socket.readLine().startsWith("OK ");
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

}  // namespace

std::optional<QDBusConnection> connectToSessionBus(const QDeadlineTimer& deadline)
{
    const std::optional<QString> address = answeringBus(deadline);
    if (!address) {
        return std::nullopt;
    }
    const QDBusConnection connection =
        QDBusConnection::connectToBus(*address, QUuid::createUuid().toString(QUuid::WithoutBraces));
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(connection.name());
        return std::nullopt;
    }
    return connection;
}

int millisecondsUntil(const QDeadlineTimer& deadline, int most)
{
    return static_cast<int>(std::clamp<qint64>(deadline.remainingTime(), 1, most));
}

}  // namespace gruk
