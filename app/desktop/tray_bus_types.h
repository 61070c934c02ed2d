#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QVariantMap>

class QIcon;

/// What the tray item says over the bus, in the shapes that the interfaces prescribe
/// (org.kde.StatusNotifierItem and com.canonical.dbusmenu).
namespace gruk {

/// "(iiay)": 32-bit pixels, alpha first, each in network order.
struct TrayPixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;
};
using TrayPixmaps = QList<TrayPixmap>;

/// "(sa(iiay)ss)".
struct TrayToolTip {
    QString iconName;
    TrayPixmaps icon;
    QString title;
    QString text;
};

/// "(ia{sv})".
struct TrayMenuItem {
    int id = 0;
    QVariantMap properties;
};

/// "(ias)": properties that an item has no more.
struct TrayMenuLoss {
    int id = 0;
    QStringList properties;
};

/// "(ia{sv}av)", of which each child is one of these.
struct TrayMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;
};

/// "(isvu)".
struct TrayMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint time = 0;
};

/// The icon in the sizes that panels have.
[[nodiscard]] TrayPixmaps trayPixmaps(const QIcon& icon);

/// Tells the toolkit of all of these; once is enough, more does no harm.
void registerTrayTypes();

QDBusArgument& operator<<(QDBusArgument& out, const TrayPixmap& value);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayPixmap& value);
QDBusArgument& operator<<(QDBusArgument& out, const TrayToolTip& value);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayToolTip& value);
QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuItem& value);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuItem& value);
QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuLoss& value);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuLoss& value);
QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuLayout& value);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuLayout& value);
QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuEvent& value);
const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuEvent& value);

}  // namespace gruk

Q_DECLARE_METATYPE(gruk::TrayPixmap)
Q_DECLARE_METATYPE(gruk::TrayToolTip)
Q_DECLARE_METATYPE(gruk::TrayMenuItem)
Q_DECLARE_METATYPE(gruk::TrayMenuLoss)
Q_DECLARE_METATYPE(gruk::TrayMenuLayout)
Q_DECLARE_METATYPE(gruk::TrayMenuEvent)
