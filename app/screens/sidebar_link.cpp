#include "app/screens/sidebar_link.h"

#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/tactile_press.h"

namespace gruk {

SidebarLink::SidebarLink(Theme& theme, Icon icon, const QString& text, QWidget* parent)
    : Button(theme, Kind::link, text, parent), icon_(icon)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize SidebarLink::sizeHint() const
{
    return {Measure::sidebarWidth - 2 * Measure::medium, Measure::buttonHeight};
}

QSize SidebarLink::minimumSizeHint() const
{
    return {Measure::huge, Measure::buttonHeight};
}

void SidebarLink::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = rect();
    press().apply(painter, body);
    if (!isEnabled()) {
        painter.setOpacity(Strength::disabled);
    }
    if (underMouse() && isEnabled()) {
        painter.fillPath(cutPath(body, buttonCorners),
                         theme().colour(Role::ink, Strength::divider));
    }
    const double iconLeft = body.left() + Measure::medium;
    drawIcon(painter, QPointF(iconLeft, body.center().y() - Measure::smallIconSize / 2.0), icon_,
             theme().colour(Role::ink), Measure::smallIconSize);
    painter.setFont(font());
    painter.setPen(theme().colour(Role::ink));
    const double textLeft = iconLeft + Measure::smallIconSize + Measure::small;
    const double width = body.right() - Measure::small - textLeft;
    painter.drawText(QRectF(textLeft, body.top(), width, body.height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, static_cast<int>(width)));
}

}  // namespace gruk
