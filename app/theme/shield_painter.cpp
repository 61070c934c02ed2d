#include "app/theme/shield_painter.h"

#include "app/theme/identity_picture.h"
#include "app/theme/shield_geometry.h"

namespace gruk {

void paintShield(QPainter& painter, const QRectF& canvas, const RealmIdentity& identity,
                 const Theme& theme)
{
    paintIdentityPicture(painter, canvas, QLatin1String("shield"), identity, theme,
                         [&] { return shieldDrawing(identity, QRectF(QPointF(), canvas.size())); });
}

}  // namespace gruk
