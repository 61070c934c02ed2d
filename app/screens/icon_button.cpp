#include "app/screens/icon_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "app/theme/button.h"
#include "app/theme/card_painter.h"
#include "app/theme/text.h"

namespace gruk {

IconButton::IconButton(Theme& theme, Icon icon, const QString& purpose, QWidget* parent)
    : QAbstractButton(parent), theme_(theme), icon_(icon)
{
    setAccessibleName(purpose);
    setToolTip(toolTipText(purpose));
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize IconButton::sizeHint() const
{
    return {Measure::smallestTarget, Measure::smallestTarget};
}

void IconButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled()) {
        painter.setOpacity(Strength::disabled);
    } else if (isDown()) {
        applyPress(painter, rect());
    } else if (underMouse()) {
        painter.fillPath(cutPath(rect(), buttonCorners),
                         theme_.colour(Role::ink, Strength::divider));
    }
    const double inset = (Measure::smallestTarget - Measure::smallIconSize) / 2.0;
    drawIcon(painter, {inset, inset}, icon_, theme_.colour(Role::ink, Strength::quiet),
             Measure::smallIconSize);
}

void IconButton::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

void IconButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void IconButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

}  // namespace gruk
