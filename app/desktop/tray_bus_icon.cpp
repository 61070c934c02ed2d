#include "app/desktop/tray_bus_icon.h"

#include <utility>

#include "app/desktop/activation.h"

namespace gruk {

TrayBusIcon::TrayBusIcon(QString applicationID, QString menuPath, QObject* parent)
    : QObject(parent), applicationID_(std::move(applicationID)), menuPath_(std::move(menuPath))
{
    registerTrayTypes();
    new TrayBusIconAdaptor(*this);
}

void TrayBusIcon::setLook(const TrayLook& look)
{
    const bool isNewIcon =
        look.iconName != look_.iconName || look.icon.cacheKey() != look_.icon.cacheKey();
    const bool isNewToolTip = look.status != look_.status || look.title != look_.title;
    look_ = look;
    if (isNewIcon) {
        pixmaps_ = trayPixmaps(look_.icon);
        Q_EMIT iconChanged();
    }
    if (isNewToolTip) {
        Q_EMIT toolTipChanged();
    }
}

QString TrayBusIcon::takeToken()
{
    return std::exchange(token_, {});
}

TrayBusIconAdaptor::TrayBusIconAdaptor(TrayBusIcon& icon) : QDBusAbstractAdaptor(&icon), icon_(icon)
{
    connect(&icon_, &TrayBusIcon::iconChanged, this, &TrayBusIconAdaptor::NewIcon);
    connect(&icon_, &TrayBusIcon::toolTipChanged, this, &TrayBusIconAdaptor::NewToolTip);
}

TrayToolTip TrayBusIconAdaptor::toolTip() const
{
    return {icon_.look().iconName, {}, icon_.look().title, icon_.look().status};
}

void TrayBusIconAdaptor::Activate(int x, int y)
{
    Q_EMIT icon_.activated({x, y});
}

void TrayBusIconAdaptor::ContextMenu(int x, int y)
{
    Q_EMIT icon_.menuRequested({x, y});
}

void TrayBusIconAdaptor::ProvideXdgActivationToken(const QString& token)
{
    icon_.keepToken(soundToken(token));
}

}  // namespace gruk
