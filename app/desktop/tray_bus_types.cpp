#include "app/desktop/tray_bus_types.h"

#include <QDBusMetaType>
#include <QIcon>
#include <QImage>
#include <QtEndian>

namespace gruk {

namespace {

constexpr int panelSizes[] = {16, 22, 24, 32, 48};

TrayPixmap pixmapOf(const QIcon& icon, int size)
{
    const QImage image =
        icon.pixmap(QSize(size, size), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    TrayPixmap result{image.width(), image.height(), {}};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const quint32 pixel = qToBigEndian<quint32>(image.pixel(x, y));
            result.pixels.append(reinterpret_cast<const char*>(&pixel), sizeof pixel);
        }
    }
    return result;
}

/// Writes or reads the fields of a structure one after the other.
template <typename... Fields>
QDBusArgument& write(QDBusArgument& out, const Fields&... fields)
{
    out.beginStructure();
    (out << ... << fields);
    out.endStructure();
    return out;
}

template <typename... Fields>
const QDBusArgument& read(const QDBusArgument& in, Fields&... fields)
{
    in.beginStructure();
    (in >> ... >> fields);
    in.endStructure();
    return in;
}

}  // namespace

TrayPixmaps trayPixmaps(const QIcon& icon)
{
    TrayPixmaps pixmaps;
    for (const int size : panelSizes) {
        pixmaps.append(pixmapOf(icon, size));
    }
    return pixmaps;
}

void registerTrayTypes()
{
    qDBusRegisterMetaType<TrayPixmap>();
    qDBusRegisterMetaType<TrayPixmaps>();
    qDBusRegisterMetaType<TrayToolTip>();
    qDBusRegisterMetaType<TrayMenuItem>();
    qDBusRegisterMetaType<QList<TrayMenuItem>>();
    qDBusRegisterMetaType<TrayMenuLoss>();
    qDBusRegisterMetaType<QList<TrayMenuLoss>>();
    qDBusRegisterMetaType<TrayMenuLayout>();
    qDBusRegisterMetaType<TrayMenuEvent>();
    qDBusRegisterMetaType<QList<TrayMenuEvent>>();
    qDBusRegisterMetaType<QList<QDBusVariant>>();
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayPixmap& value)
{
    return write(out, value.width, value.height, value.pixels);
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayPixmap& value)
{
    return read(in, value.width, value.height, value.pixels);
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayToolTip& value)
{
    return write(out, value.iconName, value.icon, value.title, value.text);
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayToolTip& value)
{
    return read(in, value.iconName, value.icon, value.title, value.text);
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuItem& value)
{
    return write(out, value.id, value.properties);
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuItem& value)
{
    return read(in, value.id, value.properties);
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuLoss& value)
{
    return write(out, value.id, value.properties);
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuLoss& value)
{
    return read(in, value.id, value.properties);
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuLayout& value)
{
    return write(out, value.id, value.properties, value.children);
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuLayout& value)
{
    return read(in, value.id, value.properties, value.children);
}

QDBusArgument& operator<<(QDBusArgument& out, const TrayMenuEvent& value)
{
    return write(out, value.id, value.name, value.data, value.time);
}

const QDBusArgument& operator>>(const QDBusArgument& in, TrayMenuEvent& value)
{
    return read(in, value.id, value.name, value.data, value.time);
}

}  // namespace gruk
