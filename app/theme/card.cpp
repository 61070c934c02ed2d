#include "app/theme/card.h"

#include <QPainter>

#include "app/theme/card_painter.h"

namespace gruk {

Card::Card(Theme& theme, int padding, QWidget* parent) : QWidget(parent), theme_(theme)
{
    const int far = padding + Measure::shadowOffset;
    setContentsMargins(padding, padding, far, far);
    connect(&theme_, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void Card::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintCard(painter, rect(), theme_);
}

}  // namespace gruk
