#include "app/screens/tool_button.h"

#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/text.h"

namespace gruk {

ToolButton::ToolButton(Theme& theme, Icon icon, const QString& name, QWidget* parent)
    : Button(theme, Kind::link, {}, parent), icon_(icon)
{
    setAccessibleName(name);
    setToolTip(toolTipText(name));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize ToolButton::sizeHint() const
{
    return {Measure::buttonHeight, Measure::buttonHeight};
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) {
        painter.setOpacity(Strength::disabled);
    } else if (isDown()) {
        applyPress(painter, rect());
    }
    if (underMouse() && isEnabled()) {
        painter.fillPath(cutPath(rect(), buttonCorners),
                         theme().colour(Role::ink, Strength::divider));
    }
    const QPointF at =
        QRectF(rect()).center() - QPointF(Measure::iconSize / 2.0, Measure::iconSize / 2.0);
    drawIcon(painter, at, icon_, theme().colour(Role::ink), Measure::iconSize);
}

}  // namespace gruk
