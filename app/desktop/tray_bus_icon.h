#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QPoint>

#include "app/desktop/tray_bus.h"
#include "app/desktop/tray_bus_types.h"

namespace gruk {

/// The object on the bus that is the item itself.
class TrayBusIcon : public QObject {
    Q_OBJECT

public:
    TrayBusIcon(QString applicationID, QString menuPath, QObject* parent);

    void setLook(const TrayLook& look);

    [[nodiscard]] const QString& applicationID() const { return applicationID_; }
    [[nodiscard]] const QString& menuPath() const { return menuPath_; }
    [[nodiscard]] const TrayLook& look() const { return look_; }
    [[nodiscard]] const TrayPixmaps& pixmaps() const { return pixmaps_; }

    /// The token that came before the click that is told now; empty without one.
    [[nodiscard]] QString takeToken();
    void keepToken(const QString& token) { token_ = token; }

Q_SIGNALS:
    void activated(const QPoint& at);
    void menuRequested(const QPoint& at);
    void iconChanged();
    void toolTipChanged();

private:
    QString applicationID_;
    QString menuPath_;
    TrayLook look_;
    TrayPixmaps pixmaps_;
    QString token_;
};

/// What a tray reads and calls of it: the interface org.kde.StatusNotifierItem.
class TrayBusIconAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(QString IconThemePath READ none CONSTANT)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(gruk::TrayPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ none CONSTANT)
    Q_PROPERTY(gruk::TrayPixmaps OverlayIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionIconName READ none CONSTANT)
    Q_PROPERTY(gruk::TrayPixmaps AttentionIconPixmap READ noPixmap CONSTANT)
    Q_PROPERTY(QString AttentionMovieName READ none CONSTANT)
    Q_PROPERTY(gruk::TrayToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)

public:
    explicit TrayBusIconAdaptor(TrayBusIcon& icon);

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return icon_.applicationID(); }
    [[nodiscard]] QString title() const { return icon_.look().title; }
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString none() const { return {}; }
    [[nodiscard]] QString iconName() const { return icon_.look().iconName; }
    [[nodiscard]] TrayPixmaps iconPixmap() const { return icon_.pixmaps(); }
    [[nodiscard]] TrayPixmaps noPixmap() const { return {}; }
    [[nodiscard]] TrayToolTip toolTip() const;
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath(icon_.menuPath()); }

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): the names are those of the interface
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y) { Activate(x, y); }
    void ContextMenu(int x, int y);
    void Scroll(int, const QString&) {}
    void ProvideXdgActivationToken(const QString& token);

Q_SIGNALS:
    void NewTitle();
    void NewIcon();
    void NewAttentionIcon();
    void NewOverlayIcon();
    void NewToolTip();
    void NewStatus(const QString& status);
    // NOLINTEND(readability-identifier-naming)

private:
    TrayBusIcon& icon_;
};

}  // namespace gruk
