#include "app/theme/tactile_press.h"

#include <cmath>
#include <numbers>

#include <QAbstractButton>
#include <QGraphicsEffect>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>

namespace gruk {

namespace {

constexpr double pressedScale = 0.97;
constexpr double pressedOffset = 1.5;
/// Of the undamped spring, in radians per second; damped critically, it decays at the same rate.
constexpr double frequency = 2 * std::numbers::pi / springResponse;
constexpr double millisecondsInASecond = 1'000;

/// Paints a widget and all in it as a press asks.
class PressEffect : public QGraphicsEffect {
public:
    explicit PressEffect(const GrukTactilePressModifier& press) : press_(press) {}

    [[nodiscard]] QRectF boundingRectFor(const QRectF& source) const override
    {
        return source.adjusted(0, 0, pressedOffset, pressedOffset);
    }

protected:
    void draw(QPainter* painter) override
    {
        QPoint corner;
        const QPixmap source = sourcePixmap(Qt::LogicalCoordinates, &corner, NoPad);
        painter->save();
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        press_.apply(*painter, sourceBoundingRect());
        painter->drawPixmap(corner, source);
        painter->restore();
    }

private:
    const GrukTactilePressModifier& press_;
};

}  // namespace

PressLook pressLook(double amount)
{
    return {1 + (pressedScale - 1) * amount, pressedOffset * amount,
            1 + (Strength::pressed - 1) * amount};
}

double SpringWay::at(double seconds) const
{
    const double away = start - target;
    const double push = startSpeed + frequency * away;
    return target + (away + push * seconds) * std::exp(-frequency * seconds);
}

double SpringWay::speedAt(double seconds) const
{
    const double away = start - target;
    const double push = startSpeed + frequency * away;
    return (push - frequency * (away + push * seconds)) * std::exp(-frequency * seconds);
}

GrukTactilePressModifier::GrukTactilePressModifier(Theme& theme, QWidget& widget)
    : GrukTactilePressModifier(theme, widget, Source::pointer)
{
}

GrukTactilePressModifier::GrukTactilePressModifier(Theme& theme, QWidget& widget, Source source)
    : QObject(&widget), theme_(theme), widget_(widget), run_(this)
{
    run_.setStartValue(0.0);
    run_.setEndValue(1.0);
    connect(&run_, &QVariantAnimation::valueChanged, this, &GrukTactilePressModifier::lookChanged);
    connect(&run_, &QVariantAnimation::finished, this, &GrukTactilePressModifier::lookChanged);
    connect(this, &GrukTactilePressModifier::lookChanged, &widget, qOverload<>(&QWidget::update));
    if (source == Source::pointer) {
        widget.installEventFilter(this);
    }
}

bool GrukTactilePressModifier::eventFilter(QObject* watched, QEvent* event)
{
    const auto isLeft = [event] {
        return static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton;
    };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (isLeft() && widget_.isEnabled()) {
            setPressed(true);
        }
        break;
    case QEvent::MouseButtonRelease:
        if (isLeft()) {
            setPressed(false);
        }
        break;
    case QEvent::Hide:
    case QEvent::UngrabMouse:
        setPressed(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

void GrukTactilePressModifier::setPressed(bool isPressed)
{
    if (isPressed == isPressed_) {
        return;
    }
    isPressed_ = isPressed;
    const double target = isPressed ? 1 : 0;
    const int duration = widget_.isVisible() ? theme_.duration(springMilliseconds) : 0;
    if (duration == 0) {
        way_ = {target, 0, target};
        run_.stop();
    } else {
        way_ = {amount(), way_.speedAt(seconds()), target};
        run_.stop();
        run_.setDuration(duration);
        run_.start();
    }
    Q_EMIT lookChanged();
}

double GrukTactilePressModifier::seconds() const
{
    return run_.state() == QAbstractAnimation::Stopped ? springMilliseconds / millisecondsInASecond
                                                       : run_.currentTime() / millisecondsInASecond;
}

double GrukTactilePressModifier::amount() const
{
    return run_.state() == QAbstractAnimation::Stopped ? way_.target : way_.at(seconds());
}

void GrukTactilePressModifier::apply(QPainter& painter, const QRectF& bounds) const
{
    const PressLook look = this->look();
    if (look == PressLook{}) {
        return;
    }
    painter.translate(bounds.center() + QPointF(look.offset, look.offset));
    painter.scale(look.scale, look.scale);
    painter.translate(-bounds.center());
    painter.setOpacity(painter.opacity() * look.opacity);
}

GrukTactileGroupPress::GrukTactileGroupPress(Theme& theme, QWidget& widget)
    : GrukTactilePressModifier(theme, widget), group_(widget)
{
    connect(this, &GrukTactilePressModifier::lookChanged, this, &GrukTactileGroupPress::show);
}

void GrukTactileGroupPress::setPressable(bool isPressable)
{
    if (isPressable) {
        group_.installEventFilter(this);
    } else {
        group_.removeEventFilter(this);
        setPressed(false);
    }
}

void GrukTactileGroupPress::show()
{
    // An effect has the group painted into a picture first, so that it is there no longer than
    // something is to be seen of it.
    if (look() == PressLook{}) {
        group_.setGraphicsEffect(nullptr);
    } else if (group_.graphicsEffect() == nullptr) {
        group_.setGraphicsEffect(new PressEffect(*this));
    } else {
        group_.graphicsEffect()->update();
    }
}

GrukTactileButtonStyle::GrukTactileButtonStyle(Theme& theme, QAbstractButton& button)
    : GrukTactilePressModifier(theme, button, Source::caller)
{
    connect(&button, &QAbstractButton::pressed, this, [this] { setPressed(true); });
    connect(&button, &QAbstractButton::released, this, [this] { setPressed(false); });
}

}  // namespace gruk
