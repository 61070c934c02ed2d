#include "app/screens/icon_button.h"

#include <QKeyEvent>
#include <QPainter>

#include "app/theme/accessible.h"
#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"
#include "app/theme/text.h"

namespace gruk {

IconButton::IconButton(Theme& theme, Icon icon, const QString& purpose, Place place,
                       QWidget* parent)
    : QAbstractButton(parent), theme_(theme), icon_(icon), place_(place),
      press_(new GrukTactileButtonStyle(theme, *this))
{
    setAccessibleName(purpose);
    giveToolTip(*this, purpose);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize IconButton::sizeHint() const
{
    const int side = place_ == Place::row ? Measure::smallestTarget : Measure::buttonHeight;
    return {side, side};
}

void IconButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    press_->apply(painter, rect());
    if (!isEnabled()) {
        painter.setOpacity(Strength::disabled);
    } else if (underMouse()) {
        painter.fillPath(cutPath(rect(), buttonCorners),
                         theme_.colour(Role::ink, Strength::divider));
    }
    const bool isInRow = place_ == Place::row;
    const int size = isInRow ? Measure::smallIconSize : Measure::iconSize;
    const QPointF corner(size / 2.0, size / 2.0);
    drawIcon(painter, QRectF(rect()).center() - corner, icon_,
             theme_.colour(Role::ink, isInRow ? Strength::quiet : Strength::full), size);
}

void IconButton::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QAbstractButton::keyPressEvent(event);
    }
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
