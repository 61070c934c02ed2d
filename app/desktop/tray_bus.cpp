#include "app/desktop/tray_bus.h"

#include <utility>

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

#include "app/desktop/tray_bus_icon.h"
#include "app/desktop/tray_bus_menu.h"

namespace gruk {

namespace {

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
const QString hostProperty = QStringLiteral("IsStatusNotifierHostRegistered");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/MenuBar");

/// The prescribed form: the process, and which of its items.
QString itemName()
{
    return QStringLiteral("org.kde.StatusNotifierItem-%1-1")
        .arg(QCoreApplication::applicationPid());
}

/// To the watcher, if there is one: none is started.
QDBusMessage callToWatcher(const QString& interface, const QString& method,
                           const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(watcherName, watcherPath, interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

}  // namespace

TrayBus::TrayBus(QDBusConnection connection, const QString& applicationID)
    : connection_(std::move(connection)), name_(itemName()),
      icon_(new TrayBusIcon(applicationID, menuPath, this)), menuPlace_(new TrayBusMenuPlace(this)),
      menu_(new TrayBusMenu(*menuPlace_))
{
    connect(icon_, &TrayBusIcon::activated, this,
            [this](const QPoint& at) { Q_EMIT activated(at, takeTokens()); });
    connect(icon_, &TrayBusIcon::menuRequested, this, &TrayBus::menuRequested);
    connect(menuPlace_, &TrayBusMenuPlace::chosen, this,
            [this](int id) { Q_EMIT chosen(id, takeTokens()); });
    publish();
    watchForTrays();
}

TrayBus::~TrayBus()
{
    const QString name = connection_.name();
    connection_ = QDBusConnection(QString());
    QDBusConnection::disconnectFromBus(name);
}

void TrayBus::publish()
{
    connection_.registerObject(itemPath, icon_, QDBusConnection::ExportAdaptors);
    connection_.registerObject(menuPath, menuPlace_, QDBusConnection::ExportAdaptors);
    if (!connection_.registerService(name_)) {
        // Without that name it can still be found by the connection's own.
        name_ = connection_.baseService();
    }
}

void TrayBus::watchForTrays()
{
    auto* watch = new QDBusServiceWatcher(watcherName, connection_,
                                          QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watch, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                if (owner.isEmpty()) {
                    forgetWatcher();
                } else {
                    meetWatcher();
                }
            });
    for (const char* const event :
         {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        connection_.connect(watcherName, watcherPath, watcherName, QLatin1String(event), this,
                            SLOT(askForHost()));
    }
    meetWatcher();
}

void TrayBus::meetWatcher()
{
    const int met = ++watcher_;
    openQuestions_ = 0;
    ++openQuestions_;
    auto* reply = new QDBusPendingCallWatcher(
        connection_.asyncCall(
            callToWatcher(watcherName, QStringLiteral("RegisterStatusNotifierItem"), {name_})),
        this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, met] {
        reply->deleteLater();
        if (met == watcher_) {
            isRegistered_ = !reply->isError();
            finishQuestion();
        }
    });
    askForHost();
}

void TrayBus::askForHost()
{
    const int met = watcher_;
    ++openQuestions_;
    auto* reply = new QDBusPendingCallWatcher(
        connection_.asyncCall(
            callToWatcher(propertiesInterface, QStringLiteral("Get"), {watcherName, hostProperty})),
        this);
    connect(reply, &QDBusPendingCallWatcher::finished, this, [this, reply, met] {
        reply->deleteLater();
        if (met == watcher_) {
            const QDBusPendingReply<QDBusVariant> answer = *reply;
            hasHost_ = answer.isValid() && answer.value().variant().toBool();
            finishQuestion();
        }
    });
}

void TrayBus::forgetWatcher()
{
    ++watcher_;
    openQuestions_ = 0;
    isAnswered_ = true;
    isRegistered_ = false;
    hasHost_ = false;
    Q_EMIT stateChanged();
}

void TrayBus::finishQuestion()
{
    --openQuestions_;
    if (openQuestions_ == 0) {
        isAnswered_ = true;
        Q_EMIT stateChanged();
    }
}

void TrayBus::setLook(const TrayLook& look)
{
    icon_->setLook(look);
}

void TrayBus::setEntries(std::vector<TrayEntry> entries)
{
    menu_->setEntries(std::move(entries));
}

ActivationTokens TrayBus::takeTokens()
{
    return {icon_->takeToken(), {}};
}

}  // namespace gruk
