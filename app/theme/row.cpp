#include "app/theme/row.h"

#include <QPainter>

namespace gruk {

Row::Row(Theme& theme, QWidget* parent) : QWidget(parent), theme_(theme)
{
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Row::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, height() - 1, width(), 1, theme_.colour(Role::ink, Strength::divider));
}

}  // namespace gruk
