#include "app/theme/shield_painter.h"

#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include "app/theme/icons.h"
#include "app/theme/shield_geometry.h"

namespace gruk {

namespace {

template <typename Case>
int number(Case value)
{
    return static_cast<int>(value);
}

QString cacheKey(const RealmIdentity& identity, const QSizeF& size, double ratio,
                 const Theme& theme)
{
    return QStringLiteral("gruk-shield-%1-%2-%3-%4-%5")
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

void paintShield(QPainter& painter, const QRectF& canvas, const RealmIdentity& identity,
                 const Theme& theme)
{
    const double ratio = pixelRatio(painter);
    const QString key = cacheKey(identity, canvas.size(), ratio, theme);
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap((canvas.size() * ratio).toSize());
        pixmap.setDevicePixelRatio(ratio);
        pixmap.fill(Qt::transparent);
        QPainter drawing(&pixmap);
        paintDrawing(drawing, shieldDrawing(identity, QRectF(QPointF(), canvas.size())), theme);
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(canvas.topLeft(), pixmap);
}

}  // namespace gruk
