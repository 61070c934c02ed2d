#include "app/theme/button.h"

#include <algorithm>

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>

#include "app/theme/card_painter.h"
#include "app/theme/key_press.h"
#include "app/theme/tactile_press.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

/// From pointing right to pointing down.
constexpr double chevronTurn = 90;
/// Of a primary button under the pointer, in percent.
constexpr int hoverLightness = 108;

/// The toolkit would tell of a box that is ticked.
class AccessibleDisclosure : public QAccessibleWidget {
public:
    explicit AccessibleDisclosure(DisclosureButton& button)
        : QAccessibleWidget(&button, QAccessible::Button), button_(button)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text part) const override
    {
        return part == QAccessible::Name ? button_.text() : QAccessibleWidget::text(part);
    }
    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = button_.isOpen();
        state.collapsed = !button_.isOpen();
        return state;
    }
    [[nodiscard]] QStringList actionNames() const override
    {
        return QStringList(pressAction()) + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override
    {
        if (name == pressAction()) {
            button_.click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    DisclosureButton& button_;
};

QAccessibleInterface* makeAccessibleDisclosure(const QString&, QObject* object)
{
    auto* button = qobject_cast<DisclosureButton*>(object);
    return button == nullptr ? nullptr : new AccessibleDisclosure(*button);
}

}  // namespace

Button::Button(Theme& theme, Kind kind, const QString& text, QWidget* parent)
    : QPushButton(text, parent), theme_(theme), kind_(kind),
      press_(new GrukTactileButtonStyle(theme, *this))
{
    setFont(theme_.font(TextStyle::bodyStrong));
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    if (kind_ == Kind::link) {
        setCursor(Qt::PointingHandCursor);
    }
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Button::setSymbol(Icon icon)
{
    symbol_ = icon;
    updateGeometry();
    update();
}

void Button::setBesideButtons()
{
    lift_ = Measure::shadowOffset;
    update();
}

void Button::setSymbolTurn(double degrees)
{
    symbolTurn_ = degrees;
    update();
}

QSize Button::sizeHint() const
{
    const int padding = kind_ == Kind::link ? 0 : Measure::large;
    const int icon = iconWidth();
    const int height = kind_ == Kind::primary ? Measure::primaryButtonHeight
                       : kind_ == Kind::link  ? Measure::smallestTarget
                                              : Measure::buttonHeight;
    const int shadow = kind_ == Kind::link ? 0 : Measure::shadowOffset;
    return {fontMetrics().horizontalAdvance(text()) + icon + 2 * padding + shadow, height + shadow};
}

int Button::iconWidth() const
{
    if (!symbol_) {
        return 0;
    }
    return Measure::smallIconSize + (kind_ == Kind::link ? Measure::hair : Measure::small);
}

QColor Button::textColour() const
{
    switch (kind_) {
    case Kind::primary:
        // Of a pale ground its usual colour would be gone.
        return theme_.colour(isEnabled() ? Role::paperCard : Role::ink);
    case Kind::secondary:
    case Kind::destructive:
        return theme_.colour(Role::ink);
    case Kind::link:
        break;
    }
    return theme_.colour(Role::accent);
}

void Button::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body =
        kind_ == Kind::link ? QRectF(rect()).adjusted(0, 0, 0, -lift_) : cardBody(rect());
    if (!isEnabled()) {
        painter.setOpacity(Strength::disabled);
    }
    press_->apply(painter, body);
    paintGround(painter, body);
    if (kind_ == Kind::primary) {
        // It tells what goes on meanwhile.
        painter.setOpacity(Strength::full);
    }
    paintContent(painter, body);
}

void Button::paintGround(QPainter& painter, const QRectF& body) const
{
    if (kind_ == Kind::link) {
        return;
    }
    const QPainterPath shape = cutPath(body, buttonCorners);
    const QPainterPath shadow = shape.translated(Measure::shadowOffset, Measure::shadowOffset);
    const double strength = kind_ == Kind::primary ? Strength::outline : Strength::shadow;
    painter.fillPath(shadow.subtracted(shape), theme_.colour(Role::ink, strength));
    if (kind_ == Kind::primary) {
        const QColor ground = theme_.colour(Role::accent);
        painter.fillPath(shape, underMouse() ? ground.lighter(hoverLightness) : ground);
    } else {
        painter.fillPath(shape, theme_.colour(underMouse() ? Role::paperInset : Role::paperCard));
        const QColor outline = kind_ == Kind::destructive
                                   ? theme_.colour(Role::red)
                                   : theme_.colour(Role::ink, Strength::outline);
        painter.strokePath(shape, QPen(outline, Measure::outline));
    }
}

void Button::paintContent(QPainter& painter, const QRectF& body) const
{
    const double textWidth = fontMetrics().horizontalAdvance(text());
    double left =
        kind_ == Kind::link ? body.left() : body.center().x() - (iconWidth() + textWidth) / 2;
    if (symbol_) {
        constexpr double half = Measure::smallIconSize / 2.0;
        painter.save();
        painter.translate(left + half, body.center().y());
        painter.rotate(symbolTurn_);
        drawIcon(painter, QPointF(-half, -half), *symbol_, textColour(), Measure::smallIconSize);
        painter.restore();
        left += iconWidth();
    }
    QFont textFont = font();
    textFont.setUnderline(kind_ == Kind::link && underMouse() && isEnabled());
    painter.setFont(textFont);
    painter.setPen(textColour());
    painter.drawText(QRectF(left, body.top(), textWidth + 1, body.height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text());
}

void Button::keyPressEvent(QKeyEvent* event)
{
    if (!clickedByReturn(*this, *event)) {
        QPushButton::keyPressEvent(event);
    }
}

void Button::enterEvent(QEnterEvent* event)
{
    QPushButton::enterEvent(event);
    update();
}

void Button::leaveEvent(QEvent* event)
{
    QPushButton::leaveEvent(event);
    update();
}

ElidedLink::ElidedLink(Theme& theme, TextStyle style, QWidget* parent)
    : Button(theme, Kind::link, QString(), parent)
{
    setFont(theme.font(style));
}

void ElidedLink::setFullText(const QString& text)
{
    fullText_ = text;
    setAccessibleName(text);
    setToolTip(toolTipText(text));
    setText(fontMetrics().elidedText(text, Qt::ElideRight, width()));
    updateGeometry();
}

QSize ElidedLink::sizeHint() const
{
    return {fontMetrics().horizontalAdvance(fullText_) + 1, Measure::smallestTarget};
}

QSize ElidedLink::minimumSizeHint() const
{
    return {Measure::huge, Measure::smallestTarget};
}

void ElidedLink::resizeEvent(QResizeEvent* event)
{
    Button::resizeEvent(event);
    setText(fontMetrics().elidedText(fullText_, Qt::ElideRight, width()));
}

DisclosureButton::DisclosureButton(Theme& theme, const QString& closedText, const QString& openText,
                                   QWidget* parent)
    : Button(theme, Kind::link, closedText, parent), closedText_(closedText), openText_(openText)
{
    // The toolkit keeps one of each.
    QAccessible::installFactory(makeAccessibleDisclosure);
    setCheckable(true);
    setSymbol(Icon::chevronRight);
    turn_.setStartValue(0.0);
    turn_.setEndValue(chevronTurn);
    turn_.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&turn_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { setSymbolTurn(value.toDouble()); });
    connect(this, &QAbstractButton::toggled, this, &DisclosureButton::showState);
}

QSize DisclosureButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int widest =
        std::max(metrics.horizontalAdvance(closedText_), metrics.horizontalAdvance(openText_));
    const QSize hint = Button::sizeHint();
    return {hint.width() + widest - metrics.horizontalAdvance(text()), hint.height()};
}

void DisclosureButton::showState()
{
    setText(isOpen() ? openText_ : closedText_);
    updateGeometry();
    const int duration = isVisible() ? theme().duration(Measure::slideMilliseconds) : 0;
    turn_.stop();
    if (duration == 0) {
        return setSymbolTurn(isOpen() ? chevronTurn : 0);
    }
    turn_.setDuration(duration);
    turn_.setDirection(isOpen() ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
    turn_.start();
}

}  // namespace gruk
