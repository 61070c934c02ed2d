#include "app/theme/row.h"

#include <QPainter>

#include "app/theme/accessible.h"

namespace gruk {

Row::Row(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    setAccessibleRole(*this, QAccessible::ListItem);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Row::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    // As far as the outline of a card over it, beside which a card's shadow lies.
    painter.fillRect(0, height() - 1, width() - Measure::shadowOffset, 1,
                     theme_.colour(Role::ink, Strength::divider));
}

}  // namespace gruk
