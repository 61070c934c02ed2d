#include "app/screens/selection_box.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"

namespace gruk {

namespace {

constexpr double side = 18;
constexpr Corners corners = {5, 4, 6, 4};
constexpr double boxOutline = 1.5;
constexpr double tickWidth = 2.2;

}  // namespace

SelectionBox::SelectionBox(Theme& theme, QWidget* parent) : QAbstractButton(parent), theme_(theme)
{
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(QStringLiteral("Select"));
    setFixedSize(sizeHint());
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize SelectionBox::sizeHint() const
{
    return {Measure::smallestTarget, Measure::smallestTarget};
}

void SelectionBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(rect()).center());
    const QPainterPath shape = cutPath(box, corners);
    if (!isChecked()) {
        painter.fillPath(shape, theme_.colour(Role::paperCard));
        painter.strokePath(shape, QPen(theme_.colour(Role::ink, Strength::quiet), boxOutline));
        return;
    }
    painter.fillPath(shape, theme_.colour(Role::accent));
    QPainterPath tick(box.topLeft() + QPointF(0.24, 0.53) * side);
    tick.lineTo(box.topLeft() + QPointF(0.43, 0.72) * side);
    tick.lineTo(box.topLeft() + QPointF(0.77, 0.31) * side);
    painter.strokePath(tick, QPen(theme_.colour(Role::paperCard), tickWidth, Qt::SolidLine,
                                  Qt::RoundCap, Qt::RoundJoin));
}

void SelectionBox::keyPressEvent(QKeyEvent* event)
{
    const KeyPress press = returnOrSpacePress(*event);
    if (press == KeyPress::press) {
        Q_EMIT toggleRequested(event->modifiers());
    } else if (press == KeyPress::other) {
        QAbstractButton::keyPressEvent(event);
    }
}

void SelectionBox::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        Q_EMIT toggleRequested(event->modifiers());
    }
}

void SelectionBox::nextCheckState()
{
    // Reached by assistive technology, which presses without key or pointer.
    Q_EMIT toggleRequested(Qt::NoModifier);
}

}  // namespace gruk
