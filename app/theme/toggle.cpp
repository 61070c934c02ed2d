#include "app/theme/toggle.h"

#include <QKeyEvent>
#include <QPainter>

#include "app/theme/key_press.h"

namespace gruk {

namespace {

constexpr QSize switchSize(34, 20);
constexpr double knobInset = 4;

}  // namespace

Toggle::Toggle(Theme& theme, const QString& text, QWidget* parent)
    : QCheckBox(text, parent), theme_(theme)
{
    setFont(theme_.font(TextStyle::body));
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    slide_.setStartValue(0.0);
    slide_.setEndValue(1.0);
    slide_.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&slide_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(this, &QAbstractButton::toggled, this, &Toggle::slide);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

QSize Toggle::sizeHint() const
{
    return {switchSize.width() + Measure::small + fontMetrics().horizontalAdvance(text()) + 1,
            std::max(Measure::smallestTarget, fontMetrics().height())};
}

void Toggle::slide()
{
    slide_.setDirection(isChecked() ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    slide_.setDuration(isVisible() ? theme_.duration(Measure::slideMilliseconds) : 0);
    slide_.start();
    update();
}

void Toggle::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QCheckBox::keyPressEvent(event);
    }
}

void Toggle::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? Strength::full : Strength::disabled);

    const double half = Measure::outline / 2;
    const QRectF track =
        QRectF(0, (height() - switchSize.height()) / 2.0, switchSize.width(), switchSize.height())
            .adjusted(half, half, -half, -half);
    const double radius = track.height() / 2;
    const bool isSliding = slide_.state() == QAbstractAnimation::Running;
    const double way = isSliding ? slide_.currentValue().toDouble() : isChecked() ? 1 : 0;
    painter.setPen(QPen(theme_.colour(Role::ink, isChecked() ? Strength::full : Strength::quiet),
                        Measure::outline));
    painter.setBrush(theme_.colour(isChecked() ? Role::fern : Role::paperInset));
    painter.drawRoundedRect(track, radius, radius);

    const double knob = track.height() - 2 * knobInset;
    const double travel = track.width() - 2 * knobInset - knob;
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme_.colour(Role::ink));
    painter.drawEllipse(
        QRectF(track.left() + knobInset + way * travel, track.top() + knobInset, knob, knob));

    painter.setPen(theme_.colour(Role::ink));
    const int textLeft = switchSize.width() + Measure::small;
    painter.drawText(rect().adjusted(textLeft, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
}

}  // namespace gruk
