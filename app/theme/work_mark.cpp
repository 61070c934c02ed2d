#include "app/theme/work_mark.h"

#include <QPainter>
#include <QTimerEvent>

namespace gruk {

namespace {

constexpr int stepMilliseconds = 60;
constexpr double markLine = 2;

}  // namespace

void paintWorkMark(QPainter& painter, const QRectF& ring, int step, double lineWidth,
                   const Theme& theme)
{
    constexpr int sixteenthsOfADegree = 16;
    constexpr int arcDegrees = 100;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.colour(Role::ink, Strength::edge), lineWidth));
    painter.drawEllipse(ring);
    painter.setPen(QPen(theme.colour(Role::accent), lineWidth, Qt::SolidLine, Qt::RoundCap));
    const int start = -step * 360 / workMarkSteps;
    painter.drawArc(ring, start * sixteenthsOfADegree, arcDegrees * sixteenthsOfADegree);
    painter.restore();
}

WorkMark::WorkMark(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    setFixedSize(Measure::iconSize, Measure::iconSize);
}

void WorkMark::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintWorkMark(painter, QRectF(rect()).adjusted(markLine, markLine, -markLine, -markLine), step_,
                  markLine, theme_);
}

void WorkMark::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == timer_.timerId()) {
        step_ = (step_ + 1) % workMarkSteps;
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
