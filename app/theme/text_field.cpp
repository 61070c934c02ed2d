#include "app/theme/text_field.h"

#include <QPainter>

#include "app/theme/card_painter.h"

namespace gruk {

namespace {

constexpr double outlineWidth = 1.2;
constexpr int shortestText = 96;
constexpr int usualText = 200;

}  // namespace

TextField::TextField(Theme& theme, const QString& placeholder, const QString& accessibleName,
                     QWidget* parent)
    : QLineEdit(parent), theme_(theme)
{
    setFont(theme_.font(TextStyle::body));
    setPlaceholderText(placeholder);
    setAccessibleName(accessibleName);
    setFrame(false);
    setTextMargins(Measure::small, 0, Measure::small, 0);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    recolour();
    connect(&theme_, &Theme::changed, this, &TextField::recolour);
}

void TextField::recolour()
{
    QPalette colours = theme_.windowPalette();
    colours.setColor(QPalette::Base, Qt::transparent);
    setPalette(colours);
}

QSize TextField::sizeHint() const
{
    return {usualText + 2 * Measure::medium, Measure::buttonHeight};
}

QSize TextField::minimumSizeHint() const
{
    return {shortestText + 2 * Measure::medium, Measure::buttonHeight};
}

void TextField::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(isEnabled() ? Strength::full : Strength::disabled);
        const double half = outlineWidth / 2;
        const QRectF body = QRectF(rect()).adjusted(half, half, -half, -half);
        const QPainterPath shape = cutPath(body, buttonCorners);
        painter.fillPath(shape, theme_.colour(Role::paper));
        // Where one writes shows for the pointer too.
        const QColor outline =
            hasFocus() ? theme_.colour(Role::blue) : theme_.colour(Role::ink, Strength::outline);
        painter.strokePath(shape, QPen(outline, outlineWidth));
    }
    QLineEdit::paintEvent(event);
}

}  // namespace gruk
