#include "app/theme/work_mark.h"

#include <QPainter>
#include <QTimerEvent>

namespace gruk {

namespace {

constexpr int stepMilliseconds = 60;
constexpr int steps = 16;
constexpr int sixteenthsOfADegree = 16;
constexpr double lineWidth = 2;
constexpr int arcDegrees = 100;

}  // namespace

WorkMark::WorkMark(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    setFixedSize(Measure::iconSize, Measure::iconSize);
}

void WorkMark::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ring = QRectF(rect()).adjusted(lineWidth, lineWidth, -lineWidth, -lineWidth);
    painter.setPen(QPen(theme_.colour(Role::ink, Strength::edge), lineWidth));
    painter.drawEllipse(ring);
    painter.setPen(QPen(theme_.colour(Role::accent), lineWidth, Qt::SolidLine, Qt::RoundCap));
    const int start = -step_ * 360 / steps;
    painter.drawArc(ring, start * sixteenthsOfADegree, arcDegrees * sixteenthsOfADegree);
}

void WorkMark::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == timer_.timerId()) {
        step_ = (step_ + 1) % steps;
        update();
        return;
    }
    QWidget::timerEvent(event);
}

void WorkMark::showEvent(QShowEvent* event)
{
    timer_.start(stepMilliseconds, this);
    QWidget::showEvent(event);
}

void WorkMark::hideEvent(QHideEvent* event)
{
    timer_.stop();
    QWidget::hideEvent(event);
}

}  // namespace gruk
