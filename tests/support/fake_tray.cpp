#include "tests/support/fake_tray.h"

#include <QCoreApplication>
#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDeadlineTimer>
#include <QPoint>
#include <QUuid>

namespace gruk::test {

namespace {

constexpr int patience = 20'000;
const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString itemPath = QStringLiteral("/StatusNotifierItem");

class Watcher : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(int ProtocolVersion READ version)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)

public:
    explicit Watcher(FakeTray& tray) : QDBusAbstractAdaptor(&tray), tray_(tray)
    {
        connect(&tray, &FakeTray::hostAppeared, this, &Watcher::StatusNotifierHostRegistered);
    }

    [[nodiscard]] bool hasHost() const { return tray_.hasHost(); }
    [[nodiscard]] int version() const { return 0; }
    [[nodiscard]] QStringList items() const { return tray_.items(); }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names are those of the interface
    void RegisterStatusNotifierItem(const QString& service) { tray_.add(service); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    // NOLINTEND(readability-identifier-naming)

private:
    FakeTray& tray_;
};

}  // namespace

FakeTray::FakeTray(Host host)
    : connection_(QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                                                QUuid::createUuid().toString())),
      host_(host)
{
    registerTrayTypes();
    new Watcher(*this);
    isRunning_ = connection_.registerObject(QStringLiteral("/StatusNotifierWatcher"), this)
                 && connection_.registerService(watcherName);
}

FakeTray::~FakeTray()
{
    const QString name = connection_.name();
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

void FakeTray::add(const QString& item)
{
    items_.append(item);
    connection_.connect(item, QStringLiteral("/MenuBar"), menuInterface,
                        QStringLiteral("LayoutUpdated"), this, SLOT(noteLayout()));
    connection_.connect(item, QStringLiteral("/MenuBar"), menuInterface,
                        QStringLiteral("ItemsPropertiesUpdated"), this, SLOT(noteEntries()));
    Q_EMIT itemAdded();
}

bool FakeTray::waitForItem()
{
    const QDeadlineTimer deadline(patience);
    while (items_.isEmpty() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return !items_.isEmpty();
}

void FakeTray::setHost(Host host)
{
    host_ = host;
    if (hasHost()) {
        Q_EMIT hostAppeared();
    }
}

QVariantList FakeTray::call(const QString& path, const QString& interface, const QString& method,
                            const QVariantList& arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(items_.value(0), path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall pending = connection_.asyncCall(message, patience);
    const QDeadlineTimer deadline(patience);
    while (!pending.isFinished() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return pending.isError() ? QVariantList() : pending.reply().arguments();
}

QVariant FakeTray::property(const QString& name)
{
    const QVariantList answer = call(itemPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                     QStringLiteral("Get"), {itemInterface, name});
    return answer.isEmpty() ? QVariant() : answer[0].value<QDBusVariant>().variant();
}

QString FakeTray::menuPath()
{
    return property(QStringLiteral("Menu")).value<QDBusObjectPath>().path();
}

TrayMenuLayout FakeTray::layout()
{
    const QVariantList answer =
        call(menuPath(), menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()});
    return answer.size() == 2 ? qdbus_cast<TrayMenuLayout>(answer[1]) : TrayMenuLayout();
}

QStringList FakeTray::menu()
{
    QStringList lines;
    for (const QDBusVariant& child : layout().children) {
        const auto entry = qdbus_cast<TrayMenuLayout>(child.variant());
        const bool isDivider =
            entry.properties.value(QStringLiteral("type")) == QStringLiteral("separator");
        const bool isEnabled = entry.properties.value(QStringLiteral("enabled")).toBool();
        lines.append(isDivider ? QStringLiteral("---")
                               : (isEnabled ? QString() : QStringLiteral("-"))
                                     + entry.properties.value(QStringLiteral("label")).toString());
    }
    return lines;
}

bool FakeTray::click(const QString& label)
{
    for (const QDBusVariant& child : layout().children) {
        const auto entry = qdbus_cast<TrayMenuLayout>(child.variant());
        if (entry.properties.value(QStringLiteral("label")) == label) {
            call(menuPath(), menuInterface, QStringLiteral("Event"),
                 {entry.id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QString())),
                  0U});
            return true;
        }
    }
    return false;
}

void FakeTray::activate(const QPoint& at)
{
    call(itemPath, itemInterface, QStringLiteral("Activate"), {at.x(), at.y()});
}

}  // namespace gruk::test

#include "fake_tray.moc"
