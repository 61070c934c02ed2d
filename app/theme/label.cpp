#include "app/theme/label.h"

#include <QPainter>

#include "app/theme/accessible.h"
#include "app/theme/text.h"

namespace gruk {

namespace {

bool isHeading(TextStyle style)
{
    return style == TextStyle::pageTitle || style == TextStyle::sectionTitle;
}

}  // namespace

Label* paragraph(Theme& theme, TextStyle style, const QString& text)
{
    auto* label = new Label(theme, style);
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

Label::Label(Theme& theme, TextStyle style, QWidget* parent) : QLabel(parent), theme_(theme)
{
    if (isHeading(style)) {
        setAccessibleRole(*this, QAccessible::Heading);
    }
    setTextFormat(Qt::PlainText);
    setFont(theme_.font(style));
    recolour();
    connect(&theme_, &Theme::changed, this, &Label::recolour);
}

void Label::setColour(Role role, double opacity)
{
    role_ = role;
    opacity_ = opacity;
    recolour();
}

void Label::recolour()
{
    QPalette colours = palette();
    const Role role = textRole(role_);
    colours.setColor(QPalette::WindowText, theme_.colour(role, opacity_));
    setPalette(colours);
}

ElidedLabel::ElidedLabel(Theme& theme, TextStyle style, Qt::TextElideMode mode, QWidget* parent)
    : Label(theme, style, parent), mode_(mode)
{
    // What its tooltip holds is its name, and need not be told twice.
    if (!isHeading(style)) {
        setAccessibleRole(*this, QAccessible::StaticText);
    }
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setFullText(const QString& text)
{
    setText(text);
    setToolTip(toolTipText(text));
}

QSize ElidedLabel::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(text()) + 1, metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {Measure::huge, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), static_cast<int>(alignment()) | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), mode_, width()));
}

IconLabel::IconLabel(Theme& theme, Icon icon, int size, QWidget* parent)
    : QWidget(parent), theme_(theme), icon_(icon)
{
    setFixedSize(size, size);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void IconLabel::setIcon(Icon icon)
{
    icon_ = icon;
    update();
}

void IconLabel::setColour(Role role, double opacity)
{
    role_ = role;
    opacity_ = opacity;
    update();
}

void IconLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool isAccent = role_ == Role::fern || role_ == Role::fernDark;
    const Role role = isAccent ? Role::accent : role_;
    drawIcon(painter, {}, icon_, theme_.colour(role, opacity_), width());
}

}  // namespace gruk
