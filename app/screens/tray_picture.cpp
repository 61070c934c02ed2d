#include "app/screens/tray_picture.h"

#include <QPainter>
#include <QPixmap>

#include "app/theme/icons.h"

namespace gruk {

namespace {

/// What trays ask for, at single and at double scale.
constexpr int sizes[] = {16, 22, 24, 32, 44, 48, 64};
constexpr QPointF edge[] = {{-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-1, 1}, {0, 1}, {1, 1}};

QPixmap picture(const Theme& theme, int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    // One pixel is left at each side for the edge.
    const int iconSize = size - 2;
    for (const QPointF& step : edge) {
        drawIcon(painter, QPointF(1, 1) + step, Icon::shieldHalf, theme.colour(Role::paperCard),
                 iconSize);
    }
    drawIcon(painter, QPointF(1, 1), Icon::shieldHalf, theme.colour(Role::ink), iconSize);
    return pixmap;
}

}  // namespace

QIcon trayPicture(const Theme& theme)
{
    QIcon icon;
    for (const int size : sizes) {
        icon.addPixmap(picture(theme, size));
    }
    return icon;
}

}  // namespace gruk
