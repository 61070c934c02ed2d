#include "app/theme/identity_picture.h"

#include <QPainter>
#include <QPixmapCache>

#include "app/theme/icons.h"

namespace gruk {

namespace {

template <typename Case>
int number(Case value)
{
    return static_cast<int>(value);
}

QString cacheKey(QLatin1String kind, const RealmIdentity& identity, const QSizeF& size,
                 double ratio, const Theme& theme)
{
    return QStringLiteral("gruk-%1-%2-%3-%4-%5-%6")
               .arg(kind)
               .arg(number(identity.shape))
               .arg(number(identity.division))
               .arg(number(identity.primary))
               .arg(number(identity.secondary))
               .arg(number(identity.charge))
           + QStringLiteral("-%1-%2-%3-%4-%5")
                 .arg(number(theme.paletteTheme()))
                 .arg(number(theme.scheme()))
                 .arg(size.width())
                 .arg(size.height())
                 .arg(ratio);
}

}  // namespace

void paintIdentityPicture(QPainter& painter, const QRectF& area, QLatin1String kind,
                          const RealmIdentity& identity, const Theme& theme,
                          FunctionRef<Drawing()> draw)
{
    const double ratio = pixelRatio(painter);
    const QString key = cacheKey(kind, identity, area.size(), ratio, theme);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap((area.size() * ratio).toSize());
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter drawing(&pixmap);
        paintDrawing(drawing, draw(), theme);
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(area.topLeft(), pixmap);
}

}  // namespace gruk
